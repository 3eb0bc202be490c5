// One line that is being typed, and the part of it that fits on the screen. It keeps no history.
//
// Texts are in the units of the console: UTF-16 on Windows.

#ifndef PLENXKIT_HOST_LINE_EDITOR_H
#define PLENXKIT_HOST_LINE_EDITOR_H

#include <string>
#include <vector>

namespace PlenxHost {

class LineEditor {
public:
    /// Control characters are left out.
    void Insert(wchar_t unit);
    void Backspace();
    void Delete();
    void Left();
    void Right();
    void Home() { cursor_ = 0; }
    void End() { cursor_ = text_.size(); }
    void Clear();
    /// Extends the first word by the letters that are common to all words that begin with it.
    void Complete(const std::vector<std::wstring>& words);

    bool Empty() const { return text_.empty(); }
    const std::wstring& Text() const { return text_; }

    struct View {
        std::wstring line;
        std::size_t cursor;
    };
    /// One row: the prompt, and the part of the text around the cursor. The last column stays
    /// free.
    View Show(const std::wstring& prompt, std::size_t columns) const;

private:
    std::size_t Before(std::size_t position) const;
    std::size_t After(std::size_t position) const;

    std::wstring text_;
    std::size_t cursor_ = 0;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_LINE_EDITOR_H
