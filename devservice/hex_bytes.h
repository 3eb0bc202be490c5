// Reads bytes that are written as pairs of hexadecimal digits.

#ifndef PLENXSERVICE_HEX_BYTES_H
#define PLENXSERVICE_HEX_BYTES_H

#include <cstdint>
#include <string_view>
#include <vector>

namespace PlenxService {

/// Ignores blanks. @return false when the text contains anything else.
bool ParseBytes(std::string_view text, std::vector<std::uint8_t>& bytes);

}  // namespace PlenxService

#endif  // PLENXSERVICE_HEX_BYTES_H
