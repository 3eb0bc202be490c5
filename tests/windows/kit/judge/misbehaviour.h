// The development service misbehaves, and the judge says so: a table has a row for each
// misbehaviour.

#ifndef PLENXSDK_TESTS_WINDOWS_KIT_JUDGE_MISBEHAVIOUR_H
#define PLENXSDK_TESTS_WINDOWS_KIT_JUDGE_MISBEHAVIOUR_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

#include "kit/judge/judgement.h"
#include "support/child_process.h"
#include "support/wide_text.h"

namespace PlenxTest {

using Numbers = std::set<std::string>;

struct Misbehaviour {
    const char* name;
    const char* scenario;
    Numbers failed;
    const char* options = "";  // "" runs all checks of a program without the service manager
};

// The checks of how a program calls "Manager" mostly wait. They run only in rows that concern them.
constexpr char kAllButManager[] =
    "--only serve,reply,create-group,delete-group,device-online,device-offline,name-changed,"
    "recv-remote-message,set-string-config,set-int64-config,ping,text,flag,notify,status-notify,"
    "send-local-message,update-windows-explore,explore-flush-notify,message,call,refuse";
constexpr char kHonest[] = "none";

inline bool IsToFailIn(const std::string& area, const Misbehaviour& row) {
    return std::any_of(row.failed.begin(), row.failed.end(), [&](const std::string& number) {
        return number.substr(0, number.find('/')) == area;
    });
}

// Several hundred broken messages take two thirds of a run. With PLENX_TEST_BRIEF_JUDGE set, the
// honest program gets all of them, and another one gets only those at which it is to fail.
inline std::string OptionsOf(const Misbehaviour& row) {
    std::string options = row.options;
    if (std::getenv("PLENX_TEST_BRIEF_JUDGE") == nullptr || std::string_view(row.name) == kHonest) {
        return options;
    }
    if (options.find("--only") == std::string::npos) {
        options += std::string(" ") + kAllButManager + ",manager";
    }
    for (const std::string area : {"message", "call", "refuse"}) {
        const std::size_t place = options.find("," + area);
        if (place != std::string::npos && !IsToFailIn(area, row)) {
            options.erase(place, area.size() + 1);
        }
    }
    return options;
}

inline std::string NameOfRow(const testing::TestParamInfo<Misbehaviour>& info) {
    return info.param.name;
}

class JudgedMisbehaviour : public testing::TestWithParam<Misbehaviour> {
protected:
    JudgeFolder folder;

    void ExpectTheChecksOfTheRowAndNoOther() const {
        const Judgement judgement = RunJudge("--strict " + OptionsOf(GetParam()) + " " + Console());
        EXPECT_THAT(judgement.Failed(), testing::ElementsAreArray(GetParam().failed))
            << judgement.output;
        EXPECT_EQ(judgement.code, GetParam().failed.empty() ? 0 : 1) << judgement.output;
        EXPECT_THAT(judgement.Judged(), testing::Not(testing::IsEmpty()));
    }

private:
    std::string Console() const {
        return R"(--console "\")" + PlenxSupport::ToUtf8(ProgramFolder()) +
               R"(\plenxservice.exe\" --console pc --data C:\plenx-judged\data --scenario )" +
               folder.Write("mine.toml", GetParam().scenario) + "\"";
    }
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_KIT_JUDGE_MISBEHAVIOUR_H
