#include <direct.h>

#include "service_manager_test.h"

using DistributedFs::ServiceManager;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

const std::string kDestructor = "ServiceManager::~ServiceManager";
const std::string kInstallService = "ServiceManager::InstallService";
const std::string kUninstallService = "ServiceManager::UninstallService";
const std::string kCreate = "ServiceManager::CreateServiceByIndex";
const std::string kStart = "ServiceManager::StartServiceByIndex";
const std::string kStop = "ServiceManager::StopServiceByIndex";
const std::string kDelete = "ServiceManager::DeleteServiceByIndex";
const std::string kDokan = "ServiceManager::StartDokanService";

using ServiceTableTest = ServiceManagerTest;

// The table

TEST_F(ServiceTableTest, ServicesAndDriver_AreRegisteredAsTheTableSays) {
    const auto manager = MakeManager();
    EXPECT_THAT(
        platform.CallsOf({"CreateServiceW"}),
        ElementsAre("CreateServiceW(\"PlenxPcSvc\", \"PlenxPcSvc\", 0xF01FF, 0x10, 3, 1, "
                    "\"C:\\App\\plenxservice.exe\", null, null, null, null, null)",
                    "CreateServiceW(\"PlenxPhoneSvc\", \"PlenxPhoneSvc\", 0xF01FF, 0x10, 3, 1, "
                    "\"C:\\App\\plenxservice.exe\", null, null, null, null, null)",
                    "CreateServiceW(\"Dokan1\", \"Dokan1\", 0x0, 0x2, 1, 1, "
                    "\"C:\\App\\dokan1.sys\", null, null, null, null, null)"));
    EXPECT_THAT(scm.Names(), ElementsAre(L"Dokan1", L"PlenxPcSvc", L"PlenxPhoneSvc"));
}

TEST_F(ServiceTableTest, EachService_IsStartedWithItsOwnArguments) {
    const auto manager = MakeManager();
    scm.AddService(L"PlenxOfficeSvc");
    LookFromHere();
    EXPECT_EQ(manager->StartPlenxService(kOffice), 0);
    EXPECT_EQ(manager->StartPlenxService(kPc), 0);
    EXPECT_EQ(manager->StartPlenxService(kPhone), 0);
    EXPECT_THAT(
        platform.CallsOf({"StartServiceW"}),
        ElementsAre("StartServiceW(PlenxOfficeSvc, 3, \"C:\\App\", \"C:\\Data\\plenx\\office\", "
                    "\"0\")",
                    "StartServiceW(PlenxPcSvc, 3, \"C:\\App\", \"C:\\Data\\plenx\\pc\", \"1\")",
                    "StartServiceW(PlenxPhoneSvc, 3, \"C:\\App\", \"C:\\Data\\plenx\\phone\", "
                    "\"2\")"));
}

TEST_F(ServiceTableTest, Driver_IsStartedWithoutArguments) {
    const auto manager = MakeManager();
    EXPECT_THAT(platform.CallsOf({"StartServiceW"}), ElementsAre("StartServiceW(Dokan1, 0, null)"));
    EXPECT_EQ(scm.Find(L"Dokan1")->status.dwCurrentState, DWORD{SERVICE_RUNNING});
}

TEST_F(ServiceTableTest, InstallFolderWithBlanks_IsRegisteredUnquoted) {
    files.AddFolder(L"C:\\Program Files\\App");
    const ServiceManager manager(L"C:\\Program Files\\App", kData);
    EXPECT_EQ(scm.Find(L"PlenxPcSvc")->config.binaryPath,
              L"C:\\Program Files\\App\\plenxservice.exe");
}

// Construction

TEST_F(ServiceTableTest, CleanMachine_LogsEveryStepInOrder) {
    const auto manager = MakeManager();
    EXPECT_THAT(Lines(), ElementsAre(Error("open service error 1060", kStop),
                                     Error("stop service PlenxPcSvc error 2", kInstallService),
                                     Info("create service success", kCreate),
                                     Info("install service PlenxPcSvc success", kInstallService),
                                     Error("open service error 1060", kStop),
                                     Error("stop service PlenxPhoneSvc error 2", kInstallService),
                                     Info("create service success", kCreate),
                                     Info("install service PlenxPhoneSvc success", kInstallService),
                                     Info("create service success", kCreate),
                                     Error("kill service process 0", "KillServiceProcess"),
                                     Info("start service successful", kStart),
                                     Info("start dokan service success", kDokan)));
    EXPECT_THAT(files.Tree(kData), ElementsAre("C:\\Data\\plenx\\", "C:\\Data\\plenx\\pc\\",
                                               "C:\\Data\\plenx\\phone\\"));
}

