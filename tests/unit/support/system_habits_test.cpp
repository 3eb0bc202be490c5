// Tests how the tests against the real system judge what they see. This process runs over no
// system, so it counts as Windows.

#include "windows/support/system_habits.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace PlenxTest {
namespace {

constexpr Habit kCode{"a code", "5|7", "0", "2", "https://example.org"};
constexpr Habit kUnknown{"a thing", kOpen, "here", "here", ""};

const testing::TestResult& OwnResult() {
    return *testing::UnitTest::GetInstance()->current_test_info()->result();
}

std::string Recorded(const std::string& name) {
    for (int i = 0; i != OwnResult().test_property_count(); ++i) {
        if (OwnResult().GetTestProperty(i).key() == name) {
            return OwnResult().GetTestProperty(i).value();
        }
    }
    return "nothing";
}

TEST(SystemHabits, WhatTheSystemIsKnownToDo_IsNoComplaint) {
    EXPECT_EQ(Complaint(kCode, "5", System::kWindows), std::nullopt);
    EXPECT_EQ(Complaint(kCode, "7", System::kWindows), std::nullopt);
    EXPECT_EQ(Complaint(kCode, "0", System::kWine8), std::nullopt);
    EXPECT_EQ(Complaint(kCode, "2", System::kWine10), std::nullopt);
}

TEST(SystemHabits, SystemThatDoesWhatAnotherOneDoes_IsAComplaint) {
    EXPECT_EQ(Complaint(kCode, "5", System::kWine8), "a code: 5, but on Wine 8 it is 0");
    EXPECT_EQ(Complaint(kCode, "0", System::kWine10), "a code: 0, but on Wine 10 it is 2");
    EXPECT_EQ(Complaint(kCode, "0", System::kWindows), "a code: 0, but on Windows it is 5|7");
}

TEST(SystemHabits, PartOfAnAlternative_IsAComplaint) {
    EXPECT_NE(Complaint(kCode, "", System::kWindows), std::nullopt);
    EXPECT_NE(Complaint(kCode, "5|7", System::kWindows), std::nullopt);
}

TEST(SystemHabits, WhatNobodyKnows_IsNoComplaintThereAndJudgedElsewhere) {
    EXPECT_EQ(Complaint(kUnknown, "anything", System::kWindows), std::nullopt);
    EXPECT_EQ(Complaint(kUnknown, "gone", System::kWine8),
              "a thing: gone, but on Wine 8 it is here");
}

TEST(SystemHabits, ShowingThem_RecordsAndJudges) {
    EXPECT_TRUE(Shows(kCode, 7));
    EXPECT_EQ(Recorded("habit: a code"), "7");
    EXPECT_NONFATAL_FAILURE(EXPECT_TRUE(Shows(kCode, 0)), "a code: 0, but on Windows it is 5|7");
    EXPECT_EQ(Recorded("habit: a code"), "0") << "what fails is recorded too";
}

TEST(SystemHabits, ShowingWhatNobodyKnows_RecordsOnly) {
    EXPECT_TRUE(Shows(kUnknown, "in between"));
    EXPECT_EQ(Recorded("habit: a thing"), "in between (recorded, not judged)");
}

TEST(SystemHabits, Usual_IsOnlyWhatIsKnown) {
    EXPECT_TRUE(IsUsual(kCode, "7"));
    EXPECT_FALSE(IsUsual(kCode, "0"));
    EXPECT_FALSE(IsUsual(kUnknown, "here"));
    EXPECT_TRUE(IsOpen(kUnknown));
    EXPECT_FALSE(IsOpen(kCode));
}

}  // namespace
}  // namespace PlenxTest
