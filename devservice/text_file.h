// A small text file, read as a whole.

#ifndef PLENXSERVICE_TEXT_FILE_H
#define PLENXSERVICE_TEXT_FILE_H

#include <optional>
#include <string>

namespace PlenxService {

/// Waits a little for a file that is just being replaced. @return nothing when it cannot be
/// read; at most the first 256 KiB.
std::optional<std::string> ReadTextFile(const std::wstring& path);

}  // namespace PlenxService

#endif  // PLENXSERVICE_TEXT_FILE_H
