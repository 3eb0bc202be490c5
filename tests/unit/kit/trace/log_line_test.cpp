#include "trace/log_line.h"

#include <gtest/gtest.h>

#include <string>

namespace PlenxTrace {
namespace {

TEST(Time, IsMillisecondsSince1970) {
    EXPECT_EQ(ParseTime("1970-01-01 00:00:00.000"), 0);
    EXPECT_EQ(ParseTime("2026-11-21 07:54:02.812"), 1795247642812);
    EXPECT_EQ(ParseTime("2024-02-29 23:59:59.999"), 1709251199999);
}

TEST(Time, OtherShapes_AreNoTime) {
    for (const char* const text :
         {"", "2026-11-21 07:54:02.81", "2026-11-21 07:54:02.8123", "2026-11-21T07:54:02.812",
          "2026-13-21 07:54:02.812", "2026-00-21 07:54:02.812", "2026-11-32 07:54:02.812",
          "2026-11-00 07:54:02.812", "x026-11-21 07:54:02.812"}) {
        EXPECT_EQ(ParseTime(text), std::nullopt) << text;
    }
}

TEST(LibraryLine, HasLevelThreadTextAndFunction) {
    const auto line = ParseLibraryLine(
        "2026-11-21 07:54:02.815 [error] [36] [PLENXSDK] open service (1) error 5"
        "(DistributedFs::ServiceManager::StopServiceByIndex)");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->time, 1795247642815);
    EXPECT_EQ(line->level, Level::kError);
    EXPECT_EQ(line->thread, 36u);
    EXPECT_EQ(line->text, "open service (1) error 5");
    EXPECT_EQ(line->function, "ServiceManager::StopServiceByIndex");
}

TEST(LibraryLine, TakesTheOtherTagAndOtherLevels) {
    const auto line = ParseLibraryLine(
        "2026-11-21 07:54:02.815 [7] [36] [RPCMANAGER] text(DistributedFs::RpcManager::X)");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->level, Level::kOther);
    EXPECT_EQ(line->text, "text");
}

TEST(LibraryLine, WithoutAFunction_IsALineAllTheSame) {
    for (const char* const text :
         {"torn in the mid", "torn(DistributedFs::RpcManager::Sta", "(x)"}) {
        const std::string whole =
            std::string("2026-11-21 07:54:02.815 [info] [36] [PLENXSDK] ") + text;
        const auto line = ParseLibraryLine(whole);
        ASSERT_TRUE(line) << text;
        EXPECT_EQ(line->text, text);
        EXPECT_EQ(line->function, "");
    }
}

TEST(LibraryLine, OnlyTheLastFunctionIsTheFunction) {
    const auto line = ParseLibraryLine(
        "2026-11-21 07:54:02.815 [info] [36] [PLENXSDK] a(DistributedFs::Fake)(DistributedFs::B)");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->text, "a(DistributedFs::Fake)");
    EXPECT_EQ(line->function, "B");
}

TEST(LibraryLine, OtherText_IsNoLibraryLine) {
    for (const char* const text :
         {"", "garbage", "2026-11-21 07:54:02.815", "2026-11-21 07:54:02.815 ",
          "2026-11-21 07:54:02.815 [info]", "2026-11-21 07:54:02.815 [info] [x] text",
          "2026-11-21 07:54:02.815 [info] [] text", "2026-11-21 07:54:02.815 [info] [36]",
          "2026-11-21 07:54:02.815 pc received PingService(19) number:0"}) {
        EXPECT_FALSE(ParseLibraryLine(text)) << text;
    }
}

TEST(ServiceLine, HasServiceAndText) {
    const auto line = ParseServiceLine("2026-11-21 07:54:03.947 phone received X(19) number:0");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->time, 1795247643947);
    EXPECT_EQ(line->service, 2);
    EXPECT_EQ(line->text, "received X(19) number:0");
}

TEST(ServiceLine, OtherText_IsNoServiceLine) {
    EXPECT_FALSE(ParseServiceLine("2026-11-21 07:54:03.947 tablet runs"));
    EXPECT_FALSE(ParseServiceLine("2026-11-21 07:54:03.947 pcruns"));
    EXPECT_FALSE(ParseServiceLine("pc runs"));
}

}  // namespace
}  // namespace PlenxTrace
