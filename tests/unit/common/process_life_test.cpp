// Tests the holder of a singleton. It destroys its object when the module is unloaded. When the
// process ends, it only tells the object so.

#include "common/process_life.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/fake_platform.h"

using DistributedFs::ModuleObject;
using testing::ElementsAre;

namespace {

std::vector<std::string> events;

struct Singleton {
    Singleton() { events.emplace_back("made"); }
    ~Singleton() { events.emplace_back("destroyed"); }
    void OnProcessEnd() noexcept { events.emplace_back("told"); }
};

TEST(ModuleObject, DestroysItsObjectWhenTheModuleIsUnloaded) {
    {
        ModuleObject<Singleton> holder;
    }
    EXPECT_THAT(events, ElementsAre("made", "destroyed"));
}

TEST(ModuleObject, OnlyTellsItsObjectWhenTheProcessEnds) {
    {
        ModuleObject<Singleton> holder;
        FakePlatform::Get().EndProcess();
    }
    EXPECT_THAT(events, ElementsAre("made", "told"));
}

TEST(ModuleObject, GivesTheOneObjectThatItMade) {
    ModuleObject<Singleton> holder;
    EXPECT_EQ(&holder.Get(), &holder.Get());
    EXPECT_THAT(events, ElementsAre("made"));
}

}  // namespace