TEST_F(ServiceTableTest, SecondConstructionOnTheSameMachine_FindsServicesAndDriver) {
    MakeManager();  // uninstalls the two services again; the driver stays
    scm.AddService(L"PlenxPcSvc");
    scm.AddService(L"PlenxPhoneSvc");
    LookFromHere();
    const auto manager = MakeManager();
    EXPECT_THAT(
        Lines(),
        ElementsAre(Info("service has stopped", kStop), Info("sevice has been created", kCreate),
                    Info("install service PlenxPcSvc success", kInstallService),
                    Info("service has stopped", kStop), Info("sevice has been created", kCreate),
                    Info("install service PlenxPhoneSvc success", kInstallService),
                    Info("sevice has been created", kCreate), Info("service is running", kStart),
                    Info("start dokan service success", kDokan)));
}

TEST_F(ServiceTableTest, ServiceLeftRunning_IsStoppedAtConstruction) {
    scm.AddService(L"PlenxPcSvc");
    scm.SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
    const auto manager = MakeManager();
    EXPECT_EQ(scm.Find(L"PlenxPcSvc")->status.dwCurrentState, DWORD{SERVICE_STOPPED});
    EXPECT_EQ(Lines()[0], Info("stop service successful", kStop));
}

TEST_F(ServiceTableTest, DriverUpgrade_RunsBeforeEverythingElse) {
    files.AddFile(kInstall + L"\\upgrade\\dokan1.sys", "new");
    const auto manager = MakeManager();
    EXPECT_EQ(Lines()[0],
              Info("upgrade \\dokan1.sys successfully", "ServiceManager::UpgradeDriver"));
    EXPECT_EQ(platform.Calls()[0], "_waccess(\"C:\\App\\upgrade\\dokan1.sys\", 0)");
    EXPECT_EQ(files.Content(kInstall + L"\\dokan1.sys"), "new");
}

TEST_F(ServiceTableTest, FailedDriverUpgrade_LeavesTheTableEmptyAndMakesNoFolder) {
    const auto manager = MakeEmptyManager();
    EXPECT_THAT(files.Tree(kData), IsEmpty());
    EXPECT_THAT(ScmCalls(), IsEmpty());
    EXPECT_THAT(Lines(), ElementsAre(Error("delete driver \\dokan1.sys error 32",
                                           "ServiceManager::UpgradeDriver")));
    EXPECT_EQ(manager->StartPlenxService(kPc), 16);
    EXPECT_FALSE(manager->isServiceAlive(kPc));
}

TEST_F(ServiceTableTest, GivenUpDriverUpgrade_DoesNotStopConstruction) {
    files.AddFile(kInstall + L"\\upgrade\\dokan1.sys");
    files.AddFile(kInstall + L"\\dokan1.sys");
    files.Give(kInstall + L"\\dokan1.sys", FileTrait::kPinned);
    const auto manager = MakeManager();
    EXPECT_THAT(scm.Names(), SizeIs(3));
}

TEST_F(ServiceTableTest, PreviousWorkingFolder_IsEmptied) {
    files.AddFile(L"C:\\Data\\plenx\\pc\\cache\\left", "x");
    files.AddFile(L"C:\\Data\\plenx\\office\\left", "x");
    files.AddFile(L"C:\\Data\\other", "x");
    const auto manager = MakeManager();
    EXPECT_THAT(files.Tree(kData),
                ElementsAre("C:\\Data\\other", "C:\\Data\\plenx\\", "C:\\Data\\plenx\\pc\\",
                            "C:\\Data\\plenx\\phone\\"));
}

TEST_F(ServiceTableTest, BlockedWorkingFolder_MakesServicesUseANumberedOne) {
    Block(L"C:\\Data\\plenx");
    Block(L"C:\\Data\\plenx0");
    const auto manager = MakeManager();
    manager->StartPlenxService(kPc);
    EXPECT_EQ(scm.Find(L"PlenxPcSvc")->arguments[1], L"C:\\Data\\plenx1\\pc");
}

