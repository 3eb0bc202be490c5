// Tests the ZIP of the results, byte for byte.

#include "verify/zip.h"

#include <gtest/gtest.h>

namespace PlenxVerify {
namespace {

std::string Bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text.push_back(static_cast<char>(value));
    }
    return text;
}

TEST(VerifyZip, Nothing_IsAnEmptyZip) {
    EXPECT_EQ(ZipOf({}, {}), "PK\5\6" + std::string(18, '\0'));
}

// The checksum of these nine digits is known: 0xCBF43926.
TEST(VerifyZip, File_IsStoredAndDescribedTwice) {
    const std::string description =
        Bytes({20,   0, 0, 8, 0, 0, 0xCF, 0x51, 0x76, 0x5D, 0x26, 0x39, 0xF4,
               0xCB, 9, 0, 0, 0, 9, 0,    0,    0,    3,    0,    0,    0});
    const std::string expected =
        "PK\3\4" + description + "a/b" + "123456789" +                             //
        "PK\1\2" + Bytes({20, 0}) + description + std::string(14, '\0') + "a/b" +  //
        "PK\5\6" + Bytes({0, 0, 0, 0, 1, 0, 1, 0, 49, 0, 0, 0, 42, 0, 0, 0, 0, 0});
    EXPECT_EQ(ZipOf({{"a/b", "123456789"}}, {0x5D76, 0x51CF}), expected);
}

TEST(VerifyZip, SecondFile_IsFoundAtItsPlace) {
    const std::string zip = ZipOf({{"a", "one"}, {"b", "two"}}, {});
    const std::size_t second = zip.rfind("PK\3\4");
    const std::size_t entry = zip.rfind("PK\1\2");
    EXPECT_EQ(static_cast<unsigned char>(zip[entry + 42]), second);
}

}  // namespace
}  // namespace PlenxVerify
