// Tests when there are colours, and what they look like.

#include "host/colours.h"

#include <gtest/gtest.h>

namespace PlenxHost {
namespace {

TEST(DecideColours, AutoIsForTerminalsOfUsersWhoWantThem) {
    EXPECT_EQ(DecideColours(ColourWish::kAuto, true, nullptr), Colours::kSome);
    EXPECT_EQ(DecideColours(ColourWish::kAuto, true, ""), Colours::kSome);
    EXPECT_EQ(DecideColours(ColourWish::kAuto, true, "1"), Colours::kNone);
    EXPECT_EQ(DecideColours(ColourWish::kAuto, false, nullptr), Colours::kNone);
}

TEST(DecideColours, AlwaysAndNeverAreObeyed) {
    EXPECT_EQ(DecideColours(ColourWish::kAlways, false, "1"), Colours::kSome);
    EXPECT_EQ(DecideColours(ColourWish::kNever, true, nullptr), Colours::kNone);
}

TEST(Paint, PutsTheColourAroundTheText) {
    EXPECT_EQ(Paint(Colours::kSome, Role::kBad, "no"), "\x1b[1;31mno\x1b[0m");
    EXPECT_EQ(Paint(Colours::kSome, Role::kNotification, "x"), "\x1b[36mx\x1b[0m");
    EXPECT_EQ(Paint(Colours::kSome, Role::kBad, ""), "");
    EXPECT_EQ(Paint(Colours::kNone, Role::kBad, "no"), "no");
}

}  // namespace
}  // namespace PlenxHost
