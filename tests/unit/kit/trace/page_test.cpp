// Tests the whole program, from its command line to the page.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "outcome.h"
#include "story.h"
#include "trace/json_text.h"

namespace PlenxTrace {
namespace {

namespace fs = std::filesystem;

std::string JsonOf(std::string_view text, std::size_t most = 1000) {
    return ScriptJson(Shortened(text, most));
}

TEST(JsonText, NothingInItCanBeTakenForMarkup) {
    EXPECT_EQ(JsonOf("</script><script>&<!--"),
              "\"\\u003c/script\\u003e\\u003cscript\\u003e\\u0026\\u003c!--\"");
    EXPECT_EQ(JsonOf("a\"b\\c\n\x7f"), "\"a\\\"b\\\\c\\n\x7f\"");
    EXPECT_EQ(JsonOf(std::string("\0", 1)), "\"\\u0000\"");
}

TEST(JsonText, KeepsUtf8_AndReplacesMalformedBytes) {
    EXPECT_EQ(JsonOf("Küche ☕ 😀"), "\"Küche ☕ 😀\"");
    EXPECT_EQ(JsonOf("\xff"), "\"\xEF\xBF\xBD\"");
    EXPECT_EQ(JsonOf("\xc3"), "\"\xEF\xBF\xBD\"") << "cut off";
    EXPECT_EQ(JsonOf("\xc0\xaf"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"") << "overlong";
    EXPECT_EQ(JsonOf("\xed\xa0\x80"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\"") << "surrogate";
    EXPECT_EQ(JsonOf("\xf5\x80\x80\x80").size(), 2u + 4 * 3) << "beyond Unicode";
}

TEST(JsonText, IsCutBetweenCharacters) {
    EXPECT_EQ(JsonOf("abcdef", 6), "\"abcdef\"");
    EXPECT_EQ(JsonOf("abcdefg", 6), "\"abcdef…\"");
    EXPECT_EQ(JsonOf("a<b", 6), "\"a…\"") << "its escape does not fit";
    EXPECT_EQ(JsonOf("ääää", 5), "\"ää…\"");
}

TEST(HtmlText, IsTextForAnElement) {
    EXPECT_EQ(HtmlText("<b>\"ü\"&\n\xff"), "&lt;b&gt;&quot;ü&quot;&amp; \xEF\xBF\xBD");
}

// Gives each test a folder of its own.
class Page : public testing::Test {
protected:
    Page() {
        folder_ = fs::temp_directory_path() /
                  ("plenxkit-trace-" +
                   std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    ~Page() override { fs::remove_all(folder_); }

    std::string Path(const std::string& name) const { return (folder_ / name).u8string(); }

    std::string Write(const std::string& name, const std::string& content) const {
        std::ofstream(folder_ / name, std::ios::binary) << content;
        return Path(name);
    }

    std::string Read(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // Returns "exit code|out|err".
    std::string Run(const std::vector<std::string>& arguments) const {
        std::vector<std::string> words = {"trace"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const PlenxKit::Outcome outcome = PlenxKit::OutcomeOf(words);
        return std::to_string(outcome.code) + "|" + outcome.out + "|" + outcome.err;
    }

    fs::path folder_;
};

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(Page, HasTheLogsNameAsTitleAndName_IfNothingElseIsSaid) {
    const std::string log = Write("lib.log", Pushed(0, 1) + "\n" + Runs(5, 1) + "\n");
    const std::string outcome = Run({log});
    EXPECT_EQ(outcome.substr(0, outcome.find(", ")), "0|" + Path("lib.html") + ": 2 of 2 lines");
    const std::string page = Read("lib.html");
    EXPECT_TRUE(Contains(page, "<title>lib.log</title>"));
    EXPECT_TRUE(Contains(page, "\"Start pc runs\""));
    EXPECT_TRUE(Contains(page, "</html>"));
    EXPECT_FALSE(fs::exists(Path("lib.html.part")));
}

TEST_F(Page, HasNoPlaceLeft_AndNamesNoAddress) {
    Run({Write("lib.log", Pushed(0, 1) + "\n")});
    const std::string page = Read("lib.html");
    EXPECT_FALSE(Contains(page, "{{"));
    EXPECT_FALSE(Contains(page, "src="));
    EXPECT_FALSE(Contains(page, "@import"));
    EXPECT_FALSE(Contains(page, "url("));
}

TEST_F(Page, TextOfALogIsNoMarkup_NorIsTheTitle) {
    const std::string hostile = "</script><script>alert(1)</script><!-- {{script}} {{data}}";
    const std::string log =
        Write("lib.log", hostile + "\n" + Info(0, 1, hostile, "PLENXManager::" + hostile) + "\n");
    EXPECT_EQ(Run({log, "--title", hostile}).substr(0, 2), "0|");
    const std::string page = Read("lib.html");
    EXPECT_FALSE(Contains(page, "<script>alert"));
    EXPECT_FALSE(Contains(page, "<!--"));
    EXPECT_TRUE(Contains(page, "{{script}} {{data}}")) << "the log's text must stay text";
}

TEST_F(Page, LinesOfAllLogsStandInTheOrderOfTime) {
    const std::string library = Write(
        "lib.log",
        Info(10, kWorkerThread, "rpc manager create group svcType:1", "RpcManager::CreateGroup") +
            "\n" + Told(10, 1, 0, 1) + "\n");
    const std::string service =
        Write("svc.log",
              At(10) + " pc received CreateGroup(0) groupName:\"g_1\"\n" + At(30) + " pc stops\n");
    const std::string outcome = Run({library, "--service", service});
    EXPECT_EQ(outcome.substr(0, outcome.find(", ")), "0|" + Path("lib.html") + ": 4 of 4 lines");
    const std::string page = Read("lib.html");
    EXPECT_LT(page.find("pc: CreateGroup\""), page.find("pc: CreateGroup(0) received\""));
    EXPECT_LT(page.find("pc: CreateGroup(0) received\""), page.find("pc: stops\""));
    EXPECT_TRUE(Contains(page, "pc: stops\""));
}

TEST_F(Page, ALargeLogMakesASmallPage) {
    std::string content;
    for (int i = 0; i != 20000; ++i) {
        content += i % 2 == 0 ? Pushed(i, 1) : Error(i, 1, std::string(300, '<'), "RpcManager::X");
        content += "\n";
    }
    const std::string log = Write("lib.log", content);
    EXPECT_EQ(Run({log, "--events", "1000"}).substr(0, 2), "0|");
    EXPECT_LT(fs::file_size(Path("lib.html")), 1500000u);
    EXPECT_TRUE(Contains(Read("lib.html"), "\"plan\":{\"whole\":0,\"lines\":20000"));
}

TEST_F(Page, GarbageATornEndAndAVeryLongLine_AreTold) {
    const std::string log =
        Write("lib.log", "\xff\xfe garbage\r\n" + Pushed(0, 1) + "\r\n" +
                             Info(1, 1, std::string(9000, 'x'), "RpcManager::X") + "\n" +
                             Pushed(2, 1).substr(0, 60));
    EXPECT_EQ(Run({log}).substr(0, 2), "0|");
    const std::string page = Read("lib.html");
    EXPECT_TRUE(Contains(page, "\"foreign\":1,\"unknown\":2,\"torn\":1,\"cut\":1"));
    EXPECT_TRUE(Contains(page, " more bytes)"));
    EXPECT_FALSE(Contains(page, "\\u000d"));
}

TEST_F(Page, AnEmptyLog_MakesAPage) {
    const std::string outcome = Run({Write("lib.log", "")});
    EXPECT_EQ(outcome.substr(0, outcome.find(", ")), "0|" + Path("lib.html") + ": 0 of 0 lines");
}

TEST_F(Page, AFileThatIsNoLog_IsSaidToBeNone) {
    const std::string outcome = Run({Write("lib.txt", "one\ntwo\n")});
    EXPECT_TRUE(Contains(outcome,
                         "|plenxkit trace: no line looks like one of a log; the page shows "
                         "them as they are\n"));
}

TEST_F(Page, AServiceLogGivenAsTheLibrarys_IsSaidToBeOne) {
    const std::string hint =
        "plenxkit trace: a service's log was given as the library's; give it with --service, "
        "behind "
        "the library's log\n";
    const std::string service = Write("service.log", At(0) + " pc runs\n");
    const std::string library = Write("lib.log", Pushed(0, 1) + "\n");
    const std::string alone = Run({service});
    EXPECT_EQ(alone.substr(0, 2), "0|");
    EXPECT_EQ(alone.substr(alone.rfind('|') + 1), hint);
    EXPECT_TRUE(Contains(Run({library, service}), "|" + hint));
    EXPECT_FALSE(Contains(Run({library, "--service", service}), "plenxkit trace: "));
}

TEST_F(Page, ALogThatCannotBeRead_EndsWith1_AndLeavesNoPage) {
    EXPECT_EQ(Run({Path("none.log")}), "1||plenxkit trace: cannot read " + Path("none.log") + "\n");
    EXPECT_EQ(Run({folder_.u8string(), "--output", Path("x.html")}),
              "1||plenxkit trace: cannot read " + folder_.u8string() + "\n");
    EXPECT_FALSE(fs::exists(Path("none.html")));
    EXPECT_FALSE(fs::exists(Path("x.html")));
}

TEST_F(Page, APageThatCannotBeWritten_EndsWith1) {
    const std::string log = Write("lib.log", "x\n");
    const std::string output = Path("no/folder/page.html");
    EXPECT_EQ(Run({log, "--output", output}), "1||plenxkit trace: cannot write " + output + "\n");
}

TEST_F(Page, ALogIsNeverOverwritten) {
    const std::string log = Write("lib.html", "the log\n");
    EXPECT_EQ(Run({log}), "2||--output: is one of the logs: " + log +
                              "\nRun with --help for more information.\n");
    EXPECT_EQ(Read("lib.html"), "the log\n");
}

TEST_F(Page, WrongUsage_EndsWith2) {
    EXPECT_EQ(Run({}).substr(0, 2), "2|");
    EXPECT_EQ(Run({"a", "--unheard-of"}).substr(0, 2), "2|");
    EXPECT_EQ(Run({"a", "--events", "5"}).substr(0, 2), "2|");
}

TEST_F(Page, Help_EndsWith0) {
    EXPECT_TRUE(Contains(Run({"--help"}), "--service"));
    EXPECT_EQ(Run({"--help"}).substr(0, 2), "0|");
}

}  // namespace
}  // namespace PlenxTrace
