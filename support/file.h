// Reads whole files.

#ifndef PLENXSUPPORT_FILE_H
#define PLENXSUPPORT_FILE_H

#include <filesystem>
#include <optional>
#include <string>

namespace PlenxSupport {

/// Returns the file's bytes, or nullopt when it cannot be read.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_FILE_H