TEST_F(ServiceTableTest, EveryWorkingFolderBlocked_LeavesTheTableEmptyAndDoesNoServiceWork) {
    BlockAllCandidates();
    {
        const auto manager = MakeManager();
        EXPECT_THAT(ScmCalls(), IsEmpty());
        EXPECT_EQ(manager->StopPlenxService(kPc), 16);
        LookFromHere();
    }
    EXPECT_THAT(platform.Calls(), IsEmpty());  // there is nothing to undo, not even plenx99
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_TRUE(files.Exists(L"C:\\Data\\plenx99\\held"));
}

TEST_F(ServiceTableTest, EmptyDataFolder_LeavesTheTableEmptyAndTouchesNothing) {
    files.AddFile(L"C:\\plenx\\precious");
    const ServiceManager manager(kInstall, L"");
    EXPECT_TRUE(files.Exists(L"C:\\plenx\\precious"));
    EXPECT_THAT(platform.CallsOf({"_wmkdir", "_wunlink", "_wrmdir", "CreateServiceW"}), IsEmpty());
}

TEST_F(ServiceTableTest, OfficeService_IsNeitherCreatedNorStoppedNorDeleted) {
    scm.AddService(L"PlenxOfficeSvc");
    scm.SetStatus(L"PlenxOfficeSvc", SERVICE_RUNNING);
    MakeManager();
    EXPECT_THAT(platform.Calls(), Not(Contains(HasSubstr("PlenxOfficeSvc"))));
    EXPECT_EQ(scm.Find(L"PlenxOfficeSvc")->status.dwCurrentState, DWORD{SERVICE_RUNNING});
}

// Installing and uninstalling

TEST_F(ServiceTableTest, FailedInstallOfOneService_DoesNotKeepTheOtherOut) {
    platform.Faults().FailCall("CreateServiceW", 1, ERROR_ACCESS_DENIED);
    const auto manager = MakeManager();
    EXPECT_THAT(scm.Names(), ElementsAre(L"Dokan1", L"PlenxPhoneSvc"));
    EXPECT_EQ(Lines()[2], Error("create service error 5", kCreate));
    EXPECT_EQ(Lines()[3], Error("create service PlenxPcSvc error 3", kInstallService));
    EXPECT_EQ(Lines()[7], Info("install service PlenxPhoneSvc success", kInstallService));
}

TEST_F(ServiceTableTest, FailedStopAtInstall_IsLoggedAndTheServiceInstalledAllTheSame) {
    scm.AddService(L"PlenxPcSvc");
    scm.SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
    scm.RefuseStop(L"PlenxPcSvc", ERROR_DEPENDENT_SERVICES_RUNNING);
    const auto manager = MakeManager();
    EXPECT_EQ(Lines()[0], Error("stop service error 1051", kStop));
    EXPECT_EQ(Lines()[1], Error("stop service PlenxPcSvc error 6", kInstallService));
    EXPECT_EQ(Lines()[2], Info("sevice has been created", kCreate));
    EXPECT_EQ(Lines()[3], Info("install service PlenxPcSvc success", kInstallService));
}

TEST_F(ServiceTableTest, FailedDriver_DoesNotUndoTheRest) {
    scm.RefuseStart(L"Dokan1", ERROR_FILE_NOT_FOUND);
    const auto manager = MakeManager();
    EXPECT_EQ(Lines().back(), Error("start dokan service error 5", kDokan));
    EXPECT_EQ(manager->StartPlenxService(kPc), 0);
}

TEST_F(ServiceTableTest, MachineWithoutRights_BuildsAFullTableAndLogsEachRefusal) {
    platform.Faults().FailCallsFrom("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    const auto manager = MakeManager();
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kStop),
                                     Error("stop service PlenxPcSvc error 1", kInstallService),
                                     Error("open sc manager error 5", kCreate),
                                     Error("create service PlenxPcSvc error 1", kInstallService),
                                     Error("open sc manager error 5", kStop),
                                     Error("stop service PlenxPhoneSvc error 1", kInstallService),
                                     Error("open sc manager error 5", kCreate),
                                     Error("create service PlenxPhoneSvc error 1", kInstallService),
                                     Error("open sc manager error 5", kCreate),
                                     Error("create dokan service error 1", kDokan),
                                     Error("open sc manager error 5", kStart),
                                     Error("start dokan service error 1", kDokan)));
    LookFromHere();
    EXPECT_EQ(manager->StartPlenxService(kPc), 1);  // the row is there
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    platform.Faults().Reset();
}

