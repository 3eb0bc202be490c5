// How the arguments of a platform call read in the record of calls.

#ifndef PLENXSDK_FAKES_PLATFORM_CALL_TEXT_H
#define PLENXSDK_FAKES_PLATFORM_CALL_TEXT_H

#include <cstdint>
#include <string>
#include <string_view>

/// UTF-16 units in wide characters, as UTF-8; an unpaired surrogate shows as U+FFFD.
std::string Narrow(std::wstring_view text);

/// "text" in double quotes, or null.
std::string Quoted(const wchar_t* text);

/// 0x10034.
std::string Hex(std::uint64_t number);

/// Lower case for comparing names and paths as Windows does; ASCII letters only, which is
/// all that tests use.
std::wstring Folded(std::wstring_view text);

#endif  // PLENXSDK_FAKES_PLATFORM_CALL_TEXT_H
