#include "doctor/imports.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace PlenxHost {
namespace {

constexpr std::uint64_t kSignatureAt = 0x3c;
constexpr std::uint64_t kFileHeaderSize = 24;      // with the signature before it
constexpr std::uint64_t kImportDirectoryAt = 120;  // in the optional header of a 64-bit image
constexpr std::uint64_t kSectionSize = 40;
constexpr std::uint64_t kImportSize = 20;
constexpr std::uint32_t kPortableExecutable = 0x4550;
constexpr std::uint16_t k64Bit = 0x20b;
constexpr std::size_t kMostImports = 4096;  // a table without an end is not followed for ever

class Image {
public:
    explicit Image(std::string_view file) : file_(file) {}

    /// Everything outside the file counts as zero, which is not an entry in any table.
    template <class Number>
    Number At(std::uint64_t offset) const {
        Number number = 0;
        if (offset <= file_.size() && file_.size() - offset >= sizeof(number)) {
            std::memcpy(&number, file_.data() + offset, sizeof(number));
        }
        return number;
    }

    bool Is64Bit() const {
        return At<std::uint32_t>(Header()) == kPortableExecutable &&
               At<std::uint16_t>(OptionalHeader()) == k64Bit;
    }

    /// The place in the file of the bytes that the loader puts at this address of the image.
    std::optional<std::uint64_t> OffsetOf(std::uint32_t address) const {
        const auto sections = At<std::uint16_t>(Header() + 6);
        std::uint64_t section = OptionalHeader() + At<std::uint16_t>(Header() + 20);
        for (unsigned i = 0; i != sections; ++i, section += kSectionSize) {
            const auto start = At<std::uint32_t>(section + 12);
            if (address >= start && address - start < At<std::uint32_t>(section + 16)) {
                return std::uint64_t{At<std::uint32_t>(section + 20)} + (address - start);
            }
        }
        return std::nullopt;
    }

    std::string TextAt(std::uint32_t address) const {
        const auto offset = OffsetOf(address);
        if (!offset || *offset >= file_.size()) {
            return "";
        }
        const std::string_view rest = file_.substr(*offset);
        return std::string(rest.substr(0, rest.find('\0')));
    }

    std::optional<std::uint64_t> Imports() const {
        const auto address = At<std::uint32_t>(OptionalHeader() + kImportDirectoryAt);
        return address != 0 ? OffsetOf(address) : std::nullopt;
    }

private:
    std::uint64_t Header() const { return At<std::uint32_t>(kSignatureAt); }
    std::uint64_t OptionalHeader() const { return Header() + kFileHeaderSize; }

    std::string_view file_;
};

}  // namespace

std::vector<std::string> ImportedDlls(std::string_view file) {
    std::vector<std::string> names;
    const Image image(file);
    const auto imports = image.Is64Bit() ? image.Imports() : std::nullopt;
    for (std::uint64_t entry = imports.value_or(0); imports && names.size() != kMostImports;
         entry += kImportSize) {
        const std::string name = image.TextAt(image.At<std::uint32_t>(entry + 12));
        if (name.empty()) {
            break;
        }
        names.push_back(name);
    }
    return names;
}

}  // namespace PlenxHost
