#include "host/pattern.h"

#include <gmock/gmock.h>

namespace PlenxHost {
namespace {

using testing::StartsWith;

const Notification kStatus{"NotifyStatus",
                           {{"svcType", std::int64_t{1}},
                            {"first", std::string("my group")},
                            {"sttsType", std::int64_t{0}},
                            {"value", true}},
                           "main"};

bool Matches(std::string_view line, const Notification& notification = kStatus) {
    return Pattern(SplitWords(line).words).Matches(notification);
}

bool IsNearMiss(std::string_view line) {
    return Pattern(SplitWords(line).words).IsNearMiss(kStatus);
}

std::string Complaint(std::string_view line) {
    try {
        Pattern(SplitWords(line).words);
    } catch (const ScriptError& error) {
        return error.what();
    }
    return "none";
}

TEST(Pattern, ArgumentsThatAreLeftOutMayHaveAnyValue) {
    EXPECT_TRUE(Matches("*"));
    EXPECT_TRUE(Matches("NotifyStatus"));
    EXPECT_TRUE(Matches("NotifyStatus pc"));
    EXPECT_TRUE(Matches("NotifyStatus * * start"));
    EXPECT_FALSE(Matches("NotifyConnect"));
}

TEST(Pattern, EveryArgumentCounts) {
    EXPECT_TRUE(Matches("NotifyStatus 1 \"my group\" 0 true"));
    EXPECT_FALSE(Matches("NotifyStatus 2 \"my group\" 0 true"));
    EXPECT_FALSE(Matches("NotifyStatus 1 \"my grou\" 0 true"));
    EXPECT_FALSE(Matches("NotifyStatus 1 \"my group\" 1 true"));
    EXPECT_FALSE(Matches("NotifyStatus 1 \"my group\" 0 false"));
}

TEST(Pattern, ArgumentsMayBeNamed) {
    EXPECT_TRUE(Matches("NotifyStatus value=true first=\"my group\" sttsType=start"));
    EXPECT_FALSE(Matches("NotifyStatus value=false"));
    EXPECT_TRUE(Matches("NotifyStatus observer=main"));
    EXPECT_FALSE(Matches("NotifyStatus observer=other"));
}

TEST(Pattern, QuotedStarAndUnknownNameAreTexts) {
    const Notification disk{"NotifyDiskName", {{"diskName", std::string("a=*")}}, "main"};
    EXPECT_TRUE(Matches("NotifyDiskName a=*", disk));
    EXPECT_FALSE(Matches("NotifyDiskName \"*\"", disk));
    EXPECT_TRUE(Matches("NotifyDiskName *", disk));
}

TEST(Pattern, TextIsComparedByteByByte) {
    const Notification disk{"NotifyDiskName", {{"diskName", std::string("\xFF\0", 2)}}, "main"};
    EXPECT_TRUE(Matches(R"(NotifyDiskName "\xff\x00")", disk));
    EXPECT_FALSE(Matches(R"(NotifyDiskName "\xff")", disk));
}

TEST(Pattern, NumbersAreComparedAs32Bits) {
    const Notification error{"NotifyError", {{"errCode", std::int64_t{-1}}}, "main"};
    EXPECT_TRUE(Matches("NotifyError -1", error));
    EXPECT_TRUE(Matches("NotifyError 4294967295", error));
    EXPECT_FALSE(Matches("NotifyError 1", error));
}

TEST(Pattern, NearMissIsTheSameNotificationOfTheSameService) {
    EXPECT_TRUE(IsNearMiss("NotifyStatus pc other"));
    EXPECT_TRUE(IsNearMiss("NotifyStatus pc \"my group\" start false"));
    EXPECT_TRUE(IsNearMiss("NotifyStatus value=false"));
    EXPECT_TRUE(IsNearMiss("NotifyStatus pc observer=other"));
    EXPECT_FALSE(IsNearMiss("NotifyStatus phone"));
    EXPECT_FALSE(IsNearMiss("NotifyConnect pc"));
    EXPECT_FALSE(IsNearMiss("NotifyStatus pc \"my group\" start true"));
    EXPECT_FALSE(IsNearMiss("*"));
}

bool IsOpposite(std::string_view line) {
    return Pattern(SplitWords(line).words).IsOpposite(kStatus);
}

TEST(Pattern, OppositeIsTheSameButForItsValueAndNamesAllOthers) {
    EXPECT_TRUE(IsOpposite("NotifyStatus pc \"my group\" start false"));
    EXPECT_TRUE(IsOpposite("NotifyStatus value=false sttsType=0 pc \"my group\""));
    EXPECT_TRUE(IsOpposite("NotifyStatus pc \"my group\" start false observer=main"));
    EXPECT_FALSE(IsOpposite("NotifyStatus pc \"my group\" start true"));
    EXPECT_FALSE(IsOpposite("NotifyStatus phone \"my group\" start false"));
    EXPECT_FALSE(IsOpposite("NotifyStatus pc \"my group\" stop false"));
    EXPECT_FALSE(IsOpposite("NotifyStatus pc \"my group\" stop true"));
    EXPECT_FALSE(IsOpposite("NotifyStatus pc \"my group\" start false observer=b"));
    EXPECT_FALSE(IsOpposite("NotifyStatus pc * start false"));
    EXPECT_FALSE(IsOpposite("NotifyStatus value=false"));
    EXPECT_FALSE(IsOpposite("NotifyConnect pc \"my group\""));
    EXPECT_FALSE(IsOpposite("*"));
}

TEST(Pattern, SaysWhatIsWrong) {
    EXPECT_EQ(Complaint(""), "the name of a notification is missing");
    EXPECT_EQ(Complaint("* 1"), "no arguments may follow *");
    EXPECT_THAT(Complaint("NotifyAll"), StartsWith("no notification is named \"NotifyAll\""));
    EXPECT_EQ(Complaint("NotifyError 1 2"), "NotifyError has no argument for \"2\"");
    EXPECT_EQ(Complaint("NotifyError x"), "errCode is a 32-bit number, not \"x\"");
    EXPECT_EQ(Complaint("NotifyStatus pc g start yes"), "write true or false, not \"yes\"");
}

}  // namespace
}  // namespace PlenxHost
