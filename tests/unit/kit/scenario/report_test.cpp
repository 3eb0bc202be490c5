// Tests the results for people, programs and build servers.

#include "scenario/report.h"

#include <gtest/gtest.h>

namespace PlenxScenario {
namespace {

const std::vector<Result> kResults = {
    {"all-is-well",
     "All is well",
     "",
     0.94,
     "C:\\p\\all-is-well",
     {"NotifyError(errCode=5)"},
     0,
     {}},
    {"slow-stop",
     "A \"slow\" stop",
     "expect <NotifyError> & \x01",
     12.06,
     "C:\\p\\slow-stop",
     {},
     1,
     {}},
    {"mine", "", "", 1, "C:\\p\\mine", {}, 3, {{7, "[[on]] any request"}, {9, "[stop] (pc)"}}},
};

TEST(Report, LineOfEach_HasItsNameItsTimeAndItsReason) {
    EXPECT_EQ(LineOf(kResults[0]), "ok    all-is-well                    0.9 s");
    EXPECT_EQ(LineOf(kResults[1]),
              "FAIL  slow-stop                     12.1 s  expect <NotifyError> & \x01");
}

TEST(Report, LineOfAPass_SaysWhatWasNotPlayed) {
    EXPECT_EQ(LineOf(kResults[2]),
              "ok    mine                           1.0 s  2 of 3 tables not played: "
              "[[on]] any request, line 7; [stop] (pc), line 9");
}

TEST(Report, LineOfAFailure_HasItsReasonAlone) {
    Result failed = kResults[2];
    failed.reason = "the host took too long";
    EXPECT_EQ(LineOf(failed), "FAIL  mine                           1.0 s  the host took too long");
}

TEST(Report, SummaryCounts) {
    EXPECT_EQ(SummaryOf(kResults), "2 passed, 1 failed; 1 not played in full");
    EXPECT_EQ(SummaryOf({kResults[0], kResults[1]}), "1 passed, 1 failed");
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
    "tables": 0,
    "not_played": [],
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
    "tables": 1,
    "not_played": [],
    "observed": []
  },
  {
    "name": "mine",
    "title": "",
    "passed": true,
    "reason": "",
    "seconds": 1.0,
    "logs": "C:\\p\\mine",
    "tables": 3,
    "not_played": [
      {
        "line": 7,
        "table": "[[on]] any request"
      },
      {
        "line": 9,
        "table": "[stop] (pc)"
      }
    ],
    "observed": []
  }
]
)json");
}

TEST(Report, Junit_IsWhatBuildServersRead) {
    EXPECT_EQ(JunitOf(kResults), R"(<?xml version="1.0" encoding="UTF-8"?>
<testsuite name="plenxkit scenario" tests="3" failures="1" time="14.0">
	<testcase classname="plenxkit scenario" name="all-is-well" time="0.9"/>
	<testcase classname="plenxkit scenario" name="slow-stop" time="12.1">
		<failure message="expect &lt;NotifyError&gt; &amp; ?"/>
	</testcase>
	<testcase classname="plenxkit scenario" name="mine" time="1.0">
		<system-out>2 of 3 tables not played: [[on]] any request, line 7; [stop] (pc), line 9</system-out>
	</testcase>
</testsuite>

)");
}

}  // namespace
}  // namespace PlenxScenario
