// The text of a line, after the time:
//
//     [info] [1234] text
//
// The level (3 "info", 4 "error", any other as its number), the thread id, and the text in
// UTF-8. Texts hold values from other processes, so a control character (also DEL, U+0080 to
// U+009F, U+2028 and U+2029) is shown as \u and its four hexadecimal digits: a line never
// holds a line break. A lone surrogate shows as U+FFFD. Backslashes are not doubled, so that
// paths stay readable.

#ifndef COMPANION_LOGHELPER_LOG_TEXT_H
#define COMPANION_LOGHELPER_LOG_TEXT_H

#include <string>
#include <string_view>

namespace LogHelper {

/// text: UTF-16 units, also where wchar_t is wider; there a code point beyond them is
/// accepted as well.
std::string LogText(int level, unsigned long threadId, std::wstring_view text);

}  // namespace LogHelper

#endif  // COMPANION_LOGHELPER_LOG_TEXT_H
