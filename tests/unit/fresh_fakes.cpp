// In a program with this source, each test begins with fresh fakes.

#include <gtest/gtest.h>

#include "companion/recorded_log.h"
#include "platform/fake_platform.h"
#include "rpc/fake_rpc.h"

namespace {

class ResetFakes : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        FakePlatform::Get().Reset();
        FakeRpc::Get().Reset();
        RecordedLog::Get().Clear();
    }
};

const bool kListens = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new ResetFakes);
    return true;
}();

}  // namespace
