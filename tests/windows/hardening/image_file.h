// A program or DLL as stored in its file: headers, sections, imports, symbols. This build has made
// the file, so this code trusts its content.

#ifndef PLENXSDK_TESTS_WINDOWS_HARDENING_IMAGE_FILE_H
#define PLENXSDK_TESTS_WINDOWS_HARDENING_IMAGE_FILE_H

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace PlenxTest {

class ImageFile {
public:
    /// @param name  A file in the folder of the running program.
    explicit ImageFile(const std::string& name);

    bool IsRead() const { return headers_.Signature == IMAGE_NT_SIGNATURE; }
    const IMAGE_NT_HEADERS64& Headers() const { return headers_; }
    const std::vector<IMAGE_SECTION_HEADER>& Sections() const { return sections_; }
    std::vector<std::string> Imports() const;
    /// Returns whether the table of relocations has any entry.
    bool HasRelocations() const;
    /// Returns what the file tells the loader about its guards; zeros if it tells nothing.
    IMAGE_LOAD_CONFIG_DIRECTORY64 LoadConfig() const;
    /// Returns how many calls in the code go to the function of that name, or nullopt when the file
    /// names no such function.
    std::optional<int> CallsOf(const std::string& function) const;

private:
    template <class T>
    T At(std::size_t offset) const;
    std::string TextAt(std::size_t offset) const;
    std::size_t FileOffset(DWORD address) const;
    std::optional<DWORD> AddressOf(const std::string& function) const;

    std::string bytes_;
    IMAGE_NT_HEADERS64 headers_{};
    std::vector<IMAGE_SECTION_HEADER> sections_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HARDENING_IMAGE_FILE_H
