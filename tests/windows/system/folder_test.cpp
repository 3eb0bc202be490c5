// Tests the folders that the library makes, empties and fills.

#include "support/child_process.h"
#include "support/service_state.h"
#include "support/system_habits.h"
#include "system/held_file.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

class WorkingFolder : public Host {
protected:
    const fs::path& data = folder.DataPath();

    /// Returns the worker's lines of Init up to the first service.
    Lines LinesBeforeInstallation();
};

Lines WorkingFolder::LinesBeforeInstallation() {
    Init();
    const Lines lines = WorkerLines();
    const std::string firstService =
        Error("ServiceManager::StopServiceByIndex", "open service error 1060");
    return Lines(lines.begin(), std::find(lines.begin(), lines.end(), firstService));
}

const std::string kBegin = Info("PLENXManagerInner::Init", "service manager initialization");

HOST_TEST(WorkingFolder, OldContent_IsWiped) {
    fs::create_directories(folder.WorkingFolder() / "pc" / "deep" / "deeper");
    WriteFile(folder.WorkingFolder() / "pc" / "deep" / "deeper" / "file", "old");
    WriteFile(folder.WorkingFolder() / "file", "old");
    WriteFile(data / "neighbour", "kept");
    EXPECT_THAT(LinesBeforeInstallation(), ElementsAre(kBegin));
    EXPECT_TRUE(fs::is_empty(folder.WorkingFolder() / "pc"));
    EXPECT_FALSE(fs::exists(folder.WorkingFolder() / "file"));
    EXPECT_TRUE(fs::exists(data / "neighbour"));
    EXPECT_FALSE(fs::exists(folder.WorkingFolder() / "office"));
}

HOST_TEST(WorkingFolder, FileInItThatIsHeld_MakesItPlenx0) {
    fs::create_directories(folder.WorkingFolder() / "sub");
    const HeldFile held(folder.WorkingFolder() / "sub" / "held");
    EXPECT_THAT(LinesBeforeInstallation(),
                ElementsAre(kBegin, Error("FileUtils::ForceRemoveDirectory", "unlink error 13"),
                            Error("FileUtils::ForceRemoveDirectory", "rmdir error 13")));
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(fs::exists(data / "plenx0" / "pc" / "service.log"));
    EXPECT_TRUE(fs::exists(folder.WorkingFolder() / "sub" / "held"));
}

HOST_TEST(WorkingFolder, SeveralThatAreHeld_MakeItTheNextOne) {
    std::vector<std::unique_ptr<HeldFile>> held;
    for (const char* const name : {"plenx", "plenx0", "plenx1"}) {
        fs::create_directories(data / name);
        held.push_back(std::make_unique<HeldFile>(data / name / "held"));
    }
    Init();
    EXPECT_TRUE(Start(kPhoneService));
    EXPECT_TRUE(fs::exists(data / "plenx2" / "phone" / "service.log"));
    EXPECT_FALSE(fs::exists(data / "plenx3"));
}

HOST_TEST(WorkingFolder, FilesInThePlaceOfAllCandidates_LeaveNoServices) {
    WriteFile(data / "plenx", "a file");
    for (int n = 0; n != 100; ++n) {
        WriteFile(data / ("plenx" + std::to_string(n)), "a file");
    }
    Init();
    const Lines lines = WorkerLines();
    ASSERT_EQ(lines.size(), 103u);
    EXPECT_EQ(lines.front(), kBegin);
    for (int i = 1; i != 102; ++i) {
        EXPECT_THAT(lines[i], testing::StartsWith("error [PLENXSDK] find first error "));
    }
    EXPECT_EQ(lines.back(), Info("PLENXManagerInner::Init", "rpc listen thread initialization"));
    EXPECT_EQ(ReadFile(data / "plenx99"), "a file");
    EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
    EXPECT_FALSE(Start(kPcService));
    EXPECT_EQ(
        CountLines(Error("PLENXManagerInner::Start", "plenx manager start plenx service error 16")),
        1);
}

