// What the control file tells the service to do: lines of key=value, where a key may name one
// service, one request, or both.
//
//     answer=5
//     pc.answer.CreateGroup=5
//
// README.md lists the keys. Immutable once parsed.

#ifndef PLENXSERVICE_SETTINGS_H
#define PLENXSERVICE_SETTINGS_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace PlenxService {

constexpr std::int32_t kNoRequest = -1;

/// Keys and their values, as the file has them.
using Values = std::map<std::string, std::string>;

class Settings {
public:
    /// nickname: of the service that asks; the lines of the others are passed over.
    /// below: what holds where the file says nothing.
    Settings(std::string_view fileText, const std::string& nickname, Values below = {});

    /// Lines that mean nothing, each with its number.
    const std::vector<std::string>& Complaints() const noexcept { return complaints_; }

    // The value of a key; of the lines that apply to the request, the most particular one
    // counts, and of several equal ones the last. Absent: the default.
    bool Flag(std::string_view key, std::int32_t request = kNoRequest) const;
    std::int64_t Number(std::string_view key, std::int64_t otherwise = 0,
                        std::int32_t request = kNoRequest) const;
    std::string Text(std::string_view key, std::int32_t request = kNoRequest) const;
    bool Has(std::string_view key, std::int32_t request = kNoRequest) const;

private:
    void TakeLine(std::string_view line, const std::string& nickname);
    std::string CheckedKey(std::string_view key, std::string_view value);
    const std::string* Find(std::string_view key, std::int32_t request) const;

    Values particular_;  // of this service alone
    Values general_;
    std::vector<std::string> complaints_;
};

/// Decimal or 0x hexadecimal, with a sign. @return false when the text is nothing of the kind.
bool ParseNumber(std::string_view text, std::int64_t& number);

/// Pairs of hexadecimal digits; blanks between them do not matter.
bool ParseBytes(std::string_view text, std::vector<std::uint8_t>& bytes);

}  // namespace PlenxService

#endif  // PLENXSERVICE_SETTINGS_H
