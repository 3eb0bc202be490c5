#include "hardening/image_file.h"

#include <cstring>
#include <filesystem>

#include "support/child_process.h"
#include "support/install_folder.h"

namespace PlenxTest {

ImageFile::ImageFile(const std::string& name)
    : bytes_(ReadFile(std::filesystem::path(ProgramFolder()) / name)) {
    if (bytes_.empty()) {
        return;
    }
    const auto start = static_cast<std::size_t>(At<IMAGE_DOS_HEADER>(0).e_lfanew);
    headers_ = At<IMAGE_NT_HEADERS64>(start);
    for (WORD i = 0; i != headers_.FileHeader.NumberOfSections; ++i) {
        sections_.push_back(At<IMAGE_SECTION_HEADER>(start + sizeof(IMAGE_NT_HEADERS64) +
                                                     i * sizeof(IMAGE_SECTION_HEADER)));
    }
}

template <class T>
T ImageFile::At(std::size_t offset) const {
    T value{};
    if (offset < bytes_.size() && bytes_.size() - offset >= sizeof(T)) {
        std::memcpy(&value, bytes_.data() + offset, sizeof(T));
    }
    return value;
}

std::string ImageFile::TextAt(std::size_t offset) const {
    return offset < bytes_.size() ? std::string(bytes_.c_str() + offset) : std::string();
}

std::size_t ImageFile::FileOffset(DWORD address) const {
    for (const IMAGE_SECTION_HEADER& section : sections_) {
        if (address >= section.VirtualAddress &&
            address - section.VirtualAddress < section.SizeOfRawData) {
            return section.PointerToRawData + (address - section.VirtualAddress);
        }
    }
    return bytes_.size();
}

std::vector<std::string> ImageFile::Imports() const {
    const auto& table = headers_.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    std::vector<std::string> names;
    for (std::size_t offset = FileOffset(table.VirtualAddress);;
         offset += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
        const auto entry = At<IMAGE_IMPORT_DESCRIPTOR>(offset);
        if (entry.Name == 0) {
            return names;
        }
        names.push_back(TextAt(FileOffset(entry.Name)));
    }
}

bool ImageFile::HasRelocations() const {
    const auto& table = headers_.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC];
    const auto first = At<IMAGE_BASE_RELOCATION>(FileOffset(table.VirtualAddress));
    return table.Size != 0 && first.SizeOfBlock > sizeof(IMAGE_BASE_RELOCATION);
}

IMAGE_LOAD_CONFIG_DIRECTORY64 ImageFile::LoadConfig() const {
    const auto& table = headers_.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_LOAD_CONFIG];
    return At<IMAGE_LOAD_CONFIG_DIRECTORY64>(FileOffset(table.VirtualAddress));
}

// Long names are in the table of strings behind the symbols.
std::optional<DWORD> ImageFile::AddressOf(const std::string& function) const {
    const std::size_t symbols = headers_.FileHeader.PointerToSymbolTable;
    const std::size_t strings =
        symbols + headers_.FileHeader.NumberOfSymbols * std::size_t{IMAGE_SIZEOF_SYMBOL};
    for (std::size_t offset = symbols; symbols != 0 && offset < strings;) {
        const auto symbol = At<IMAGE_SYMBOL>(offset);
        const bool isLong = symbol.N.Name.Short == 0;
        const std::string name =
            isLong ? TextAt(strings + symbol.N.Name.Long)
                   : std::string(reinterpret_cast<const char*>(symbol.N.ShortName),
                                 strnlen(reinterpret_cast<const char*>(symbol.N.ShortName), 8));
        if (name == function && symbol.SectionNumber > 0) {
            return sections_[static_cast<std::size_t>(symbol.SectionNumber) - 1].VirtualAddress +
                   symbol.Value;
        }
        offset += IMAGE_SIZEOF_SYMBOL * (std::size_t{1} + symbol.NumberOfAuxSymbols);
    }
    return std::nullopt;
}

std::optional<int> ImageFile::CallsOf(const std::string& function) const {
    constexpr unsigned char kCall = 0xe8;
    constexpr DWORD kCallLength = 5;
    const auto target = AddressOf(function);
    if (!target) {
        return std::nullopt;
    }
    int calls = 0;
    for (const IMAGE_SECTION_HEADER& section : sections_) {
        if ((section.Characteristics & IMAGE_SCN_MEM_EXECUTE) == 0) {
            continue;
        }
        for (DWORD i = 0; i + kCallLength <= section.SizeOfRawData; ++i) {
            const std::size_t offset = std::size_t{section.PointerToRawData} + i;
            const DWORD next = section.VirtualAddress + i + kCallLength;
            calls += At<unsigned char>(offset) == kCall && next + At<DWORD>(offset + 1) == *target;
        }
    }
    return calls;
}

}  // namespace PlenxTest
