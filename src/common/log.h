// Everything in the library writes its log lines through this header.
//
// A line consists of a text, the values, and the qualified name of the operation in parentheses, in
// this order and with nothing between them:
//
//     LogError(kFunction, "[PLENXSDK] open service error ", error);
//
// Any thread may log at any time, even while the process is ending. Logging never throws, and
// leaves errno and the thread's last error as they were.

#ifndef PLENXSDK_COMMON_LOG_H
#define PLENXSDK_COMMON_LOG_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "log_helper.h"

namespace DistributedFs {

/// A part of a line. Narrow text is UTF-8 of any origin, and each malformed byte shows as U+FFFD.
/// Numbers, enums and bool (1 or 0) appear in decimal, a char as one character. The value refers to
/// its text and must not outlive it.
class LogValue {
public:
    LogValue(std::string_view text) noexcept
        : kind_(Kind::kNarrow), most_(text.size()), narrow_(text.data()) {}
    LogValue(const char* text) noexcept : LogValue(std::string_view(text)) {}
    LogValue(const std::string& text) noexcept : LogValue(std::string_view(text)) {}
    LogValue(const std::wstring& text) noexcept
        : kind_(Kind::kWide), most_(text.size()), wide_(text.data()) {}
    LogValue(char letter) noexcept : kind_(Kind::kLetter), most_(1), letter_(letter) {}

    template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
    LogValue(Number number) noexcept
        : kind_(std::is_signed_v<Number> ? Kind::kSigned : Kind::kUnsigned),
          most_(20),  // the digits of 64 bits and a sign
          number_(static_cast<std::uint64_t>(number)) {}

    template <class Enum, std::enable_if_t<std::is_enum_v<Enum>, int> = 0>
    LogValue(Enum value) noexcept : LogValue(static_cast<std::underlying_type_t<Enum>>(value)) {}

    /// Returns the greatest number of characters that Write may write.
    std::size_t MostCharacters() const noexcept { return most_; }
    /// Returns the end of what it wrote.
    wchar_t* Write(wchar_t* out) const noexcept;

private:
    enum class Kind { kNarrow, kWide, kLetter, kSigned, kUnsigned };

    Kind kind_;
    std::size_t most_;  // a text has its length here
    union {
        const char* narrow_;
        const wchar_t* wide_;
        char letter_;
        std::uint64_t number_;
    };
};

/// Makes sure that the logger exists, and everything else that lines need. A static object that
/// logs in its destructor calls this in its constructor, so that the logger outlives it.
void TouchLogger() noexcept;

void WriteLogLine(LOG_MESSAGE_LEVEL level, std::string_view function, const LogValue* parts,
                  std::size_t count) noexcept;

/// Logs progress or success.
template <class... Parts>
void LogInfo(std::string_view function, const Parts&... parts) noexcept {
    const LogValue line[] = {LogValue(parts)...};
    WriteLogLine(LOG_MESSAGE_LEVEL_INFO, function, line, sizeof...(parts));
}

/// Logs an invalid argument or a failure.
template <class... Parts>
void LogError(std::string_view function, const Parts&... parts) noexcept {
    const LogValue line[] = {LogValue(parts)...};
    WriteLogLine(LOG_MESSAGE_LEVEL_ERROR, function, line, sizeof...(parts));
}

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_LOG_H
