#include "distributedfile/call_line.h"

#include <gmock/gmock.h>

#include "temporary_folder.h"

using Office::AppendCallLine;
using Office::Hex;
using Office::Quoted;

TEST(CallLineTest, StringsAreQuoted) {
    EXPECT_EQ(Quoted(""), "\"\"");
    EXPECT_EQ(Quoted("h\xC3\xA9 a"), "\"h\xC3\xA9 a\"");
    EXPECT_EQ(Quoted("C:\\a\"b"), "\"C:\\\\a\\\"b\"");
    EXPECT_EQ(Quoted(std::string("a\0\n\x7F", 4)), "\"a\\x00\\x0a\\x7f\"");
}

TEST(CallLineTest, DataIsHexadecimal) {
    const unsigned char data[] = {0x00, 0xFF, 0xA0};
    EXPECT_EQ(Hex(data, 3), "00ffa0");
    EXPECT_EQ(Hex(data, 0), "");
    EXPECT_EQ(Hex(data, -1), "");
    EXPECT_EQ(Hex(nullptr, 0), "");
    EXPECT_EQ(Hex(nullptr, 3), "");
}

TEST(CallLineTest, LinesAreAppended) {
    const TemporaryFolder folder;
    AppendCallLine(folder / "calls", "one");
    AppendCallLine(folder / "calls", "two");
    EXPECT_EQ(ReadFile(folder / "calls"), "one\ntwo\n");
}

TEST(CallLineTest, FileThatCannotBeWritten_IsIgnored) {
    const TemporaryFolder folder;
    AppendCallLine(folder.Path(), "lost");
    AppendCallLine(folder / "none/calls", "lost");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}
