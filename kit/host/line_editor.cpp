#include "host/line_editor.h"

#include <algorithm>

namespace PlenxHost {
namespace {

bool IsSecondOfPair(wchar_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::size_t CommonLength(const std::wstring& first, const std::wstring& second) {
    const auto end = std::mismatch(first.begin(), first.end(), second.begin(), second.end()).first;
    return static_cast<std::size_t>(end - first.begin());
}

}  // namespace

void LineEditor::Insert(wchar_t unit) {
    if (unit < 0x20 || unit == 0x7F) {
        return;
    }
    text_.insert(cursor_, 1, unit);
    ++cursor_;
}

void LineEditor::Backspace() {
    const std::size_t from = Before(cursor_);
    text_.erase(from, cursor_ - from);
    cursor_ = from;
}

void LineEditor::Delete() {
    text_.erase(cursor_, After(cursor_) - cursor_);
}

void LineEditor::Left() {
    cursor_ = Before(cursor_);
}

void LineEditor::Right() {
    cursor_ = After(cursor_);
}

void LineEditor::Clear() {
    text_.clear();
    cursor_ = 0;
}

void LineEditor::Complete(const std::vector<std::wstring>& words) {
    if (text_.find(L' ') != std::wstring::npos || cursor_ != text_.size()) {
        return;
    }
    std::wstring common;
    int matches = 0;
    for (const std::wstring& word : words) {
        if (word.compare(0, text_.size(), text_) == 0) {
            common = matches == 0 ? word : common.substr(0, CommonLength(common, word));
            ++matches;
        }
    }
    if (matches != 0) {
        text_ = matches == 1 ? common + L" " : common;
        End();
    }
}

LineEditor::View LineEditor::Show(const std::wstring& prompt, std::size_t columns) const {
    constexpr std::size_t kLeast = 10;  // columns for the text; if they do not fit, no prompt shows
    const bool narrow = columns < prompt.size() + kLeast;
    const std::wstring front = narrow ? L"" : prompt;
    const std::size_t room = columns > front.size() + 1 ? columns - front.size() - 1 : 1;
    const std::size_t begin = cursor_ > room ? cursor_ - room : 0;
    return {front + text_.substr(begin, room), front.size() + cursor_ - begin};
}

std::size_t LineEditor::Before(std::size_t position) const {
    const std::size_t before = position == 0 ? 0 : position - 1;
    return before != 0 && IsSecondOfPair(text_[before]) ? before - 1 : before;
}

std::size_t LineEditor::After(std::size_t position) const {
    const std::size_t after = std::min(position + 1, text_.size());
    return after < text_.size() && IsSecondOfPair(text_[after]) ? after + 1 : after;
}

}  // namespace PlenxHost
