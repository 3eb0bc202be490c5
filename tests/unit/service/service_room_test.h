// The tests of the service code share this: a fresh machine for each test, the lines as the log
// shows them, and a way to run an operation against every possible failure.

#ifndef PLENXSDK_UNIT_SERVICE_SERVICE_ROOM_TEST_H
#define PLENXSDK_UNIT_SERVICE_SERVICE_ROOM_TEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "companion/recorded_log.h"
#include "platform/fake_platform.h"

using Texts = std::vector<std::string>;

/// Both return a whole line, of progress or of a failure, in the form of RecordedLog::Texts.
inline std::string Info(const std::string& text, const std::string& function) {
    return "L3 [PLENXSDK] " + text + "(DistributedFs::" + function + ")";
}
inline std::string Error(const std::string& text, const std::string& function) {
    return "L4 [PLENXSDK] " + text + "(DistributedFs::" + function + ")";
}

class ServiceRoomTest : public testing::Test {
protected:
    ServiceRoomTest() { StartAfresh(); }

    void TearDown() override { EXPECT_THAT(platform.OpenHandles(), testing::IsEmpty()); }

    void StartAfresh() {
        platform.Reset();
        RecordedLog::Get().Clear();
    }

    /// Clears the records, so that they show the next operation alone.
    void LookFromHere() {
        platform.ForgetCalls();
        RecordedLog::Get().Clear();
    }

    static Texts Lines() { return RecordedLog::Get().Texts(); }

    Texts ScmCalls() const {
        return platform.CallsOf({"OpenSCManagerW", "OpenServiceW", "CreateServiceW",
                                 "StartServiceW", "ControlService", "QueryServiceStatusEx",
                                 "DeleteService", "CloseServiceHandle"});
    }

    /// Runs the operation with its n-th platform call failing, for n = 1, 2, ... until it makes no
    /// n-th call. For each n the call fails once in one round and for ever in the next, each on a
    /// fresh machine. Returns how many calls could be made to fail.
    template <class Prepare, class Operate>
    unsigned WithEveryCallFailing(Prepare prepare, Operate operate) {
        constexpr unsigned kEndless = 5000;
        for (unsigned n = 1; n != kEndless; ++n) {
            for (const bool forEver : {false, true}) {
                SCOPED_TRACE(testing::Message()
                             << "call " << n << (forEver ? " and later fail" : " fails"));
                StartAfresh();
                auto subject = prepare();
                LookFromHere();
                if (forEver) {
                    platform.Faults().FailAnyCallsFrom(n, ERROR_ACCESS_DENIED);
                } else {
                    platform.Faults().FailAnyCall(n, ERROR_ACCESS_DENIED);
                }
                operate(subject);
                const bool untouched = platform.Faults().Hits() == 0;
                platform.Faults().Reset();
                EXPECT_THAT(platform.OpenHandles(), testing::IsEmpty());
                if (untouched) {
                    return n - 1;
                }
            }
        }
        ADD_FAILURE() << "the operation does not end";
        return kEndless;
    }

    FakePlatform& platform = FakePlatform::Get();
};

#endif  // PLENXSDK_UNIT_SERVICE_SERVICE_ROOM_TEST_H
