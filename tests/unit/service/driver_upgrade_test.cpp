#include "service/service_manager.h"
#include "service_room_test.h"

using DistributedFs::ServiceManager;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string kUpgrade = "ServiceManager::UpgradeDriver";
const std::wstring kInstall = L"C:\\App";
const std::vector<std::wstring> kFileNames = {L"\\dokan1.sys", L"\\dokan1.dll",
                                              L"\\dokanfuse1.dll"};

std::string Done(const std::string& file) {
    return Info("upgrade " + file + " successfully", kUpgrade);
}

class DriverUpgradeTest : public ServiceRoomTest {
protected:
    void AddInstalled(const std::wstring& file) { files.AddFile(kInstall + file, "old"); }
    void AddUpgrade(const std::wstring& file) {
        files.AddFile(kInstall + L"\\upgrade" + file, "new");
    }
    void AddAll() {
        for (const std::wstring& file : kFileNames) {
            AddInstalled(file);
            AddUpgrade(file);
        }
    }
    std::string Installed(const std::wstring& file) { return files.Content(kInstall + file); }

    FakeFiles& files = platform.Files();
};

TEST_F(DriverUpgradeTest, NoUpgradeFolder_Returns0AndTouchesNothing) {
    AddInstalled(L"\\dokan1.sys");
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(platform.Calls(), ElementsAre("_waccess(\"C:\\App\\upgrade\\dokan1.sys\", 0)",
                                              "_waccess(\"C:\\App\\upgrade\\dokan1.dll\", 0)",
                                              "_waccess(\"C:\\App\\upgrade\\dokanfuse1.dll\", 0)"));
}

TEST_F(DriverUpgradeTest, FolderWithANul_Returns24AndTouchesNothing) {
    files.AddFile(L"C:\\App\\host.exe", "the host's");
    const std::wstring folder = std::wstring(L"C:\\App\\host.exe") + L'\0' + L"more";
    EXPECT_EQ(ServiceManager::UpgradeDriver(folder), 24);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_EQ(files.Content(L"C:\\App\\host.exe"), "the host's");
}

TEST_F(DriverUpgradeTest, UpgradeCopyThatCannotBeAccessed_IsSkippedSilently) {
    AddInstalled(L"\\dokan1.sys");
    AddUpgrade(L"\\dokan1.sys");
    files.Give(L"C:\\App\\upgrade\\dokan1.sys", FileTrait::kDenied);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "old");
}

TEST_F(DriverUpgradeTest, AllFiles_AreReplacedInOrderAndMovedOutOfUpgrade) {
    AddAll();
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(),
                ElementsAre(Done("\\dokan1.sys"), Done("\\dokan1.dll"), Done("\\dokanfuse1.dll")));
    for (const std::wstring& file : kFileNames) {
        EXPECT_EQ(Installed(file), "new");
    }
    EXPECT_THAT(files.Tree(L"C:\\App\\upgrade"), IsEmpty());
    EXPECT_THAT(
        platform.CallsWithout({"_waccess"}),
        ElementsAre(
            "DeleteFileW(\"C:\\App\\dokan1.sys\")",
            "MoveFileExW(\"C:\\App\\upgrade\\dokan1.sys\", \"C:\\App\\dokan1.sys\", 2)",
            "DeleteFileW(\"C:\\App\\dokan1.dll\")",
            "MoveFileExW(\"C:\\App\\upgrade\\dokan1.dll\", \"C:\\App\\dokan1.dll\", 2)",
            "DeleteFileW(\"C:\\App\\dokanfuse1.dll\")",
            "MoveFileExW(\"C:\\App\\upgrade\\dokanfuse1.dll\", \"C:\\App\\dokanfuse1.dll\", 2)"));
}

TEST_F(DriverUpgradeTest, SecondRun_FindsNothingToDo) {
    AddAll();
    ServiceManager::UpgradeDriver(kInstall);
    LookFromHere();
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(platform.CallsWithout({"_waccess"}), IsEmpty());
}

