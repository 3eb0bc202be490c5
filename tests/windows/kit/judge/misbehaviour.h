// The development service misbehaves, and the judge says so: a table has a row for each
// misbehaviour.

#ifndef PLENXSDK_TESTS_WINDOWS_KIT_JUDGE_MISBEHAVIOUR_H
#define PLENXSDK_TESTS_WINDOWS_KIT_JUDGE_MISBEHAVIOUR_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
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
constexpr std::string_view kBrokenMessages = ",message,call,refuse";
constexpr char kHonest[] = "none";

inline bool IsFailedByABrokenMessage(const Misbehaviour& row) {
    return std::any_of(row.failed.begin(), row.failed.end(), [](const std::string& number) {
        const std::string area = number.substr(0, number.find('/'));
        return area == "message" || area == "call" || area == "refuse";
    });
}

// Several hundred broken messages take two thirds of a run. With PLENX_TEST_BRIEF_JUDGE set, they
// go only to the honest program and to those that are to fail at one.
inline std::string OptionsOf(const Misbehaviour& row) {
    std::string options = row.options;
    if (std::getenv("PLENX_TEST_BRIEF_JUDGE") == nullptr || std::string_view(row.name) == kHonest ||
        IsFailedByABrokenMessage(row)) {
        return options;
    }
    std::string brief = kAllButManager;
    brief.resize(brief.size() - kBrokenMessages.size());
    if (options.empty()) {
        return brief + ",manager";
    }
    return options == kAllButManager ? brief : options;
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
