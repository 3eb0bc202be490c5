#include "verify/zip.h"

#include <array>

namespace PlenxVerify {
namespace {

constexpr std::uint16_t kNeededVersion = 20;
constexpr std::uint16_t kNamesAreUtf8 = 0x800;
constexpr std::uint16_t kStored = 0;

std::array<std::uint32_t, 256> MakeTable() {
    constexpr std::uint32_t kPolynomial = 0xEDB88320;
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i != table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit != 8; ++bit) {
            value = (value >> 1) ^ ((value & 1) != 0 ? kPolynomial : 0);
        }
        table[i] = value;
    }
    return table;
}

std::uint32_t ChecksumOf(const std::string& content) {
    static const std::array<std::uint32_t, 256> table = MakeTable();
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char letter : content) {
        sum = table[(sum ^ static_cast<unsigned char>(letter)) & 0xFF] ^ (sum >> 8);
    }
    return ~sum;
}

void Put16(std::string& out, std::size_t value) {
    out.push_back(static_cast<char>(value & 0xFF));
    out.push_back(static_cast<char>((value >> 8) & 0xFF));
}

void Put32(std::string& out, std::size_t value) {
    Put16(out, value);
    Put16(out, value >> 16);
}

// Both headers of a file have these fields in a row.
std::string Description(const ZippedFile& file, const ZipTime& time) {
    std::string out;
    Put16(out, kNeededVersion);
    Put16(out, kNamesAreUtf8);
    Put16(out, kStored);
    Put16(out, time.time);
    Put16(out, time.date);
    Put32(out, ChecksumOf(file.content));
    Put32(out, file.content.size());
    Put32(out, file.content.size());
    Put16(out, file.name.size());
    Put16(out, 0);  // no extra field
    return out;
}

std::string DirectoryEntry(const ZippedFile& file, const std::string& description,
                           std::size_t offset) {
    std::string out = "PK\1\2";
    Put16(out, kNeededVersion);
    out += description;
    Put16(out, 0);  // no comment
    Put16(out, 0);  // the first disk
    Put16(out, 0);  // no attributes
    Put32(out, 0);
    Put32(out, offset);
    return out + file.name;
}

}  // namespace

std::string ZipOf(const std::vector<ZippedFile>& files, const ZipTime& time) {
    std::string out;
    std::string directory;
    for (const ZippedFile& file : files) {
        const std::string description = Description(file, time);
        directory += DirectoryEntry(file, description, out.size());
        out += "PK\3\4" + description + file.name + file.content;
    }
    const std::size_t offset = out.size();
    out += directory + "PK\5\6";
    Put32(out, 0);  // one disk
    Put16(out, files.size());
    Put16(out, files.size());
    Put32(out, directory.size());
    Put32(out, offset);
    Put16(out, 0);  // no comment
    return out;
}

}  // namespace PlenxVerify
