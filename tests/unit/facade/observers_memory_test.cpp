// Tests the memory of the list of observers.

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "companion/recorded_log.h"
#include "counted_allocations.h"
#include "recording_observer.h"

namespace {

void ComeAndGo(std::vector<RecordingObserver>& observers) {
    auto& manager = DistributedFs::PLENXManager::GetInstance();
    for (RecordingObserver& observer : observers) {
        manager.RegisterPLENXServiceObserver(&observer);
    }
    for (RecordingObserver& observer : observers) {
        manager.UnregisterPLENXServiceObserver(&observer);
    }
}

TEST(ObserversMemory, OfManyObserversIsGivenBackWithTheLastOne) {
    RecordedLog::Get().SetMissing(true);  // it would keep each line
    std::vector<RecordingObserver> one(1);
    ComeAndGo(one);  // the first call makes what all calls need
    std::vector<RecordingObserver> many(500);
    const std::int64_t before = LiveBytes();
    ComeAndGo(many);
    EXPECT_EQ(LiveBytes(), before);
}

}  // namespace
