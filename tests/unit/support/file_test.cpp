#include "support/file.h"

#include <gtest/gtest.h>

#include <fstream>

namespace PlenxSupport {
namespace {

namespace fs = std::filesystem;

class ReadWholeFileTest : public testing::Test {
protected:
    fs::path Written(const std::string& bytes) {
        std::ofstream(file_, std::ios::binary) << bytes;
        return file_;
    }
    void TearDown() override { fs::remove(file_); }

private:
    const fs::path file_ = fs::path(testing::TempDir()) /
                           testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(ReadWholeFileTest, GivesEveryByteAsItIs) {
    const std::string bytes("a\r\nb\0\x1A\xFF", 7);
    EXPECT_EQ(ReadWholeFile(Written(bytes)), bytes);
}

TEST_F(ReadWholeFileTest, GivesAnEmptyTextForAnEmptyFile) {
    EXPECT_EQ(ReadWholeFile(Written("")), "");
}

TEST_F(ReadWholeFileTest, GivesNothingForAMissingFileAndForAFolder) {
    EXPECT_EQ(ReadWholeFile("/nowhere/at-all"), std::nullopt);
    EXPECT_EQ(ReadWholeFile(testing::TempDir()), std::nullopt);
}

}  // namespace
}  // namespace PlenxSupport
