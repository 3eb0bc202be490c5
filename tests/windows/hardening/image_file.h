// A program or DLL as it lies in its file: headers, sections, imports, symbols. The file is one
// that this build has made, so what it says of itself is taken as it is.

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
    /// name: of a file in the folder of the running program.
    explicit ImageFile(const std::string& name);

    bool IsRead() const { return headers_.Signature == IMAGE_NT_SIGNATURE; }
    const IMAGE_NT_HEADERS64& Headers() const { return headers_; }
    const std::vector<IMAGE_SECTION_HEADER>& Sections() const { return sections_; }
    std::vector<std::string> Imports() const;
    /// Whether the table of relocations holds any.
    bool HasRelocations() const;
    /// How many calls in the code go to the function of that name; nothing when the file names no
    /// such function.
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
