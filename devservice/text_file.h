// Reads a small text file as a whole.

#ifndef PLENXSERVICE_TEXT_FILE_H
#define PLENXSERVICE_TEXT_FILE_H

#include <optional>
#include <string>

namespace PlenxService {

/// Waits a little for a file that is being replaced. @return at most the first 256 KiB, or nullopt
/// when the file cannot be read.
std::optional<std::string> ReadTextFile(const std::wstring& path);

}  // namespace PlenxService

#endif  // PLENXSERVICE_TEXT_FILE_H
