#include "trace/line_reader.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace PlenxTrace {
namespace {

constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();

std::vector<Line> Lines(const std::string& content, std::uint64_t mostBytes = kAll) {
    std::istringstream stream(content);
    LineReader reader(stream, mostBytes);
    std::vector<Line> lines;
    for (Line line; reader.Next(line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> Texts(const std::string& content) {
    std::vector<std::string> texts;
    for (const Line& line : Lines(content)) {
        texts.push_back(line.text);
    }
    return texts;
}

using Strings = std::vector<std::string>;

TEST(LineReader, GivesLinesWithoutTheirEnds) {
    EXPECT_EQ(Texts("a\nb\r\n\nc\n"), (Strings{"a", "b", "", "c"}));
}

TEST(LineReader, AnEmptyFile_HasNoLine) {
    EXPECT_TRUE(Lines("").empty());
}

TEST(LineReader, SkipsAByteOrderMark) {
    EXPECT_EQ(Texts("\xEF\xBB\xBF"
                    "a\n"),
              Strings{"a"});
    EXPECT_TRUE(Texts("\xEF\xBB\xBF").empty());
}

TEST(LineReader, CountsLinesFromOne_AndMarksATornLastOne) {
    const std::vector<Line> lines = Lines("a\nb");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].number, 1u);
    EXPECT_FALSE(lines[0].torn);
    EXPECT_EQ(lines[1].number, 2u);
    EXPECT_EQ(lines[1].text, "b");
    EXPECT_TRUE(lines[1].torn);
}

TEST(LineReader, CutsALineThatIsTooLong_AndSaysByHowMuch) {
    const std::vector<Line> lines = Lines(std::string(1000000, 'x') + "\r\nnext\n");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].text, std::string(kMostLineBytes, 'x'));
    EXPECT_EQ(lines[0].cutBytes, 1000001 - kMostLineBytes);
    EXPECT_EQ(lines[1].text, "next");
    EXPECT_EQ(lines[1].number, 2u);
}

TEST(LineReader, FindsLineEndsAtEveryPlaceOfItsBuffer) {
    constexpr std::size_t kBuffer = std::size_t{64} * 1024;
    for (std::size_t length : {kBuffer - 2, kBuffer - 1, kBuffer, kBuffer + 1}) {
        std::string content(length, 'x');
        for (std::size_t i = 99; i < length; i += 100) {
            content[i] = '\n';
        }
        content += "\nend\n";
        const std::vector<Line> lines = Lines(content);
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back().text, "end");
        EXPECT_EQ(lines[0].text, std::string(99, 'x'));
        EXPECT_EQ(lines.back().number, length / 100 + 2);
    }
}

TEST(LineReader, ReadsNoFurtherThanItWasTold) {
    const std::vector<Line> lines = Lines("one\ntwo\nthree\n", 8);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].text, "two");
    EXPECT_FALSE(lines[1].torn);
}

TEST(LineReader, KeepsNulBytesAndLoneCarriageReturns) {
    EXPECT_EQ(Texts(std::string("a\0b\rc\n", 6)), Strings{std::string("a\0b\rc", 5)});
}

}  // namespace
}  // namespace PlenxTrace