TEST_F(DriverUpgradeTest, OnlyOneUpgradeCopy_ReplacesOnlyThatFile) {
    for (const std::wstring& file : kFileNames) {
        AddInstalled(file);
    }
    AddUpgrade(L"\\dokan1.dll");
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(), ElementsAre(Done("\\dokan1.dll")));
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "old");
    EXPECT_EQ(Installed(L"\\dokan1.dll"), "new");
    EXPECT_EQ(Installed(L"\\dokanfuse1.dll"), "old");
}

TEST_F(DriverUpgradeTest, MissingTarget_IsMovedIn) {
    AddUpgrade(L"\\dokan1.sys");
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(), ElementsAre(Done("\\dokan1.sys")));
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "new");
}

TEST_F(DriverUpgradeTest, TargetInUse_IsMovedAsideAndReplaced) {
    AddAll();
    files.Give(L"C:\\App\\dokan1.sys", FileTrait::kInUse);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(),
                ElementsAre(Info("driver \\dokan1.sys is used", kUpgrade),
                            Info("move old \\dokan1.sys successfully", kUpgrade),
                            Done("\\dokan1.sys"), Done("\\dokan1.dll"), Done("\\dokanfuse1.dll")));
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "new");
    EXPECT_EQ(Installed(L"\\dokan1.sys.old"), "old");
    EXPECT_THAT(platform.CallsOf({"MoveFileExW"})[0],
                "MoveFileExW(\"C:\\App\\dokan1.sys\", \"C:\\App\\dokan1.sys.old\", 1)");
}

TEST_F(DriverUpgradeTest, OldFileOfAnEarlierUpgrade_IsOverwritten) {
    AddInstalled(L"\\dokan1.dll");
    AddUpgrade(L"\\dokan1.dll");
    files.AddFile(L"C:\\App\\dokan1.dll.old", "older");
    files.Give(L"C:\\App\\dokan1.dll", FileTrait::kInUse);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_EQ(Installed(L"\\dokan1.dll"), "new");
    EXPECT_EQ(Installed(L"\\dokan1.dll.old"), "old");
}

TEST_F(DriverUpgradeTest, ReadOnlyTarget_IsTakenForOneInUse) {
    AddInstalled(L"\\dokan1.sys");
    AddUpgrade(L"\\dokan1.sys");
    files.Give(L"C:\\App\\dokan1.sys", FileTrait::kReadOnly);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "new");
    EXPECT_EQ(Installed(L"\\dokan1.sys.old"), "old");
}

TEST_F(DriverUpgradeTest, FolderUnderTheTargetsName_IsTakenForOneInUse) {
    files.AddFile(L"C:\\App\\dokan1.sys\\inner", "old");
    AddUpgrade(L"\\dokan1.sys");
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "new");
    EXPECT_EQ(Installed(L"\\dokan1.sys.old\\inner"), "old");
}

TEST_F(DriverUpgradeTest, TargetThatCannotBeMovedAside_GivesUpWith0AndTouchesNoLaterFile) {
    AddAll();
    files.Give(L"C:\\App\\dokan1.dll", FileTrait::kPinned);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(),
                ElementsAre(Done("\\dokan1.sys"), Info("driver \\dokan1.dll is used", kUpgrade),
                            Info("move driver \\dokan1.dll error 5", kUpgrade)));
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "new");
    EXPECT_EQ(Installed(L"\\dokan1.dll"), "old");
    EXPECT_EQ(Installed(L"\\dokanfuse1.dll"), "old");
    EXPECT_THAT(files.Tree(L"C:\\App\\upgrade"),
                ElementsAre("C:\\App\\upgrade\\dokan1.dll", "C:\\App\\upgrade\\dokanfuse1.dll"));
}

TEST_F(DriverUpgradeTest, FolderUnderTheOldName_GivesUpWith0) {
    AddInstalled(L"\\dokan1.sys");
    AddUpgrade(L"\\dokan1.sys");
    files.AddFolder(L"C:\\App\\dokan1.sys.old");
    files.Give(L"C:\\App\\dokan1.sys", FileTrait::kInUse);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("driver \\dokan1.sys is used", kUpgrade),
                                     Info("move driver \\dokan1.sys error 5", kUpgrade)));
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "old");
}

