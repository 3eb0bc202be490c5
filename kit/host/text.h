// Shows and reads texts of any bytes safely, and reads numbers as they are typed. It has no state,
// so any thread may call it.

#ifndef PLENXKIT_HOST_TEXT_H
#define PLENXKIT_HOST_TEXT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace PlenxHost {

/// The text in double quotes. Control characters and bytes that are not UTF-8 are written
/// as \n, \t or \xNN. After about maxBytes the text is cut, and its whole length stands behind it.
std::string Quote(std::string_view text, std::size_t maxBytes);

/// The text without quotes. Bytes that Quote escapes appear as \xNN, but blanks, line ends, quotes
/// and backslashes stay as they are.
std::string Printable(std::string_view text);

/// Turns bytes into hexadecimal digits and back. FromHex gives nothing when a digit is wrong or
/// missing.
std::string ToHex(std::string_view bytes);
std::optional<std::string> FromHex(std::string_view digits);

/// A whole decimal or 0x number; the signed ones may begin with a minus.
std::optional<std::uint64_t> ToUint64(std::string_view digits);
std::optional<std::int64_t> ToInt64(std::string_view digits);
/// A number as above, from -2^31 to 2^32 - 1: the same 32 bits, written signed or unsigned.
std::optional<std::uint32_t> ToBits32(std::string_view digits);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_TEXT_H
