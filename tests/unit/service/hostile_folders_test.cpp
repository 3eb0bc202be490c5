// Tests working folders that cannot be removed, and trees that somebody has made to cause trouble.

#include <pthread.h>

#include <cstddef>
#include <functional>

#include "service/file_utils.h"
#include "service_manager_test.h"

using DistributedFs::FileUtils;
using DistributedFs::ServiceManager;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string kForce = "FileUtils::ForceRemoveDirectory";
const std::string kRemove = "FileUtils::RemoveDirectoryW";
const std::string kMake = "FileUtils::MakeDirectory";

std::wstring Deep(std::wstring path, int levels, const std::wstring& name) {
    for (int level = 0; level != levels; ++level) {
        path += L"\\" + name;
    }
    return path;
}

// Runs the action on a thread whose stack is smaller than any stack of the library.
void RunOnSmallStack(std::function<void()> action) {
    constexpr std::size_t kStack = std::size_t{512} * 1024;
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStack), 0);
    pthread_t thread;
    const auto run = [](void* function) -> void* {
        (*static_cast<std::function<void()>*>(function))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &action), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

class HostileFolders : public ServiceManagerTest {
protected:
    /// Returns the working folder that is chosen, or an empty path when there is none.
    std::wstring Choose(const std::wstring& dataFolder = kData) {
        std::wstring out;
        return ServiceManager::MakeSourcePath(dataFolder, out) == 0 ? out : L"";
    }
    static std::vector<std::string> Fresh(const std::string& folder) {
        return {folder + "\\", folder + "\\pc\\", folder + "\\phone\\"};
    }
};

TEST_F(HostileFolders, FolderHeldOpen_IsEmptiedAndPassedOver) {
    files.AddFile(L"C:\\Data\\plenx\\pc\\left");
    files.Give(L"C:\\Data\\plenx", FileTrait::kHeldOpen);
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx0");
    EXPECT_THAT(Lines(), ElementsAre(Error("rmdir error 32", kRemove)));
    EXPECT_THAT(files.Tree(L"C:\\Data\\plenx"), IsEmpty());
}

TEST_F(HostileFolders, SubfolderHeldOpen_StopsTheRemovalThere) {
    files.AddFile(L"C:\\Data\\plenx\\pc\\left");
    files.AddFile(L"C:\\Data\\plenx\\zed");
    files.Give(L"C:\\Data\\plenx\\pc", FileTrait::kHeldOpen);
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx0");
    EXPECT_THAT(Lines(),
                ElementsAre(Error("rmdir error 32", kRemove), Error("rmdir error 13", kForce)));
    EXPECT_THAT(files.Tree(L"C:\\Data\\plenx"),
                ElementsAre("C:\\Data\\plenx\\pc\\", "C:\\Data\\plenx\\zed"));
}

TEST_F(HostileFolders, ReadOnlyFile_IsNotMadeWritable) {
    files.AddFile(L"C:\\Data\\plenx\\phone\\kept", "content");
    files.Give(L"C:\\Data\\plenx\\phone\\kept", FileTrait::kReadOnly);
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx0");
    EXPECT_THAT(Lines(),
                ElementsAre(Error("unlink error 13", kForce), Error("rmdir error 13", kForce)));
    EXPECT_EQ(files.Content(L"C:\\Data\\plenx\\phone\\kept"), "content");
}

TEST_F(HostileFolders, DataFolderThatIsReadOnlyForUs_LeavesNoTrace) {
    files.Give(kData, FileTrait::kDenied);
    EXPECT_EQ(Choose(), L"");
    EXPECT_THAT(files.Tree(kData), IsEmpty());
    EXPECT_EQ(Lines(), Texts(101, Error("mkdir error 5", kMake)));
}

TEST_F(HostileFolders, TwoHundredLevels_AreRemoved) {
    files.AddFile(Deep(L"C:\\Data\\plenx", 200, L"d") + L"\\file");
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(kData), ElementsAreArray(Fresh("C:\\Data\\plenx")));
}

TEST_F(HostileFolders, PathOf32000Characters_IsRemoved) {
    const std::wstring deepest = Deep(L"C:\\Data\\plenx", 125, std::wstring(255, L'n'));
    ASSERT_GT(deepest.size(), 32000U);
    files.AddFolder(deepest);
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(kData), ElementsAreArray(Fresh("C:\\Data\\plenx")));
}

// Somebody else decides how deep a tree is, so its depth must not cost stack. The worker's stack
// has 1 or 2 MB, and a path of 32767 characters has room for 16000 levels.
TEST_F(HostileFolders, AThousandLevels_AreRemovedOnASmallStack) {
    files.AddFile(Deep(L"C:\\Data\\plenx", 1000, L"d") + L"\\file");
    std::int32_t code = -1;
    RunOnSmallStack([&] { code = FileUtils::ForceRemoveDirectory(L"C:\\Data\\plenx"); });
    EXPECT_EQ(code, 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(kData), IsEmpty());
}

TEST_F(HostileFolders, FailureBelowAThousandLevels_GivesOneLinePerLevel) {
    const std::wstring held = Deep(L"C:\\Data\\plenx", 1000, L"d") + L"\\file";
    files.AddFile(held);
    files.Give(held, FileTrait::kHeldOpen);
    std::int32_t code = -1;
    RunOnSmallStack([&] { code = FileUtils::ForceRemoveDirectory(L"C:\\Data\\plenx"); });
    EXPECT_EQ(code, 28);
    Texts expected(1001, Error("rmdir error 13", kForce));
    expected[0] = Error("unlink error 13", kForce);
    EXPECT_EQ(Lines(), expected);
    EXPECT_TRUE(files.Exists(held));
}

