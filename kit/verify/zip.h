// Writes a ZIP whose files are stored as they are. That takes a page of code. Debian has no library
// for Windows that could compress them, and a report has only a few megabytes.

#ifndef PLENXKIT_VERIFY_ZIP_H
#define PLENXKIT_VERIFY_ZIP_H

#include <cstdint>
#include <string>
#include <vector>

namespace PlenxVerify {

struct ZippedFile {
    std::string name;  // in UTF-8, with slashes
    std::string content;
};

/// A date and a time in the form that FAT uses.
struct ZipTime {
    std::uint16_t date = 0x21;  // 1 January 1980
    std::uint16_t time = 0;
};

std::string ZipOf(const std::vector<ZippedFile>& files, const ZipTime& time);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_ZIP_H