HOST_TEST(WorkingFolder, ReadOnlyFileInIt_MakesItPlenx0) {
    const fs::path file = folder.WorkingFolder() / "sub" / "file";
    fs::create_directories(file.parent_path());
    WriteFile(file, "kept");
    ASSERT_TRUE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_THAT(LinesBeforeInstallation(),
                ElementsAre(kBegin, Error("FileUtils::ForceRemoveDirectory", "unlink error 13"),
                            Error("FileUtils::ForceRemoveDirectory", "rmdir error 13")));
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(fs::exists(data / "plenx0" / "pc" / "service.log"));
    EXPECT_EQ(ReadFile(file), "kept");
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

// The system decides about paths beyond 260 characters. Whatever it decides, there must be a
// working folder.
HOST_TEST(WorkingFolder, OldContentOfAnyDepth_LeavesAWorkingFolder) {
    std::wstring deep = L"\\\\?\\" + folder.WorkingFolder().wstring();
    ASSERT_TRUE(CreateDirectoryW(deep.c_str(), nullptr));
    for (int i = 0; i != 20; ++i) {
        deep += L"\\" + std::wstring(50, L'd');
        ASSERT_TRUE(CreateDirectoryW(deep.c_str(), nullptr)) << i;
    }
    Init();
    EXPECT_TRUE(Start(kPcService));
    const bool wiped = !fs::exists(folder.WorkingFolder() / std::wstring(50, L'd'));
    EXPECT_TRUE(fs::exists(data / (wiped ? "plenx" : "plenx0") / "pc" / "service.log"));
}

class FolderNames : public Host {
protected:
    /// Installs the files under another name, with an empty data folder.
    void UseFolders(const std::wstring& install, const std::wstring& data);

    fs::path dataFolder;
};

void FolderNames::UseFolders(const std::wstring& install, const std::wstring& data) {
    const fs::path installFolder = folder.DataPath() / install;
    dataFolder = folder.DataPath() / data;
    fs::copy(folder.InstallPath(), installFolder, fs::copy_options::recursive);
    fs::create_directories(dataFolder);
    manager.Init(installFolder.u8string(), dataFolder.u8string(), "third", true);
    ASSERT_TRUE(Settle());
}

// Only the icon files have names in the code page of the system.
HOST_TEST(FolderNames, ThatAreNotAscii_AreUsedForTheServices) {
    UseFolders(L"\u00e4pp\u0142", L"\u65e5\u672c\U0001F4C1");
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(fs::exists(dataFolder / "plenx" / "pc" / "service.log"));
    EXPECT_EQ(ServiceLines("pc", "starts, process").size(), 1u);
    manager.Stop(kPcService, "group");
    EXPECT_TRUE(observer.WaitFor("NotifyDisconnect(1, group)"));
}

// A host takes this prefix for long paths.
HOST_TEST(FolderNames, DataFolderWithTheLongPathPrefix_IsUsedAndWiped) {
    const fs::path old = folder.WorkingFolder() / "pc" / "old";
    fs::create_directories(old.parent_path());
    WriteFile(old, "old");
    manager.Init(folder.Install(), R"(\\?\)" + folder.Data(), "third", true);
    ASSERT_TRUE(Settle());
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(fs::exists(folder.WorkingFolder() / "pc" / "service.log"));
    EXPECT_FALSE(fs::exists(old));
}

// Where there is a limit, a data folder of 245 characters leaves no room for the folders in it. The
// limit of a folder's path is 248.
HOST_TEST(FolderNames, OfGreatLength_WorkOrLeaveNoServices) {
    const std::wstring name(245 - folder.DataPath().wstring().size(), L'l');
    UseFolders(L"app", name);
    const bool installed = IsRegistered(L"PlenxPcSvc");
    EXPECT_TRUE(Shows(Habits::kFoldersInADataFolderOf245, installed ? "there" : "none"));
    EXPECT_EQ(Start(kPcService), installed);
    EXPECT_EQ(fs::exists(dataFolder / "plenx" / "pc" / "service.log"), installed);
    EXPECT_TRUE(Start(kOfficeService));
}

/// A link to a folder beside its own. Wine neither makes nor removes such links, but it knows those
/// of the system that it runs on.
class FolderLink {
public:
    FolderLink(const fs::path& link, const std::wstring& target) : link_(link) {
        if (!CreateSymbolicLinkW(link.c_str(), (L"..\\" + target).c_str(),
                                 SYMBOLIC_LINK_FLAG_DIRECTORY) ||
            !Exists()) {
            RunBelow(L"ln -s ../" + target);
        }
    }
    ~FolderLink() {
        if (Exists() && !RemoveDirectoryW(link_.c_str())) {
            RunBelow(L"rm");
        }
    }
    FolderLink(const FolderLink&) = delete;
    FolderLink& operator=(const FolderLink&) = delete;

    bool Exists() const {
        const DWORD attributes = GetFileAttributesW(link_.c_str());
        return attributes != INVALID_FILE_ATTRIBUTES &&
               (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    }

private:
    // This starts a program of the underlying system in the link's folder, with the link's name as
    // the last argument. It is no process of Wine's, so the test can wait only for its effect.
    void RunBelow(const std::wstring& command) const {
        const bool before = Exists();
        const fs::path here = fs::current_path();
        fs::current_path(link_.parent_path());
        const ChildProcess program(L"Z:\\bin\\" + command + L" " + link_.filename().wstring());
        fs::current_path(here);
        WaitFor([&] { return Exists() != before; }, 5000);
    }

    fs::path link_;
};

HOST_TEST(WorkingFolder, LinkInIt_IsNeverFollowed) {
    const fs::path target = data / "target";
    fs::create_directories(target);
    WriteFile(target / "file", "kept");
    fs::create_directories(folder.WorkingFolder());
    const FolderLink link(folder.WorkingFolder() / "link", L"target");
    ASSERT_TRUE(link.Exists());
    ASSERT_EQ(ReadFile(folder.WorkingFolder() / "link" / "file"), "kept");
    const Lines lines = LinesBeforeInstallation();
    EXPECT_EQ(ReadFile(target / "file"), "kept");
    EXPECT_TRUE(Shows(Habits::kLinkInAFolderThatIsRemoved, link.Exists() ? "there" : "gone"));
    if (!link.Exists()) {
        EXPECT_THAT(lines, ElementsAre(kBegin));
    } else {
        EXPECT_THAT(
            lines, ElementsAre(kBegin, Error("FileUtils::ForceRemoveDirectory", "rmdir error 41")));
        EXPECT_TRUE(fs::exists(data / "plenx0" / "pc"));
    }
}

const std::string kCategories[] = {"archive", "file", "audio", "picture", "video"};

/// Returns the desktop.ini of a category whose folder has this path.
std::string DesktopIniOf(const std::string& path, const std::string& category) {
    return "[.ShellClassInfo]\r\nIconResource=" + path + "\\" + category +
           ".ico,0\r\nInfoTip=Categories\r\n[ViewState]\r\nMode=\r\nVid=\r\n"
           "FolderType=Generic\r\n";
}

class CategoryIcons : public Host {
protected:
    std::string FolderOf(const std::string& category) const {
        return folder.Install() + "\\res\\plenx\\icon\\" + category;
    }
    std::string FileOf(const std::string& category) const {
        return FolderOf(category) + "\\desktop.ini";
    }
    testing::AssertionResult IsWritten(const std::string& category) const {
        const std::string text = ReadFile(FileOf(category));
        if (text == DesktopIniOf(FolderOf(category), category)) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << FileOf(category) << " holds \"" << text << '"';
    }
    std::string OpenError(const std::string& category) const {
        return Error("PLENXManagerInner::CreateFileIcon",
                     "open file" + FileOf(category) + " error");
    }
};

HOST_TEST(CategoryIcons, EachCategory_GetsItsDesktopIni) {
    Init();
    for (const std::string& category : kCategories) {
        EXPECT_TRUE(IsWritten(category));
    }
}

HOST_TEST(CategoryIcons, CategoryThatIsMissing_IsLoggedAndTheOthersAreWritten) {
    fs::remove_all(FolderOf("audio"));
    WriteFile(FileOf("video"), std::string(1000, 'x'));
    Init();
    EXPECT_THAT(LinesOf("PLENXManagerInner::CreateFileIcon"), ElementsAre(OpenError("audio")));
    EXPECT_FALSE(fs::exists(FolderOf("audio")));
    EXPECT_TRUE(fs::exists(FileOf("picture")));
    EXPECT_TRUE(IsWritten("video")) << "the old file must be replaced";
}

HOST_TEST(CategoryIcons, FileThatSomebodyReads_IsReplaced) {
    WriteFile(FileOf("video"), std::string(1000, 'x'));
    const HeldFile read(FileOf("video"), FILE_SHARE_READ | FILE_SHARE_WRITE);
    Init();
    EXPECT_THAT(LinesOf("PLENXManagerInner::CreateFileIcon"), IsEmpty());
    EXPECT_TRUE(IsWritten("video"));
}

HOST_TEST(CategoryIcons, FileThatIsHeldAlone_IsLoggedAndTheOthersAreWritten) {
    const HeldFile held(FileOf("picture"));
    Init();
    EXPECT_THAT(LinesOf("PLENXManagerInner::CreateFileIcon"), ElementsAre(OpenError("picture")));
    for (const std::string category : {"archive", "file", "audio", "video"}) {
        EXPECT_TRUE(IsWritten(category));
    }
    EXPECT_EQ(fs::file_size(FileOf("picture")), 0u);
}

// The same holds for a file with the mark of the system's own files.
HOST_TEST(CategoryIcons, HiddenFile_IsLoggedAndKeptWhereTheSystemRefusesIt) {
    const std::pair<std::string, DWORD> marked[] = {{"archive", FILE_ATTRIBUTE_HIDDEN},
                                                    {"video", FILE_ATTRIBUTE_SYSTEM}};
    for (const auto& [category, attribute] : marked) {
        WriteFile(FileOf(category), "old");
        ASSERT_TRUE(SetFileAttributesA(FileOf(category).c_str(), attribute));
    }
    Init();
    Lines refused;
    for (const auto& [category, attribute] : marked) {
        const bool kept = ReadFile(FileOf(category)) == "old";
        EXPECT_TRUE(Shows(Habits::kHiddenFileThatIsOverwritten, kept ? "kept" : "replaced"));
        EXPECT_TRUE(kept || IsWritten(category));
        EXPECT_EQ(GetFileAttributesA(FileOf(category).c_str()) & attribute, attribute);
        if (kept) {
            refused.push_back(OpenError(category));
        }
    }
    EXPECT_EQ(LinesOf("PLENXManagerInner::CreateFileIcon"), refused);
    for (const std::string category : {"file", "audio", "picture"}) {
        EXPECT_TRUE(IsWritten(category));
    }
}

}  // namespace
}  // namespace PlenxTest