// Without long paths we cannot see the inner folders, and those above them are not empty.
TEST_F(HostileFolders, TreeBeyondTheReachOfTheSystem_IsPassedOver) {
    files.AddFile(Deep(L"C:\\Data\\plenx", 2, std::wstring(200, L'n')) + L"\\file");
    files.LimitPaths(MAX_PATH - 1);
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx0");
    EXPECT_THAT(Lines(),
                ElementsAre(Error("rmdir error 145", kRemove), Error("rmdir error 41", kForce)));
    EXPECT_TRUE(files.Exists(Deep(L"C:\\Data\\plenx", 2, std::wstring(200, L'n')) + L"\\file"));
}

TEST_F(HostileFolders, DataFolderTooLongForAnyCandidate_LeavesNoTrace) {
    const std::wstring data = Deep(L"C:", 1, std::wstring(250, L'n'));
    files.AddFile(data + L"\\other");
    files.LimitPaths(250);
    EXPECT_EQ(Choose(data), L"");
    EXPECT_EQ(Lines(), Texts(101, Error("mkdir error 206", kMake)));
    EXPECT_THAT(files.Tree(data), ElementsAre(HasSubstr("\\other")));
}

TEST_F(HostileFolders, DataFolderTooLongForASubfolder_RemovesEachCandidateAgain) {
    const std::wstring data = Deep(L"C:", 1, std::wstring(200, L'n'));
    files.AddFolder(data);
    files.LimitPaths(data.size() + std::wstring(L"\\plenx99\\pc").size() + 12);
    EXPECT_EQ(Choose(data), L"");
    EXPECT_EQ(Lines(), Texts(101, Error("mkdir error 206", kMake)));
    EXPECT_THAT(files.Tree(data), IsEmpty());
}

TEST_F(HostileFolders, FoldersOutsideAscii_AreUsedUnitByUnit) {
    const std::wstring install =
        L"C:\\\x00DC"
        L"bung";
    const std::wstring data = L"C:\\\x65E5\x672C\\\xD83D\xDE00";  // the last is a pair
    files.AddFile(install + L"\\upgrade\\dokan1.sys", "new");
    files.AddFile(data + L"\\plenx\\\x0416\\left");
    ServiceManager manager(install, data);
    EXPECT_EQ(files.Content(install + L"\\dokan1.sys"), "new");
    EXPECT_THAT(files.Tree(data), ElementsAreArray(Fresh("C:\\\u65E5\u672C\\\U0001F600\\plenx")));
    EXPECT_EQ(scm.Find(L"PlenxPcSvc")->config.binaryPath, install + L"\\plenxservice.exe");
    EXPECT_EQ(manager.StartPlenxService(kPc), 0);
    EXPECT_THAT(scm.Find(L"PlenxPcSvc")->arguments,
                ElementsAre(install, data + L"\\plenx\\pc", L"1"));
}

// Links. The library never empties the target of a link, wherever the link is.

TEST_F(HostileFolders, LinkToAFolderAboveItself_IsNotFollowed) {
    files.AddFile(L"C:\\Data\\precious");
    files.AddFolderLink(L"C:\\Data\\plenx\\pc\\up", L"C:\\Data");
    files.AddFolderLink(L"C:\\Data\\plenx\\self", L"C:\\Data\\plenx");
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(kData), Contains("C:\\Data\\precious"));
}

TEST_F(HostileFolders, LinksInPlaceOfTheSubfolders_AreReplaced) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFolderLink(L"C:\\Data\\plenx\\pc", L"C:\\Target");
    files.AddFileLink(L"C:\\Data\\plenx\\phone", L"C:\\Target\\keep");
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(L"C:\\Target"), ElementsAre("C:\\Target\\keep"));
    EXPECT_THAT(files.Tree(kData), ElementsAreArray(Fresh("C:\\Data\\plenx")));
}

// The host has chosen this folder. The working folder goes there, and only that is emptied.
TEST_F(HostileFolders, DataFolderThatIsALink_IsUsedAsItIs) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFile(L"C:\\Target\\plenx\\old");
    files.AddFolderLink(L"C:\\Link", L"C:\\Target");
    EXPECT_EQ(Choose(L"C:\\Link"), L"C:\\Link\\plenx");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(L"C:\\Target"),
                ElementsAre("C:\\Target\\keep", "C:\\Target\\plenx\\", "C:\\Target\\plenx\\pc\\",
                            "C:\\Target\\plenx\\phone\\"));
}

TEST_F(HostileFolders, LinkThatCannotBeRemoved_IsPassedOver) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFolderLink(L"C:\\Data\\plenx", L"C:\\Target");
    files.Give(L"C:\\Data\\plenx", FileTrait::kHeldOpen);
    EXPECT_EQ(Choose(), L"C:\\Data\\plenx0");
    EXPECT_THAT(Lines(), ElementsAre(Error("rmdir error 13", kForce)));
    EXPECT_THAT(files.Tree(L"C:\\Target"), ElementsAre("C:\\Target\\keep"));
}

}  // namespace
