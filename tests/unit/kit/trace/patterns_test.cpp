#include "trace/patterns.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "trace/template_text.h"

namespace PlenxTrace {
namespace {

TEST(Template, MatchesLiteralTextOnly_AsAWhole) {
    Captures captures;
    EXPECT_TRUE(Matches("stop", "stop", captures));
    EXPECT_FALSE(Matches("stop", "stops", captures));
    EXPECT_FALSE(Matches("stops", "stop", captures));
    EXPECT_TRUE(Matches("", "", captures));
}

TEST(Template, NumbersAreDecimalAndMayBeNegative) {
    Captures captures;
    EXPECT_TRUE(Matches("error {code}", "error -12", captures));
    EXPECT_EQ(captures.Number("code"), -12);
    EXPECT_FALSE(Matches("error {code}", "error ", captures));
    EXPECT_FALSE(Matches("error {code}", "error -", captures));
    EXPECT_FALSE(Matches("error {code}", "error 1x", captures));
}

TEST(Template, ANumberThatDoesNotFit_IsNoNumber) {
    Captures captures;
    EXPECT_TRUE(Matches("error {code}", "error 99999999999999999999", captures));
    EXPECT_EQ(captures.Number("code"), std::nullopt);
}

TEST(Template, TextTakesAsLittleAsItCan_AndMaybeNothing) {
    Captures captures;
    EXPECT_TRUE(Matches("upgrade {text} successfully", "upgrade a b successfully", captures));
    EXPECT_EQ(captures.Text("text"), "a b");
    EXPECT_TRUE(Matches("name:{text}", "name:", captures));
    EXPECT_EQ(captures.Text("text"), "");
    EXPECT_FALSE(Matches("upgrade {text} successfully", "upgrade x", captures));
    EXPECT_TRUE(Matches("file{text} error", "filea error b error", captures));
    EXPECT_EQ(captures.Text("text"), "a error b");
    EXPECT_FALSE(Matches("file{text} error", "filea error b", captures));
}

TEST(Template, AWordEndsAtABlank) {
    Captures captures;
    EXPECT_TRUE(Matches("sends {word}{text}", "sends A(1) b:2", captures));
    EXPECT_EQ(captures.Text("word"), "A(1)");
    EXPECT_EQ(captures.Text("text"), " b:2");
    EXPECT_FALSE(Matches("stop {name} error 2", "stop  error 2", captures));
}

TEST(Table, EachRowOfAFunctionIsFoundBeforeTheCommonOnes) {
    Captures captures;
    const Pattern* row =
        FindLibraryPattern("KillServiceProcess", "kill service process 0", captures);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->mark, Mark::kUsual);
    row = FindLibraryPattern("KillServiceProcess", "kill service process 12", captures);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(captures.Number("process"), 12);
    row = FindLibraryPattern("KillServiceProcess", "kill service process 12 error 5", captures);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(captures.Number("code"), 5);
    EXPECT_EQ(FindLibraryPattern("Unheard", "of", captures), nullptr);
}

std::string Sources() {
    std::string text;
    for (const auto& file : std::filesystem::recursive_directory_iterator(SOURCES)) {
        if (file.path().extension() == ".cpp") {
            std::ifstream stream(file.path());
            text.append(std::istreambuf_iterator<char>(stream), {});
        }
    }
    return text;
}

// When the library one day logs a text differently, the tool would no longer know it.
TEST(Table, EachRowsFunctionAndTextAreInTheLibrarysSources) {
    const std::string sources = Sources();
    for (const Pattern* const row : LibraryPatterns()) {
        EXPECT_NE(sources.find("\"DistributedFs::" + std::string(row->function) + "\""),
                  std::string::npos)
            << row->function;
        std::string start(row->text.substr(0, row->text.find('{')));
        start.erase(start.find_last_not_of("0123456789") + 1);  // a row for one code
        // A row without a start has nothing to look for if it takes every text.
        EXPECT_TRUE(start.empty() ? row->text == "{text}"
                                  : sources.find("\"[PLENXSDK] " + start) != std::string::npos)
            << row->text;
    }
}

TEST(Table, HasALaneForEachClassOfTheLibrary) {
    EXPECT_EQ(LaneOfClass("PLENXManager::Start"), Lane::kFacade);
    EXPECT_EQ(LaneOfClass("PLENXManagerInner::Start"), Lane::kEngine);
    EXPECT_EQ(LaneOfClass("RpcMessageReader::ReadInt32"), Lane::kEngine);
    EXPECT_EQ(LaneOfClass("ServiceManager::~ServiceManager"), Lane::kEngine);
    EXPECT_EQ(LaneOfClass("FileUtils::MakeDirectory"), Lane::kEngine);
    EXPECT_EQ(LaneOfClass(""), Lane::kNoLane);
    EXPECT_EQ(LaneOfClass("Somebody::Else"), Lane::kNoLane);
}

}  // namespace
}  // namespace PlenxTrace
