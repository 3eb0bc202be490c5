// Tests making and destroying a service manager while each platform call fails.

#include "file_fault_tables.h"
#include "service_fault_tables.h"
#include "service_manager_test.h"

using DistributedFs::ServiceManager;

namespace {

using namespace service_faults;

const std::string kInstallService = "ServiceManager::InstallService";
const std::string kUninstallService = "ServiceManager::UninstallService";
const std::vector<std::string> kInstalled = {"PlenxPcSvc", "PlenxPhoneSvc"};

/// Returns the lines of a step: one with the code on failure, and one on success if it has any.
auto Line(const std::string& function, const std::string& failure, const std::string& success) {
    return [=](std::int32_t code) -> FaultLines {
        if (code != 0) {
            return {Error(failure + std::to_string(code), function)};
        }
        return success.empty() ? FaultLines() : FaultLines{Info(success, function)};
    };
}

std::vector<FaultStep> InstallSteps(const FaultTable& stop, const FaultTable& create) {
    std::vector<FaultStep> steps;
    for (const std::string& name : kInstalled) {
        steps.push_back({stop, Line(kInstallService, "stop service " + name + " error ", "")});
        steps.push_back({create, Line(kInstallService, "create service " + name + " error ",
                                      "install service " + name + " success")});
    }
    return steps;
}

std::vector<FaultStep> UninstallSteps() {
    std::vector<FaultStep> steps;
    for (const std::string& name : kInstalled) {
        steps.push_back(
            {StopStopped(), Line(kUninstallService, "stop service " + name + " error ", "")});
        steps.push_back(
            {DeleteStopped(name), Line(kUninstallService, "delete service " + name + " error ",
                                       "uninstall service " + name + " success")});
    }
    return steps;
}

/// For an operation without a result.
FaultTable WithoutCode(FaultTable table) {
    for (FaultRow& row : table.rows) {
        row.outcome = [outcome = row.outcome](const Fault& fault) {
            return Outcome{0, outcome(fault).lines};
        };
    }
    table.good.code = 0;
    return table;
}

class ManagerFaultTable : public ServiceManagerTest {
protected:
    auto WithManager() {
        return [=] {
            PrepareMachine();
            return MakeManager();
        };
    }
};

TEST_F(ManagerFaultTable, ConstructionOnACleanMachine) {
    // There are no upgrade copies, so the upgrade looks three times, and a failure changes nothing.
    const FaultTable upgrade = {{0, {}}, {Row{"_waccess", Ignored({0, {}}), 3}}};
    std::vector<FaultStep> steps = {{upgrade}, {file_faults::MakeSourcePathAfresh()}};
    steps[1].endsOnFailure = true;
    steps = steps + InstallSteps(StopNotRegistered(), CreateNew());
    steps.push_back({StartDokanNew()});

    CheckFaults(
        WithoutCode(InSequence(steps)),
        [=] {
            PrepareMachine();
            return std::unique_ptr<ServiceManager>();
        },
        [=](auto& manager) {
            manager = MakeManager();
            return 0;
        });
}

TEST_F(ManagerFaultTable, InstallOfInstalledServices) {
    CheckFaults(WithoutCode(InSequence(InstallSteps(StopStopped(), CreateRegistered()))),
                WithManager(), [](const auto& manager) {
                    manager->InstallService();
                    return 0;
                });
}

TEST_F(ManagerFaultTable, Uninstall) {
    CheckFaults(WithoutCode(InSequence(UninstallSteps())), WithManager(), [](const auto& manager) {
        manager->UninstallService();
        return 0;
    });
}

TEST_F(ManagerFaultTable, Destruction) {
    std::vector<FaultStep> steps = UninstallSteps();
    steps.push_back({file_faults::RemoveWorkingFolder(), [](std::int32_t code) {
                         return code == 0 ? FaultLines()
                                          : FaultLines{Error("remove src path error",
                                                             "ServiceManager::~ServiceManager")};
                     }});
    CheckFaults(WithoutCode(InSequence(steps)), WithManager(), [](auto& manager) {
        manager = nullptr;
        return 0;
    });
}

// A process dies anywhere while it makes its manager; the next one runs on the same machine.
TEST_F(ManagerFaultTable, DeathBeforeAnyCall_IsMadeGoodByTheNextConstruction) {
    struct Death {};
    unsigned calls = 0;
    for (bool died = true; died && !HasFailure(); ++calls) {
        SCOPED_TRACE(testing::Message() << "before call " << calls + 1);
        StartAfresh();
        PrepareMachine();
        files.AddFile(kInstall + L"\\upgrade\\dokan1.sys", "new");
        files.AddFile(L"C:\\Data\\plenx\\pc\\left");
        platform.Faults().Before("", calls + 1, [] { throw Death(); });
        died = false;
        try {
            MakeManager();
        } catch (const Death&) {
            died = true;
        }
        platform.Faults().Reset();

        const auto manager = MakeManager();
        EXPECT_EQ(files.Content(kInstall + L"\\dokan1.sys"), "new");
        EXPECT_THAT(files.Tree(kData),
                    testing::ElementsAre("C:\\Data\\plenx\\", "C:\\Data\\plenx\\pc\\",
                                         "C:\\Data\\plenx\\phone\\"));
        EXPECT_THAT(scm.Names(), testing::ElementsAre(L"Dokan1", L"PlenxPcSvc", L"PlenxPhoneSvc"));
        EXPECT_EQ(manager->StartPlenxService(kPc), 0);
    }
    EXPECT_GT(calls, 40U);
}

}  // namespace
