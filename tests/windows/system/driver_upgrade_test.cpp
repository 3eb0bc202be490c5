// Tests that newer driver files in "upgrade" replace the installed ones, whatever holds those.

#include "support/child_process.h"
#include "support/service_state.h"
#include "system/held_file.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

class DriverUpgrade : public Host {
protected:
    DriverUpgrade() { folder.AddUpgrade(); }

    Lines LinesOfUpgrade() {
        Init();
        return LinesOf("ServiceManager::UpgradeDriver");
    }
    fs::path Installed(const char* file) const { return folder.InstallPath() / file; }
    fs::path Waiting(const char* file) const { return folder.InstallPath() / "upgrade" / file; }
    static std::string Newer(const char* file) {
        return ReadFile(fs::path(ProgramFolder()) / "upgrade" / file);
    }
    static std::string Older(const char* file) {
        return ReadFile(fs::path(ProgramFolder()) / file);
    }
};

std::string Upgraded(const std::string& file) {
    return Info("ServiceManager::UpgradeDriver", "upgrade \\" + file + " successfully");
}

HOST_TEST(DriverUpgrade, NoUpgradeFolder_DoesNothing) {
    fs::remove_all(folder.InstallPath() / "upgrade");
    EXPECT_THAT(LinesOfUpgrade(), IsEmpty());
    EXPECT_EQ(ReadFile(Installed("dokan1.dll")), Older("dokan1.dll"));
}

HOST_TEST(DriverUpgrade, AllFiles_AreMovedInAndTheDriverStarts) {
    EXPECT_THAT(LinesOfUpgrade(), ElementsAre(Upgraded("dokan1.sys"), Upgraded("dokan1.dll"),
                                              Upgraded("dokanfuse1.dll")));
    for (const char* const file : {"dokan1.sys", "dokan1.dll", "dokanfuse1.dll"}) {
        EXPECT_NE(Older(file), Newer(file)) << "the old file and the new one must differ";
        EXPECT_EQ(ReadFile(Installed(file)), Newer(file)) << file;
    }
    EXPECT_TRUE(fs::is_empty(folder.InstallPath() / "upgrade"));
    EXPECT_EQ(StateOf(L"Dokan1") == DWORD{SERVICE_RUNNING}, DriverStarts());
}

HOST_TEST(DriverUpgrade, OneFile_IsMovedInAlone) {
    fs::remove(Waiting("dokan1.sys"));
    fs::remove(Waiting("dokanfuse1.dll"));
    EXPECT_THAT(LinesOfUpgrade(), ElementsAre(Upgraded("dokan1.dll")));
    EXPECT_EQ(ReadFile(Installed("dokan1.sys")), Older("dokan1.sys"));
    EXPECT_EQ(ReadFile(Installed("dokan1.dll")), Newer("dokan1.dll"));
}

HOST_TEST(DriverUpgrade, TargetThatIsMissing_GetsTheNewFile) {
    fs::remove(Installed("dokan1.dll"));
    EXPECT_THAT(LinesOfUpgrade(), ElementsAre(Upgraded("dokan1.sys"), Upgraded("dokan1.dll"),
                                              Upgraded("dokanfuse1.dll")));
    EXPECT_EQ(ReadFile(Installed("dokan1.dll")), Newer("dokan1.dll"));
}

HOST_TEST(DriverUpgrade, LibraryInUse_IsMovedAside) {
    WriteFile(Installed("dokan1.dll.old"), "of an earlier upgrade");
    const HMODULE loaded = LoadLibraryW(Installed("dokan1.dll").c_str());
    ASSERT_NE(loaded, nullptr);
    EXPECT_THAT(
        LinesOfUpgrade(),
        ElementsAre(Upgraded("dokan1.sys"),
                    Info("ServiceManager::UpgradeDriver", "driver \\dokan1.dll is used"),
                    Info("ServiceManager::UpgradeDriver", "move old \\dokan1.dll successfully"),
                    Upgraded("dokan1.dll"), Upgraded("dokanfuse1.dll")));
    EXPECT_EQ(ReadFile(Installed("dokan1.dll.old")), Older("dokan1.dll"));
    EXPECT_EQ(ReadFile(Installed("dokan1.dll")), Newer("dokan1.dll"));
    FreeLibrary(loaded);
}

// A read-only file cannot be deleted, and a folder cannot be replaced by a file.
HOST_TEST(DriverUpgrade, FileThatCannotEvenBeMovedAside_GivesUpForThisRun) {
    SetFileAttributesW(Installed("dokan1.dll").c_str(), FILE_ATTRIBUTE_READONLY);
    fs::create_directories(Installed("dokan1.dll.old") / "sub");
    const Lines lines = LinesOfUpgrade();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], Upgraded("dokan1.sys"));
    EXPECT_EQ(lines[1], Info("ServiceManager::UpgradeDriver", "driver \\dokan1.dll is used"));
    EXPECT_THAT(lines[2], testing::StartsWith("info [PLENXSDK] move driver \\dokan1.dll error "));
    EXPECT_EQ(ReadFile(Installed("dokan1.dll")), Older("dokan1.dll"));
    EXPECT_TRUE(fs::exists(Waiting("dokan1.dll")));
    EXPECT_TRUE(fs::exists(Waiting("dokanfuse1.dll")));
    EXPECT_TRUE(Start(kPcService)) << "the library must go on with the old files";
    SetFileAttributesW(Installed("dokan1.dll").c_str(), FILE_ATTRIBUTE_NORMAL);
}

HOST_TEST(DriverUpgrade, FileThatSomebodyHasOpen_LeavesNoServices) {
    const HeldFile held(Installed("dokan1.dll"));
    EXPECT_THAT(LinesOfUpgrade(),
                ElementsAre(Upgraded("dokan1.sys"), Error("ServiceManager::UpgradeDriver",
                                                          "delete driver \\dokan1.dll error 32")));
    EXPECT_FALSE(fs::exists(folder.WorkingFolder()));
    EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
    EXPECT_FALSE(Start(kPcService));
    EXPECT_EQ(
        CountLines(Error("PLENXManagerInner::Start", "plenx manager start plenx service error 16")),
        1);
}

HOST_TEST(DriverUpgrade, NewFileThatSomebodyHasOpen_LeavesNoServices) {
    const HeldFile held(Waiting("dokan1.dll"));
    const Lines lines = LinesOfUpgrade();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[1],
                testing::StartsWith("error [PLENXSDK] upgrade driver \\dokan1.dll error 32("));
    EXPECT_FALSE(fs::exists(Installed("dokan1.dll"))) << "the old file is gone already";
    EXPECT_FALSE(Start(kPcService));
}

}  // namespace
}  // namespace PlenxTest
