// Formats the arguments of a platform call for the record of calls.

#ifndef PLENXSDK_FAKES_PLATFORM_CALL_TEXT_H
#define PLENXSDK_FAKES_PLATFORM_CALL_TEXT_H

#include <cstdint>
#include <string>
#include <string_view>

/// Converts UTF-16 units in wide characters, or UTF-32, to UTF-8. An unpaired surrogate is shown in
/// a form such as {D83D}.
std::string Narrow(std::wstring_view text);

/// Returns the text in double quotes, or null without quotes.
std::string Quoted(const wchar_t* text);

/// Returns the number in a form such as 0x10034.
std::string Hex(std::uint64_t number);

/// Returns the text in lower case, to compare names and paths as Windows does. It folds ASCII
/// letters only, because tests use no others.
std::wstring Folded(std::wstring_view text);

#endif  // PLENXSDK_FAKES_PLATFORM_CALL_TEXT_H
