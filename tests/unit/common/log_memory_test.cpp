// Tests the memory of log lines.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "../counted_allocations.h"
#include "common/log.h"
#include "companion/recorded_log.h"

namespace {

using DistributedFs::LogError;

TEST(LogMemory, FirstLineOf500CharactersNeedsNone) {
    DistributedFs::TouchLogger();
    const std::string text(490, 'x');
    const FailingAllocation failing(1);
    LogError("Function", text);
    EXPECT_FALSE(failing.End());
    EXPECT_THAT(RecordedLog::Get().Texts(), testing::ElementsAre("L4 " + text + "(Function)"));
}

}  // namespace
