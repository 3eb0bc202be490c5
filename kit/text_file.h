// The files that a user names on the command line.

#ifndef PLENXKIT_TEXT_FILE_H
#define PLENXKIT_TEXT_FILE_H

#include <filesystem>
#include <string>

namespace PlenxKit {

/// The whole of a file, byte for byte. @throws UsageError when it cannot be read.
std::string ReadText(const std::filesystem::path& file);

/// Replaces the file. @throws UsageError when it cannot be written.
void WriteText(const std::filesystem::path& file, const std::string& text);

/// The same for an option: an empty one asks for no file.
void WriteWanted(const std::string& file, const std::string& text);

}  // namespace PlenxKit

#endif  // PLENXKIT_TEXT_FILE_H