TEST_F(ServiceTableTest, InstallAndUninstallOnAnEmptyTable_DoNothing) {
    const auto manager = MakeEmptyManager();
    LookFromHere();
    manager->InstallService();
    manager->UninstallService();
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(ServiceTableTest, Uninstall_StopsAndDeletesOnlyPcAndPhone) {
    const auto manager = MakeManager();
    manager->StartPlenxService(kPc);
    LookFromHere();
    manager->UninstallService();
    EXPECT_THAT(
        Lines(),
        ElementsAre(Info("stop service successful", kStop),
                    Info("delete service successful", kDelete),
                    Info("uninstall service PlenxPcSvc success", kUninstallService),
                    Info("service has stopped", kStop), Info("delete service successful", kDelete),
                    Info("uninstall service PlenxPhoneSvc success", kUninstallService)));
    EXPECT_THAT(scm.Names(), ElementsAre(L"Dokan1"));
    EXPECT_EQ(scm.Find(L"Dokan1")->status.dwCurrentState, DWORD{SERVICE_RUNNING});
}

TEST_F(ServiceTableTest, UninstallOfAServiceThatRefusesToStop_GoesOnWithTheNext) {
    const auto manager = MakeManager();
    manager->StartPlenxService(kPc);
    scm.RefuseStop(L"PlenxPcSvc", ERROR_DEPENDENT_SERVICES_RUNNING);
    LookFromHere();
    manager->UninstallService();
    EXPECT_THAT(
        Lines(),
        ElementsAre(Error("stop service error 1051", kStop),
                    Error("stop service PlenxPcSvc error 6", kUninstallService),
                    Error("service PlenxPcSvc is not stopped", kDelete),
                    Error("delete service PlenxPcSvc error 7", kUninstallService),
                    Info("service has stopped", kStop), Info("delete service successful", kDelete),
                    Info("uninstall service PlenxPhoneSvc success", kUninstallService)));
    EXPECT_THAT(scm.Names(), ElementsAre(L"Dokan1", L"PlenxPcSvc"));
}

TEST_F(ServiceTableTest, UninstallAfterAForcedStop_DeletesAServiceThatIsSeenStopped) {
    const auto manager = MakeManager();
    manager->StartPlenxService(kPc);
    scm.ScriptStop(L"PlenxPcSvc", {});
    manager->UninstallService();
    EXPECT_THAT(scm.Names(), ElementsAre(L"Dokan1"));
}

TEST_F(ServiceTableTest, UninstallAfterAForcedStop_KeepsAServiceThatStillSeemsToRun) {
    const auto manager = MakeManager();
    manager->StartPlenxService(kPc);
    const DWORD id = scm.Find(L"PlenxPcSvc")->status.dwProcessId;
    scm.ScriptStop(L"PlenxPcSvc", {});
    scm.NoticeDeadProcesses(false);
    LookFromHere();
    manager->UninstallService();
    EXPECT_THAT(
        Lines(),
        ElementsAre(Info("force stop service", kStop),
                    Error("kill service process " + std::to_string(id), "KillServiceProcess"),
                    Info("stop service successful", kStop),
                    Error("service PlenxPcSvc is not stopped", kDelete),
                    Error("delete service PlenxPcSvc error 7", kUninstallService),
                    Info("service has stopped", kStop), Info("delete service successful", kDelete),
                    Info("uninstall service PlenxPhoneSvc success", kUninstallService)));
    EXPECT_THAT(scm.Names(), ElementsAre(L"Dokan1", L"PlenxPcSvc"));
}

TEST_F(ServiceTableTest, UninstallOfServicesThatAreGone_CountsAsSuccess) {
    const auto manager = MakeManager();
    manager->UninstallService();
    LookFromHere();
    manager->UninstallService();
    const Texts lines = Lines();
    EXPECT_THAT(lines,
                ElementsAre(Error("open service error 1060", kStop),
                            Error("stop service PlenxPcSvc error 2", kUninstallService),
                            Error("service PlenxPcSvc has been deleted", kDelete),
                            Info("uninstall service PlenxPcSvc success", kUninstallService),
                            Error("open service error 1060", kStop),
                            Error("stop service PlenxPhoneSvc error 2", kUninstallService),
                            Error("service PlenxPhoneSvc has been deleted", kDelete),
                            Info("uninstall service PlenxPhoneSvc success", kUninstallService)));
}

// Destruction

TEST_F(ServiceTableTest, Destruction_UninstallsServicesAndRemovesTheWorkingFolder) {
    auto manager = MakeManager();
    manager->StartPlenxService(kPc);
    files.AddFile(L"C:\\Data\\plenx\\pc\\cache");
    files.AddFile(L"C:\\Data\\other");
    LookFromHere();
    manager.reset();
    EXPECT_THAT(scm.Names(), ElementsAre(L"Dokan1"));
    EXPECT_THAT(files.Tree(kData), ElementsAre("C:\\Data\\other"));
    EXPECT_EQ(Lines().back(), Info("uninstall service PlenxPhoneSvc success", kUninstallService));
    EXPECT_EQ(platform.Calls().back(), "_wrmdir(\"C:\\Data\\plenx\")");
}

TEST_F(ServiceTableTest, DestructionOfAManagerWithANumberedFolder_RemovesThatOne) {
    Block(L"C:\\Data\\plenx");
    Block(L"C:\\Data\\plenx0");
    auto manager = MakeManager();
    files.AddFile(L"C:\\Data\\plenx1\\phone\\cache");
    files.AddFile(L"C:\\Data\\plenx2\\others");
    LookFromHere();
    manager.reset();
    EXPECT_FALSE(files.Exists(L"C:\\Data\\plenx1"));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\plenx2\\others"));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\plenx\\held"));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\plenx0\\held"));
    EXPECT_EQ(platform.Calls().back(), "_wrmdir(\"C:\\Data\\plenx1\")");
    EXPECT_EQ(Lines().back(), Info("uninstall service PlenxPhoneSvc success", kUninstallService));
}

