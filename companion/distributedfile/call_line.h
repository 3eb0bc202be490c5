// The line that tells of one call:
//
//     LocalDeviceOnline("group", "device", 1, 00ffa0) = 0
//
// Strings stand in double quotes, with \" \\ and \xNN for what cannot stand as it is; data
// stands in hexadecimal; after "= " follows the code. Constructor and destructor have none.

#ifndef COMPANION_DISTRIBUTEDFILE_CALL_LINE_H
#define COMPANION_DISTRIBUTEDFILE_CALL_LINE_H

#include <filesystem>
#include <string>
#include <string_view>

namespace Office {

std::string Quoted(std::string_view text);

/// Empty for data that is null or has no positive size.
std::string Hex(const unsigned char* data, int size);

/// Appends the line to the file; a file that cannot be written is no failure.
void AppendCallLine(const std::filesystem::path& file, const std::string& line) noexcept;

}  // namespace Office

#endif  // COMPANION_DISTRIBUTEDFILE_CALL_LINE_H
