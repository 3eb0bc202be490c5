// The dialogue on a console: a prompt and the line that is being typed. Above them stand the
// reports that are printed meanwhile.
//
// One thread calls ReadLine; any thread may print reports. It must not outlive its Output.

#ifndef PLENXKIT_HOST_CONSOLE_H
#define PLENXKIT_HOST_CONSOLE_H

#include <functional>
#include <string>
#include <vector>

#include "host/line_editor.h"
#include "host/output.h"
#include "host/prompt_state.h"

namespace PlenxHost {

class Console : private Footer {
public:
    explicit Console(Output& output);
    ~Console() override;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// The next line as UTF-8; false at its end (Ctrl-Z or Ctrl-D at the start of a line), and
    /// when the run has ended meanwhile.
    bool ReadLine(std::string& line, const std::function<bool()>& hasEnded);

private:
    enum class Step { kGoOn, kLine, kEnd };

    void Saw(const CommandReport& report) override { state_.Saw(report); }
    void Saw(const NotificationReport& report) override { state_.Saw(report); }
    void Hide() override;
    void Show() override;

    Step TakeKey();
    Step Press(unsigned key, wchar_t unit);
    void Begin();
    void Finish();

    Output& output_;
    const std::vector<std::wstring> words_;
    // The output's lock guards the members below.
    PromptState state_;
    LineEditor editor_;
    bool reading_ = false;
    std::size_t drawn_ = 0;  // columns
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_CONSOLE_H