TEST_F(ServiceTableTest, DestructionWithFolderHeld_LogsThatItStays) {
    auto manager = MakeManager();
    Block(L"C:\\Data\\plenx\\pc");
    LookFromHere();
    manager.reset();
    const Texts lines = Lines();
    ASSERT_THAT(lines, SizeIs(9));
    EXPECT_EQ(lines[6], Error("unlink error 13", "FileUtils::ForceRemoveDirectory"));
    EXPECT_EQ(lines[7], Error("rmdir error 13", "FileUtils::ForceRemoveDirectory"));
    EXPECT_EQ(lines[8], Error("remove src path error", kDestructor));
}

TEST_F(ServiceTableTest, DestructionOfAnEmptyManager_DoesNothing) {
    auto manager = MakeEmptyManager();
    LookFromHere();
    manager.reset();
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(ServiceTableTest, DestructionWithWorkingFolderGone_IsSilent) {
    auto manager = MakeManager();
    for (const wchar_t* folder : {L"\\pc", L"\\phone", L""}) {
        ASSERT_EQ(_wrmdir((L"C:\\Data\\plenx" + std::wstring(folder)).c_str()), 0);
    }
    LookFromHere();
    manager.reset();
    EXPECT_THAT(Lines(), SizeIs(6));
}

// Every failure

TEST_F(ServiceTableTest, LifeWithAnyCallFailing_LeavesNoHandleOpen) {
    const auto prepare = [this] {
        PrepareMachine();
        files.AddFile(kInstall + L"\\upgrade\\dokan1.sys");
        return 0;
    };
    const unsigned calls = WithEveryCallFailing(prepare, [this](int) {
        const auto manager = MakeManager();
        EXPECT_THAT(manager->StartPlenxService(kPc), AnyOf(0, 1, 2, 4, 5, 16));
        EXPECT_THAT(manager->StopPlenxService(kPc), AnyOf(0, 1, 2, 4, 6, 16));
    });
    EXPECT_GT(calls, 50U);
}

}  // namespace
