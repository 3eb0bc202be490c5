// Tests that the prompt shows what has not been answered yet.

#include "host/prompt_state.h"

#include <gtest/gtest.h>

namespace PlenxHost {
namespace {

class PromptTest : public testing::Test {
protected:
    void Run(const std::string& text, std::int64_t result = 0) {
        Outcome outcome;
        const std::string name = text.substr(0, text.find(' '));
        if (name != "init") {
            outcome.number = result;
        }
        state_.Saw(CommandReport{"", name, text, outcome, {}, {}});
    }

    void Status(std::int64_t service, const std::string& group, std::int64_t kind,
                const std::string& observer = "main") {
        const Notification notification{
            "NotifyStatus",
            {{"svcType", service}, {"first", group}, {"sttsType", kind}, {"value", true}},
            observer};
        state_.Saw(NotificationReport{notification, 0, false});
    }

    PromptState state_;
};

TEST_F(PromptTest, StartsAndStopsArePendingUntilTheyAreNotified) {
    EXPECT_EQ(state_.Prompt(), "plenx> ");
    Run("init");
    Run("start pc \"my home\" a");
    EXPECT_EQ(state_.Prompt(), "plenx (start pc my home)> ");
    Run("stop phone x");
    EXPECT_EQ(state_.Prompt(), "plenx (2 pending)> ");
    Status(1, "my home", 0);
    EXPECT_EQ(state_.Prompt(), "plenx (stop phone x)> ");
    Status(2, "x", 1);
    EXPECT_EQ(state_.Prompt(), "plenx> ");
}

TEST_F(PromptTest, AllMeansTwoServices) {
    Run("init");
    Run("start all g a");
    EXPECT_EQ(state_.Prompt(), "plenx (2 pending)> ");
    Status(1, "g", 0);
    EXPECT_EQ(state_.Prompt(), "plenx (start office g)> ");
}

TEST_F(PromptTest, CallThatIsNotQueuedIsNotPending) {
    Run("start pc g a");
    EXPECT_EQ(state_.Prompt(), "plenx> ");
    Run("init");
    Run("start pc \"\" a", 26);
    Run("start 7 g a");
    Run("rename x");
    EXPECT_EQ(state_.Prompt(), "plenx> ");
}

TEST_F(PromptTest, NotificationThatComesBeforeTheCommandsReportCounts) {
    Run("init");
    Status(1, "g", 0);
    Run("start pc g a");
    EXPECT_EQ(state_.Prompt(), "plenx> ");
}

TEST_F(PromptTest, OtherNotificationsDoNotCount) {
    Run("init");
    Run("start pc g a");
    Status(1, "g", 100);
    Status(3, "g", 1);
    Status(1, "g", 0, "second");
    EXPECT_EQ(state_.Prompt(), "plenx (start pc g)> ");
}

TEST_F(PromptTest, LongGroupIsCut) {
    Run("init");
    Run("start pc repeat:25:\"a\" a");
    EXPECT_EQ(state_.Prompt(), "plenx (start pc aaaaaaaaaaaaaaaaaaaa...)> ");
}

}  // namespace
}  // namespace PlenxHost
