#include "host/script_parser.h"

#include <gmock/gmock.h>

namespace PlenxHost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Texts(std::string_view line) {
    std::vector<std::string> texts;
    for (const Word& word : SplitWords(line).words) {
        texts.push_back(word.text);
    }
    return texts;
}

std::string Complaint(std::string_view line) {
    try {
        SplitWords(line);
    } catch (const ScriptError& error) {
        return error.what();
    }
    return "none";
}

TEST(SplitWords, BlanksDivideWords) {
    EXPECT_THAT(Texts("  start pc\tgroup  arg \r"), ElementsAre("start", "pc", "group", "arg"));
}

TEST(SplitWords, EmptyLinesAndCommentsHaveNoWords) {
    EXPECT_THAT(Texts(""), IsEmpty());
    EXPECT_THAT(Texts(" \t\r\n"), IsEmpty());
    EXPECT_THAT(Texts("  # start pc \"unclosed"), IsEmpty());
}

TEST(SplitWords, CommentBeginsAWordOnly) {
    EXPECT_THAT(Texts("a#b \"#c\" # d"), ElementsAre("a#b", "#c"));
}

TEST(SplitWords, QuotedPartsMayBeEmptyAndHoldBlanks) {
    EXPECT_THAT(Texts(R"(a "" "b c" d"e f"g)"), ElementsAre("a", "", "b c", "de fg"));
}

TEST(SplitWords, EscapesStandForBytesInQuotesOnly) {
    EXPECT_THAT(Texts(R"("\\\"\n\r\t\xfF\x00." C:\new)"),
                ElementsAre(std::string("\\\"\n\r\t\xFF\0.", 8), "C:\\new"));
}

TEST(SplitWords, SaysWhatIsWrong) {
    EXPECT_EQ(Complaint("a \"b"), "a closing \" is missing");
    EXPECT_EQ(Complaint(R"("\x1")"), "\\x needs two hexadecimal digits");
    EXPECT_EQ(Complaint(R"("\xg0")"), "\\x needs two hexadecimal digits");
    EXPECT_EQ(Complaint(R"("\q")"), R"(in quotes, write \\ \" \n \r \t or \xNN after a backslash)");
    EXPECT_EQ(Complaint("\"\\"), R"(in quotes, write \\ \" \n \r \t or \xNN after a backslash)");
}

TEST(SplitWords, TextIsTheLineWithoutItsComment) {
    EXPECT_EQ(SplitWords("  echo  a \"b # c\"  # d").text, "echo  a \"b # c\"");
    EXPECT_EQ(SplitWords(" # d").text, "");
}

TEST(Word, SpecialFormsAreUnquoted) {
    const auto words = SplitWords(R"(repeat:2:"a b" "repeat:2:a" rep"eat:" * "*")").words;
    EXPECT_TRUE(words[0].Has("repeat:"));
    EXPECT_FALSE(words[1].Has("repeat:"));
    EXPECT_FALSE(words[2].Has("repeat:"));
    EXPECT_TRUE(words[3].Is("*"));
    EXPECT_FALSE(words[4].Is("*"));
}

}  // namespace
}  // namespace PlenxHost