TEST_F(DriverUpgradeTest, OldFileThatIsStillLoaded_GivesUpWith0) {
    AddInstalled(L"\\dokan1.sys");
    AddUpgrade(L"\\dokan1.sys");
    files.Give(L"C:\\App\\dokan1.sys", FileTrait::kInUse);
    ServiceManager::UpgradeDriver(kInstall);
    files.Give(L"C:\\App\\dokan1.sys", FileTrait::kInUse);
    AddUpgrade(L"\\dokan1.sys");
    LookFromHere();
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("driver \\dokan1.sys is used", kUpgrade),
                                     Info("move driver \\dokan1.sys error 5", kUpgrade)));
}

TEST_F(DriverUpgradeTest, TargetOpenElsewhere_Returns24AndStops) {
    AddAll();
    files.Give(L"C:\\App\\dokan1.dll", FileTrait::kHeldOpen);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 24);
    EXPECT_THAT(Lines(), ElementsAre(Done("\\dokan1.sys"),
                                     Error("delete driver \\dokan1.dll error 32", kUpgrade)));
    EXPECT_EQ(Installed(L"\\dokan1.dll"), "old");
    EXPECT_EQ(Installed(L"\\dokanfuse1.dll"), "old");
}

TEST_F(DriverUpgradeTest, TargetFolderMissing_Returns24) {
    AddUpgrade(L"\\dokan1.sys");
    platform.Faults().FailCall("DeleteFileW", 1, ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 24);
    EXPECT_THAT(Lines(), ElementsAre(Error("delete driver \\dokan1.sys error 3", kUpgrade)));
}

TEST_F(DriverUpgradeTest, NewCopyThatCannotBeMovedIn_Returns24AndTheOldFileIsGone) {
    AddAll();
    files.Give(L"C:\\App\\upgrade\\dokan1.sys", FileTrait::kHeldOpen);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 24);
    EXPECT_THAT(Lines(), ElementsAre(Error("upgrade driver \\dokan1.sys error 32", kUpgrade)));
    EXPECT_FALSE(files.Exists(L"C:\\App\\dokan1.sys"));
    EXPECT_TRUE(files.Exists(L"C:\\App\\upgrade\\dokan1.sys"));
    EXPECT_EQ(Installed(L"\\dokan1.dll"), "old");
}

TEST_F(DriverUpgradeTest, NewCopyThatCannotBeMovedInAfterMovingAside_IsNotUndone) {
    AddInstalled(L"\\dokanfuse1.dll");
    AddUpgrade(L"\\dokanfuse1.dll");
    files.Give(L"C:\\App\\dokanfuse1.dll", FileTrait::kInUse);
    platform.Faults().FailCall("MoveFileExW", 2, ERROR_SHARING_VIOLATION);
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 24);
    EXPECT_THAT(Lines(), ElementsAre(Info("driver \\dokanfuse1.dll is used", kUpgrade),
                                     Info("move old \\dokanfuse1.dll successfully", kUpgrade),
                                     Error("upgrade driver \\dokanfuse1.dll error 32", kUpgrade)));
    EXPECT_FALSE(files.Exists(L"C:\\App\\dokanfuse1.dll"));
    EXPECT_EQ(Installed(L"\\dokanfuse1.dll.old"), "old");
}

TEST_F(DriverUpgradeTest, TargetThatAppearsMeanwhile_IsNotReplaced) {
    AddUpgrade(L"\\dokan1.sys");
    platform.Faults().Before("MoveFileExW", 1, [this] { AddInstalled(L"\\dokan1.sys"); });
    EXPECT_EQ(ServiceManager::UpgradeDriver(kInstall), 24);
    EXPECT_THAT(Lines(), ElementsAre(Error("upgrade driver \\dokan1.sys error 183", kUpgrade)));
    EXPECT_EQ(Installed(L"\\dokan1.sys"), "old");
}

TEST_F(DriverUpgradeTest, WithAnyCallFailing_ReturnsADocumentedCode) {
    const auto prepare = [this] {
        AddAll();
        files.Give(L"C:\\App\\dokan1.dll", FileTrait::kInUse);
        return 0;
    };
    const unsigned calls = WithEveryCallFailing(
        prepare, [](int) { EXPECT_THAT(ServiceManager::UpgradeDriver(kInstall), AnyOf(0, 24)); });
    EXPECT_EQ(calls, 10U);
}

}  // namespace
