// Tests which checks run, and which failures are known.

#include "judge/selection.h"

#include <gmock/gmock.h>

namespace PlenxJudge {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> NumbersOf(const std::vector<std::string>& words) {
    std::vector<std::string> numbers;
    for (const Check* const check : Selected(words)) {
        numbers.push_back(check->number);
    }
    return numbers;
}

TEST(Selection, WithoutWords_TakesAllChecks) {
    EXPECT_EQ(Selected({}).size(), Checks().size());
}

TEST(Selection, TakesNumbersAndAreasInTheOrderOfTheTable) {
    EXPECT_THAT(NumbersOf({"ping,reply/2", "delete-group"}),
                ElementsAre("reply/2", "delete-group/1", "delete-group/2", "ping/1", "ping/2"));
    EXPECT_THAT(NumbersOf({"message/1"}), ElementsAre("message/1"));
}

TEST(Selection, RefusesWhatIsNoCheck) {
    EXPECT_THROW(Selected({"reply/99"}), UsageError);
    EXPECT_THROW(Selected({"reply,nonsense"}), UsageError);
}

TEST(KnownFailures, AreNumbersWithRemarks) {
    EXPECT_THAT(KnownFailures("# ours\nreply/4  # until March\r\n\n  ping/1\n"),
                ElementsAre("ping/1", "reply/4"));
    EXPECT_THAT(KnownFailures(""), IsEmpty());
    EXPECT_THROW(KnownFailures("reply\n"), UsageError);
}

}  // namespace
}  // namespace PlenxJudge
