// The tests of the service operations share this manager with its full table.

#ifndef PLENXSDK_UNIT_SERVICE_SERVICE_CONTROL_TEST_H
#define PLENXSDK_UNIT_SERVICE_SERVICE_CONTROL_TEST_H

#include <memory>
#include <string>

#include "service_manager_test.h"

const std::wstring kPcName = L"PlenxPcSvc";

inline std::string Kill(DWORD processId) {
    return Error("kill service process " + std::to_string(processId), "KillServiceProcess");
}

// The PC service is registered and stopped when a test begins.
class ServiceControlTest : public ServiceManagerTest {
protected:
    ServiceControlTest() : manager(MakeManager()) { LookFromHere(); }

    SERVICE_STATUS_PROCESS PcStatus() { return scm.Find(kPcName)->status; }
    void PcIs(DWORD state, DWORD checkPoint = 0, DWORD waitHint = 0) {
        scm.SetStatus(kPcName, state, checkPoint, waitHint);
    }
    /// Starts the PC service and returns the id that the manager has seen.
    DWORD StartPc() {
        EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
        const DWORD id = PcStatus().dwProcessId;
        LookFromHere();
        return id;
    }
    Texts Sleeps() const { return platform.CallsOf({"Sleep"}); }

    std::unique_ptr<DistributedFs::ServiceManager> manager;
};

#endif  // PLENXSDK_UNIT_SERVICE_SERVICE_CONTROL_TEST_H
