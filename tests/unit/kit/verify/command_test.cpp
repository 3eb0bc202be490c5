// Tests the command line of verify, and its table of stages.

#include <gmock/gmock.h>

#include <set>

#include "outcome.h"
#include "verify/stage.h"

namespace PlenxVerify {
namespace {

using PlenxKit::OutcomeOf;
using testing::ElementsAre;
using testing::StartsWith;

std::vector<std::string> NamesOf(const std::vector<const Stage*>& stages) {
    std::vector<std::string> names;
    for (const Stage* const stage : stages) {
        names.emplace_back(stage->name);
    }
    return names;
}

TEST(VerifyStages, AreInTheirOrder) {
    EXPECT_THAT(NamesOf(Selected({})),
                ElementsAre("load", "c-interface", "wire", "services", "driver", "demo",
                            "scenarios", "hostile", "endings", "left-behind"));
}

// No test of a program belongs to two stages, or to none, so every part names other tests.
TEST(VerifyStages, HavePartsWithLimitsAndFilesOfTheirOwn) {
    std::set<std::string> files;
    std::set<std::string> work;
    for (const Stage& stage : Stages()) {
        EXPECT_EQ(stage.parts.empty(), stage.name == std::string(kLeftBehindStage));
        for (const Part& part : stage.parts) {
            EXPECT_GE(part.seconds, 60U) << stage.name;
            EXPECT_TRUE(files.insert(std::string(stage.name) + "-" + part.name).second);
            EXPECT_TRUE(work.insert(std::string(part.program) + part.filter).second);
        }
    }
}

TEST(VerifyStages, OfASelection_EndWithTheLookForWhatIsLeft) {
    EXPECT_THAT(NamesOf(Selected({"wire,load", "demo"})),
                ElementsAre("load", "wire", "demo", "left-behind"));
    EXPECT_THROW(Selected({"load,nonsense"}), UsageError);
}

TEST(VerifyCommand, List_NamesTheStages) {
    const auto outcome = OutcomeOf({"verify", "--list", "--only", "endings"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out,
              "  endings       A host comes to an end, whichever way it ends.\n"
              "  left-behind   No service, endpoint, process or folder of ours is left.\n");
}

TEST(VerifyCommand, WrongUsage_EndsWith2) {
    const auto outcome = OutcomeOf({"verify", "--list", "--only", "nonsense"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.err,
              "plenxkit verify: there is no stage \"nonsense\"; --list shows them all\n");
    EXPECT_EQ(OutcomeOf({"verify", "--nonsense"}).code, 2);
}

TEST(VerifyCommand, Run_IsRefusedWithoutWindows) {
    const auto outcome = OutcomeOf({"verify", "--yes"});
    EXPECT_EQ(outcome.code, 3);
    EXPECT_EQ(outcome.err, "plenxkit verify: refused to begin: this command needs Windows\n");
}

}  // namespace
}  // namespace PlenxVerify
