// Tests what verify reads from the results of the programs that it has run.

#include "verify/results.h"

#include <gmock/gmock.h>

namespace PlenxVerify {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// GoogleTest 1.12 writes its results in this form.
constexpr const char* kTests = R"({
  "tests": 4, "failures": 1, "disabled": 1, "errors": 0, "name": "AllTests",
  "testsuites": [
    {"name": "Wire", "tests": 2, "testsuite": [
      {"name": "Echo", "file": "a.cpp", "line": 7, "status": "RUN", "result": "COMPLETED",
       "timestamp": "2026-11-22T10:24:26Z", "time": "0.25s", "classname": "Wire",
       "transfer syntax": "NDR64"},
      {"name": "Size", "value_param": "5", "status": "RUN", "result": "COMPLETED",
       "time": "1.5s", "classname": "Wire", "failures": [
         {"failure": "a.cpp:9\nExpected 1", "type": ""}, {"failure": "more", "type": ""}]}]},
    {"name": "Life", "testsuite": [
      {"name": "Skips", "status": "RUN", "result": "SKIPPED", "time": "0s"},
      {"name": "DISABLED_Off", "status": "NOTRUN", "result": "SUPPRESSED", "time": "0s"}]}]})";

TEST(VerifyResults, Tests_AreReadWithTheirFailuresAndRecords) {
    const std::vector<Case> cases = CasesOfTests(kTests);
    ASSERT_EQ(cases.size(), 3U);
    EXPECT_EQ(cases[0].name, "Wire.Echo");
    EXPECT_EQ(cases[0].verdict, Case::Verdict::kPassed);
    EXPECT_EQ(cases[0].seconds, 0.25);
    EXPECT_THAT(cases[0].recorded, ElementsAre(Pair("transfer syntax", "NDR64")));
    EXPECT_EQ(cases[1].name, "Wire.Size");
    EXPECT_TRUE(cases[1].Failed());
    EXPECT_EQ(cases[1].text, "a.cpp:9\nExpected 1\nmore");
    EXPECT_THAT(cases[1].recorded, IsEmpty());
    EXPECT_EQ(cases[2].name, "Life.Skips");
    EXPECT_EQ(cases[2].verdict, Case::Verdict::kSkipped);
}

// GoogleTest 1.14 and later also write why a test was skipped.
TEST(VerifyResults, Skip_HasItsReason) {
    const std::vector<Case> cases = CasesOfTests(R"({"testsuites": [{"name": "Life", "testsuite": [
        {"name": "Skips", "status": "RUN", "result": "SKIPPED", "time": "0s",
         "skipped": [{"message": "not here"}]}]}]})");
    ASSERT_EQ(cases.size(), 1U);
    EXPECT_EQ(cases[0].text, "not here");
    EXPECT_THAT(cases[0].recorded, IsEmpty());
}

TEST(VerifyResults, Scenarios_AreRead) {
    const std::vector<Case> cases = CasesOfScenarios(
        R"([{"name": "slow-start", "passed": true, "reason": "", "seconds": 0.5},
            {"name": "slow-stop", "passed": false, "reason": "the host hangs", "seconds": 60}])");
    ASSERT_EQ(cases.size(), 2U);
    EXPECT_FALSE(cases[0].Failed());
    EXPECT_TRUE(cases[1].Failed());
    EXPECT_EQ(cases[1].text, "the host hangs");
    EXPECT_EQ(cases[1].seconds, 60);
}

TEST(VerifyResults, OtherText_IsNoResult) {
    EXPECT_ANY_THROW(CasesOfTests(""));
    EXPECT_ANY_THROW(CasesOfTests("{\"testsuites\": [{}]}"));
    EXPECT_ANY_THROW(CasesOfScenarios("{"));
    EXPECT_ANY_THROW(CasesOfScenarios("[{\"name\": 1}]"));
}

TEST(VerifyResults, LastBegun_IsTheTestThatDidNotEnd) {
    EXPECT_EQ(LastBegun("[ RUN      ] A.One\r\n[       OK ] A.One (1 ms)\r\n"
                        "[ RUN      ] A.Two\r\nsome text\r\n"),
              "A.Two");
    EXPECT_EQ(LastBegun("[ RUN      ] A.One\n[  FAILED  ] A.One (1 ms)\n"), "");
    EXPECT_EQ(LastBegun("[ RUN      ] A.One\n[  SKIPPED ] A.One (1 ms)\n"), "");
    EXPECT_EQ(LastBegun(""), "");
}

}  // namespace
}  // namespace PlenxVerify
