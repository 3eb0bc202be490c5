// The log has one line for each call:
//
//     LocalDeviceOnline("group", "device", 1, 00ffa0) = 0
//
// Strings are in double quotes, with \" \\ and \xNN for characters that need escaping. Data is
// hexadecimal. The code follows after "= "; constructor and destructor have no code.

#ifndef COMPANION_DISTRIBUTEDFILE_CALL_LINE_H
#define COMPANION_DISTRIBUTEDFILE_CALL_LINE_H

#include <filesystem>
#include <string>
#include <string_view>

namespace Office {

std::string Quoted(std::string_view text);

/// Returns an empty text when data is null or size is not positive.
std::string Hex(const unsigned char* data, int size);

/// Appends the line to the file, and ignores a file that cannot be written.
void AppendCallLine(const std::filesystem::path& file, const std::string& line) noexcept;

}  // namespace Office

#endif  // COMPANION_DISTRIBUTEDFILE_CALL_LINE_H
