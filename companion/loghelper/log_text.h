// The text of a line, after the time:
//
//     [info] [1234] text
//
// It consists of the level (3 "info", 4 "error", any other as its number), the thread id, and the
// text in UTF-8. Texts may contain values from other processes, so a control character (also DEL,
// U+0080 to U+009F, U+2028 and U+2029) becomes \u and four hexadecimal digits: a line never
// contains a line break. A lone surrogate becomes U+FFFD. Backslashes are not doubled, so that
// paths stay readable.

#ifndef COMPANION_LOGHELPER_LOG_TEXT_H
#define COMPANION_LOGHELPER_LOG_TEXT_H

#include <string>
#include <string_view>

namespace LogHelper {

/// The text holds UTF-16 units, even where wchar_t is wider; there it may also hold whole code
/// points.
std::string LogText(int level, unsigned long threadId, std::wstring_view text);

}  // namespace LogHelper

#endif  // COMPANION_LOGHELPER_LOG_TEXT_H
