// Tests the imports of a program that is made here, and of the same program after it was cut off or
// altered.

#include "doctor/imports.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstring>

namespace PlenxHost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kHeader = 0x80;
constexpr std::size_t kOptional = kHeader + 24;
constexpr std::size_t kSection = kOptional + 240;
constexpr std::size_t kTable = 0x200;  // in the file; in the image it lies at 0x1000

template <class Number>
void Put(std::string& file, std::size_t at, Number value) {
    std::memcpy(&file.at(at), &value, sizeof(value));
}

// A program of one section that imports two DLLs.
std::string Program() {
    std::string file(0x400, '\0');
    Put(file, 0x3c, std::uint32_t{kHeader});
    Put(file, kHeader, std::uint32_t{0x4550});
    Put(file, kHeader + 6, std::uint16_t{1});
    Put(file, kHeader + 20, std::uint16_t{240});
    Put(file, kOptional, std::uint16_t{0x20b});
    Put(file, kOptional + 120, std::uint32_t{0x1000});
    Put(file, kSection + 12, std::uint32_t{0x1000});
    Put(file, kSection + 16, std::uint32_t{0x200});
    Put(file, kSection + 20, std::uint32_t{kTable});
    Put(file, kTable + 12, std::uint32_t{0x1100});
    Put(file, kTable + 20 + 12, std::uint32_t{0x1110});
    std::memcpy(&file[kTable + 0x100], "first.dll", 9);
    std::memcpy(&file[kTable + 0x110], "second.dll", 10);
    return file;
}

TEST(Imports, OfAProgram_AreItsTableInOrder) {
    EXPECT_THAT(ImportedDlls(Program()), ElementsAre("first.dll", "second.dll"));
}

TEST(Imports, OfAProgramWithoutATable_AreNone) {
    std::string file = Program();
    Put(file, kOptional + 120, std::uint32_t{0});
    EXPECT_THAT(ImportedDlls(file), IsEmpty());
}

TEST(Imports, OfA32BitProgramOrNoProgram_AreNone) {
    std::string file = Program();
    Put(file, kOptional, std::uint16_t{0x10b});
    EXPECT_THAT(ImportedDlls(file), IsEmpty());
    Put(file, kOptional, std::uint16_t{0x20b});
    Put(file, kHeader, std::uint32_t{0});
    EXPECT_THAT(ImportedDlls(file), IsEmpty());
    EXPECT_THAT(ImportedDlls(""), IsEmpty());
    EXPECT_THAT(ImportedDlls("MZ"), IsEmpty());
}

TEST(Imports, OfATableThatLiesInNoSection_AreNone) {
    std::string file = Program();
    Put(file, kOptional + 120, std::uint32_t{0x1200});
    EXPECT_THAT(ImportedDlls(file), IsEmpty());
    Put(file, kOptional + 120, std::uint32_t{0xfff});
    EXPECT_THAT(ImportedDlls(file), IsEmpty());
}

TEST(Imports, OfACutProgram_AreThoseThatAreThere) {
    const std::string file = Program();
    for (std::size_t size = 0; size != file.size(); ++size) {
        EXPECT_LE(ImportedDlls(std::string_view(file).substr(0, size)).size(), 2U) << size;
    }
    EXPECT_THAT(ImportedDlls(std::string_view(file).substr(0, kTable + 0x105)),
                ElementsAre("first"));
}

TEST(Imports, OfAProgramWithAnyByteAltered_AreReadWithinTheFile) {
    const std::string file = Program();
    for (std::size_t at = 0; at != file.size(); ++at) {
        std::string bent = file;
        bent[at] = '\xff';
        ImportedDlls(bent);
    }
}

TEST(Imports, OfATableWithoutAnEnd_EndSomewhere) {
    std::string file = Program();
    Put(file, kSection + 16, std::uint32_t{0x100000});
    file.resize(0x100000);
    for (std::size_t entry = kTable; entry + 0x400 < file.size(); entry += 20) {
        Put(file, entry + 12, std::uint32_t{0x1000 + 0xf0000});
    }
    file[kTable + 0xf0000] = 'x';
    EXPECT_LE(ImportedDlls(file).size(), 4096U);
}

}  // namespace
}  // namespace PlenxHost
