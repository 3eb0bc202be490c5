// Results for people, programs and build servers.

#include "report.h"

#include <gtest/gtest.h>

namespace PlenxScenario {
namespace {

const std::vector<Result> kResults = {
    {"all-is-well", "All is well", "", 0.94, "C:\\p\\all-is-well", {"NotifyError(errCode=5)"}},
    {"slow-stop", "A \"slow\" stop", "expect <NotifyError> & \x01", 12.06, "C:\\p\\slow-stop", {}},
};

TEST(Report, LineOfEach_HasItsNameItsTimeAndItsReason) {
    EXPECT_EQ(LineOf(kResults[0]), "ok    all-is-well                    0.9 s");
    EXPECT_EQ(LineOf(kResults[1]),
              "FAIL  slow-stop                     12.1 s  expect <NotifyError> & \x01");
}

TEST(Report, SummaryCounts) {
    EXPECT_EQ(SummaryOf(kResults), "1 passed, 1 failed");
}

TEST(Report, Json_HasAllOfIt) {
    EXPECT_EQ(JsonOf(kResults), R"json([
  {
    "name": "all-is-well",
    "title": "All is well",
    "passed": true,
    "reason": "",
    "seconds": 0.94,
    "logs": "C:\\p\\all-is-well",
    "observed": [
      "NotifyError(errCode=5)"
    ]
  },
  {
    "name": "slow-stop",
    "title": "A \"slow\" stop",
    "passed": false,
    "reason": "expect <NotifyError> & \u0001",
    "seconds": 12.06,
    "logs": "C:\\p\\slow-stop",
    "observed": []
  }
]
)json");
}

TEST(Report, Junit_IsWhatBuildServersRead) {
    EXPECT_EQ(JunitOf(kResults), R"(<?xml version="1.0" encoding="UTF-8"?>
<testsuite name="plenxscenario" tests="2" failures="1" time="13.0">
  <testcase classname="plenxscenario" name="all-is-well" time="0.9"/>
  <testcase classname="plenxscenario" name="slow-stop" time="12.1">
    <failure message="expect &lt;NotifyError&gt; &amp; ?"/>
  </testcase>
</testsuite>
)");
}

}  // namespace
}  // namespace PlenxScenario
