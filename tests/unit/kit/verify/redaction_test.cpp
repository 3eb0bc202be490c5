// Tests that no person's name leaves the machine.

#include "verify/redaction.h"

#include <gmock/gmock.h>

namespace PlenxVerify {
namespace {

Redaction OfErika() {
    return Redaction({{"C:\\Users\\Erika M\xC3\xBCller", "%USERPROFILE%", true},
                      {"C:\\Users\\ERIKAM~1", "%USERPROFILE%", true},
                      {"ERIKAM~1", "%USERNAME%"},
                      {"erika", "%USERNAME%"},
                      {"", "%USERDOMAIN%"},
                      {"PC-7", "%COMPUTERNAME%"}});
}

TEST(VerifyRedaction, ProfileFolder_IsReplacedInEachForm) {
    const Redaction redaction = OfErika();
    EXPECT_EQ(redaction.Of("at C:\\Users\\Erika M\xC3\xBCller\\a.txt"), "at %USERPROFILE%\\a.txt");
    EXPECT_EQ(redaction.Of("c:\\users\\erika m\xC3\xBCller"), "%USERPROFILE%");
    EXPECT_EQ(redaction.Of("C:/Users/Erika M\xC3\xBCller/a"), "%USERPROFILE%/a");
    EXPECT_EQ(redaction.Of("\"C:\\\\Users\\\\Erika M\xC3\xBCller\\\\a\""),
              "\"%USERPROFILE%\\\\a\"");
    EXPECT_EQ(redaction.Of("C:\\Users\\ERIKAM~1\\Temp"), "%USERPROFILE%\\Temp");
}

TEST(VerifyRedaction, Name_IsReplacedAsAWholeWord) {
    const Redaction redaction = OfErika();
    EXPECT_EQ(redaction.Of("Erika, ERIKA_1 and pc-7\\erika"),
              "%USERNAME%, %USERNAME%_1 and %COMPUTERNAME%\\%USERNAME%");
    EXPECT_EQ(redaction.Of("Erikas amerika"), "Erikas amerika");
    EXPECT_EQ(redaction.Of("erika\xC3\xBC"), "erika\xC3\xBC");
}

TEST(VerifyRedaction, Nothing_StaysAsItIs) {
    EXPECT_EQ(Redaction({}).Of("Erika"), "Erika");
    EXPECT_EQ(OfErika().Of(""), "");
}

TEST(VerifyRedaction, EveryTextOfARun_IsReplaced) {
    RunRecord run{"1.0.0", "2026-11-22 10:00:00", {{"name", "Erika"}}};
    Case one{"the folder of erika", Case::Verdict::kFailed, 0, "erika"};
    one.recorded = {{"who", "erika"}};
    run.stages = {
        {"load", "It loads.", {{"image", {one}, "erika failed"}}, "", {"erika's folder"}}};
    run.leftBehind = {"erika"};
    const RunRecord clean = OfErika().Of(run);
    EXPECT_EQ(clean.system[0].second, "%USERNAME%");
    EXPECT_EQ(clean.leftBehind[0], "%USERNAME%");
    EXPECT_EQ(clean.stages[0].removed[0], "%USERNAME%'s folder");
    EXPECT_EQ(clean.stages[0].parts[0].problem, "%USERNAME% failed");
    EXPECT_EQ(clean.stages[0].parts[0].cases[0].name, "the folder of %USERNAME%");
    EXPECT_EQ(clean.stages[0].parts[0].cases[0].text, "%USERNAME%");
    EXPECT_EQ(clean.stages[0].parts[0].cases[0].recorded[0].second, "%USERNAME%");
}

}  // namespace
}  // namespace PlenxVerify
