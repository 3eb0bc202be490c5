// Every platform call of every service operation fails once, and from there on. The tests compare
// the result and every line.

#include "service/kill_service_process.h"
#include "service_control_test.h"
#include "service_fault_tables.h"

using DistributedFs::ServiceManager;

namespace {

using namespace service_faults;

constexpr DWORD kLingering = 4242;

class ServiceFaultTable : public ServiceManagerTest {
protected:
    using Manager = std::unique_ptr<ServiceManager>;
    using Operation = std::int32_t (ServiceManager::*)(std::int32_t);

    /// A manager on a machine whose PC service the setting has prepared.
    template <class Setting>
    auto After(Setting setting) {
        return [=] {
            PrepareMachine();
            Manager manager = MakeManager();
            setting(*manager);
            return manager;
        };
    }
    auto InState(DWORD state) {
        return After([=](ServiceManager&) { scm.SetStatus(kPcName, state); });
    }
    auto Stopping() {
        return After([=](ServiceManager&) {
            scm.RunScript(kPcName, {{0, SERVICE_STOP_PENDING, 0, 2000}, {15, SERVICE_STOPPED}});
        });
    }
    auto NotRegistered() {
        return After([=](ServiceManager& manager) { manager.DeleteServiceByIndex(kPc); });
    }

    template <class Prepare>
    void Check(const FaultTable& table, Prepare prepare, Operation operation,
               std::int32_t row = kPc) {
        CheckFaults(table, prepare,
                    [=](const Manager& manager) { return (manager.get()->*operation)(row); });
    }
};

TEST_F(ServiceFaultTable, CreateOfARegisteredService) {
    Check(CreateRegistered(), InState(SERVICE_STOPPED), &ServiceManager::CreateServiceByIndex);
}

TEST_F(ServiceFaultTable, CreateOfANewService) {
    Check(CreateNew(), NotRegistered(), &ServiceManager::CreateServiceByIndex);
}

TEST_F(ServiceFaultTable, StartOfARunningService) {
    Check(StartRunning(), InState(SERVICE_RUNNING), &ServiceManager::StartServiceByIndex);
}

TEST_F(ServiceFaultTable, StartOfAStoppedService) {
    Check(StartStopped(), InState(SERVICE_STOPPED), &ServiceManager::StartServiceByIndex);
}

TEST_F(ServiceFaultTable, StartOfAStoppingService) {
    Check(StartStopping(), Stopping(), &ServiceManager::StartServiceByIndex);
}

TEST_F(ServiceFaultTable, StartWhileTheFormerProcessLingers) {
    const auto prepare = After([=](ServiceManager& manager) {
        scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(kLingering)}});
        manager.StartServiceByIndex(kPc);
        scm.SetStatus(kPcName, SERVICE_STOPPED);
        scm.ScriptStart(kPcName, {{0, SERVICE_START_PENDING, 0, 2000}, {15, SERVICE_RUNNING}});
    });
    Check(StartWithLingeringProcess(kLingering), prepare, &ServiceManager::StartServiceByIndex);
}

TEST_F(ServiceFaultTable, StopOfAStoppedService) {
    Check(StopStopped(), InState(SERVICE_STOPPED), &ServiceManager::StopServiceByIndex);
}

TEST_F(ServiceFaultTable, StopOfAServiceThatIsNotRegistered) {
    Check(StopNotRegistered(), NotRegistered(), &ServiceManager::StopServiceByIndex);
}

TEST_F(ServiceFaultTable, StopOfARunningService) {
    Check(StopRunning(1000), InState(SERVICE_RUNNING), &ServiceManager::StopServiceByIndex);
}

TEST_F(ServiceFaultTable, StopOfAStoppingService) {
    Check(StopStopping(), Stopping(), &ServiceManager::StopServiceByIndex);
}

TEST_F(ServiceFaultTable, StopOfAServiceThatIgnoresIt) {
    const auto prepare = After([=](ServiceManager&) {
        scm.SetStatus(kPcName, SERVICE_RUNNING);
        scm.ScriptStop(kPcName, {});
        // The wait is over after its first poll.
        platform.Faults().Before("ControlService", 1, [=] {
            platform.Faults().Before("QueryServiceStatusEx", 1,
                                     [=] { platform.Clock().Advance(3000); });
        });
    });
    Check(StopByForce(1000), prepare, &ServiceManager::StopServiceByIndex);
}

TEST_F(ServiceFaultTable, DeleteOfAStoppedService) {
    Check(DeleteStopped("PlenxPcSvc"), InState(SERVICE_STOPPED),
          &ServiceManager::DeleteServiceByIndex);
}

TEST_F(ServiceFaultTable, DeleteOfARunningService) {
    Check(DeleteRunning("PlenxPcSvc"), InState(SERVICE_RUNNING),
          &ServiceManager::DeleteServiceByIndex);
}

TEST_F(ServiceFaultTable, IsServiceAlive) {
    const auto alive = [](const Manager& manager) {
        return std::int32_t{manager->isServiceAlive(kPc)};
    };
    CheckFaults(AliveOf({1, {}}), InState(SERVICE_RUNNING), alive);
    CheckFaults(AliveOf({0, {Info("service has stopped", kAlive)}}), InState(SERVICE_STOPPED),
                alive);
}

TEST_F(ServiceFaultTable, CheckedStart) {
    Check(CheckedStart(StartStopped()), InState(SERVICE_STOPPED),
          &ServiceManager::StartPlenxService);
    Check(CheckedStart(StartRunning()), InState(SERVICE_RUNNING),
          &ServiceManager::StartPlenxService);
}

TEST_F(ServiceFaultTable, CheckedStop) {
    Check(CheckedStop(StopRunning(1000)), InState(SERVICE_RUNNING),
          &ServiceManager::StopPlenxService);
    Check(CheckedStop(StopStopping()), Stopping(), &ServiceManager::StopPlenxService);
}

TEST_F(ServiceFaultTable, StartOfTheDriver) {
    const auto start = [](const Manager& manager) { return manager->StartDokanService(); };
    const auto stopped = After([=](ServiceManager&) { scm.SetStatus(L"Dokan1", SERVICE_STOPPED); });
    const auto notRegistered = After([=](ServiceManager& manager) {
        scm.SetStatus(L"Dokan1", SERVICE_STOPPED);
        manager.DeleteServiceByIndex(kDriver);
    });
    CheckFaults(StartDokanRegistered(), stopped, start);
    CheckFaults(StartDokanNew(), notRegistered, start);
}

TEST_F(ServiceFaultTable, KillServiceProcess) {
    const auto prepare = [=] { return processes.Start(kLingering); };
    const auto cannot = [](auto failure) {
        return [=](const Fault& fault) {
            return Outcome{0, {KillLine(kLingering), failure(kLingering, fault.Error())}};
        };
    };
    CheckFaults(
        {{0, {KillLine(kLingering)}},
         {Row{"OpenProcess", cannot(CannotOpen)}, Row{"TerminateProcess", cannot(CannotKill)}}},
        prepare, [](std::uint32_t process) {
            DistributedFs::KillServiceProcess(process);
            return 0;
        });
}

}  // namespace
