#include "service/file_utils.h"

#include "platform/call_text.h"
#include "service_room_test.h"

using DistributedFs::FileUtils;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

const std::string kMake = "FileUtils::MakeDirectory";
const std::string kRemove = "FileUtils::RemoveDirectoryW";
const std::string kForce = "FileUtils::ForceRemoveDirectory";
const std::string kExists = "FileUtils::FileExists";

class FileUtilsTest : public ServiceRoomTest {
protected:
    FakeFiles& files = platform.Files();
};

// MakeDirectory

TEST_F(FileUtilsTest, MakeNewFolder_MakesItSilently) {
    files.AddFolder(L"C:\\Data");
    EXPECT_EQ(FileUtils::MakeDirectory(L"C:\\Data\\plenx"), 0);
    EXPECT_TRUE(files.Exists(L"C:\\Data\\plenx"));
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(platform.Calls(), ElementsAre("_wmkdir(\"C:\\Data\\plenx\")"));
}

TEST_F(FileUtilsTest, MakeExistingFolder_IsASilentSuccess) {
    files.AddFolder(L"C:\\Data");
    EXPECT_EQ(FileUtils::MakeDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(FileUtilsTest, MakeFolderWhoseNameAFileHas_IsASilentSuccess) {
    files.AddFile(L"C:\\Data\\plenx");
    EXPECT_EQ(FileUtils::MakeDirectory(L"C:\\Data\\plenx"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(FileUtilsTest, MakeFolderWithoutParent_MakesNothingAndReturns27) {
    EXPECT_EQ(FileUtils::MakeDirectory(L"C:\\Data\\plenx"), 27);
    EXPECT_THAT(Lines(), ElementsAre(Error("mkdir error 3", kMake)));
    EXPECT_FALSE(files.Exists(L"C:\\Data"));
}

TEST_F(FileUtilsTest, MakeFolderInDeniedFolder_LogsTheLastErrorNotErrno) {
    files.AddFolder(L"C:\\Data");
    files.Give(L"C:\\Data", FileTrait::kDenied);
    EXPECT_EQ(FileUtils::MakeDirectory(L"C:\\Data\\plenx"), 27);
    EXPECT_THAT(Lines(), ElementsAre(Error("mkdir error 5", kMake)));
}

TEST_F(FileUtilsTest, MakeEmptyPath_Returns26WithoutACall) {
    EXPECT_EQ(FileUtils::MakeDirectory(L""), 26);
    EXPECT_THAT(Lines(), ElementsAre(Error("path is empty", kMake)));
    EXPECT_THAT(platform.Calls(), IsEmpty());
}

// RemoveDirectoryW

TEST_F(FileUtilsTest, RemoveEmptyFolder_RemovesItSilently) {
    files.AddFolder(L"C:\\Data\\plenx");
    EXPECT_EQ(FileUtils::RemoveDirectoryW(L"C:\\Data\\plenx"), 0);
    EXPECT_FALSE(files.Exists(L"C:\\Data\\plenx"));
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(platform.Calls(), ElementsAre("_wrmdir(\"C:\\Data\\plenx\")"));
}

TEST_F(FileUtilsTest, RemoveMissingFolder_IsASilentSuccess) {
    files.AddFolder(L"C:\\Data");
    EXPECT_EQ(FileUtils::RemoveDirectoryW(L"C:\\Data\\plenx"), 0);
    EXPECT_EQ(FileUtils::RemoveDirectoryW(L"C:\\Missing\\plenx"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(FileUtilsTest, RemoveFolderThatIsNotEmpty_LogsTheLastErrorAndReturns28) {
    files.AddFile(L"C:\\Data\\file");
    EXPECT_EQ(FileUtils::RemoveDirectoryW(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(), ElementsAre(Error("rmdir error 145", kRemove)));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\file"));
}

TEST_F(FileUtilsTest, RemoveFolderThatIsHeldOpen_Returns28) {
    files.AddFolder(L"C:\\Data");
    files.Give(L"C:\\Data", FileTrait::kHeldOpen);
    EXPECT_EQ(FileUtils::RemoveDirectoryW(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(), ElementsAre(Error("rmdir error 32", kRemove)));
}

TEST_F(FileUtilsTest, RemoveFile_IsRefusedWith28) {
    files.AddFile(L"C:\\Data");
    EXPECT_EQ(FileUtils::RemoveDirectoryW(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(), ElementsAre(Error("rmdir error 267", kRemove)));
}

TEST_F(FileUtilsTest, RemoveEmptyPath_Returns26WithoutACall) {
    EXPECT_EQ(FileUtils::RemoveDirectoryW(L""), 26);
    EXPECT_THAT(Lines(), ElementsAre(Error("path is empty", kRemove)));
    EXPECT_THAT(platform.Calls(), IsEmpty());
}

// FileExists

TEST_F(FileUtilsTest, FolderAndFileExist) {
    files.AddFile(L"C:\\Data\\file");
    EXPECT_EQ(FileUtils::FileExists(L"C:\\Data"), 0);
    EXPECT_EQ(FileUtils::FileExists(L"C:\\Data\\file"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(platform.Calls(),
                ElementsAre("_waccess(\"C:\\Data\", 0)", "_waccess(\"C:\\Data\\file\", 0)"));
}

TEST_F(FileUtilsTest, MissingPath_Returns30Silently) {
    EXPECT_EQ(FileUtils::FileExists(L"C:\\Data"), 30);
    EXPECT_EQ(FileUtils::FileExists(L"C:\\Data\\plenx\\pc"), 30);
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(FileUtilsTest, PathThatCannotBeAccessed_LogsErrnoAndReturns30) {
    files.AddFolder(L"C:\\Data");
    files.Give(L"C:\\Data", FileTrait::kDenied);
    EXPECT_EQ(FileUtils::FileExists(L"C:\\Data"), 30);
    EXPECT_THAT(Lines(), ElementsAre(Error("access error 13", kExists)));
}

TEST_F(FileUtilsTest, ExistenceOfEmptyPath_Returns26WithoutACall) {
    EXPECT_EQ(FileUtils::FileExists(L""), 26);
    EXPECT_THAT(Lines(), ElementsAre(Error("path is empty", kExists)));
    EXPECT_THAT(platform.Calls(), IsEmpty());
}

// ForceRemoveDirectory

TEST_F(FileUtilsTest, ForceRemoveEmptyPath_Returns26WithoutACall) {
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L""), 26);
    EXPECT_THAT(Lines(), ElementsAre(Error("path is empty", kForce)));
    EXPECT_THAT(platform.Calls(), IsEmpty());
}

TEST_F(FileUtilsTest, ForceRemoveMissingPath_Returns0WithoutListing) {
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(platform.Calls(), ElementsAre("_waccess(\"C:\\Data\", 0)"));
}

TEST_F(FileUtilsTest, ForceRemovePathThatCannotBeAccessed_Returns0AndLeavesIt) {
    files.AddFile(L"C:\\Data\\file");
    files.Give(L"C:\\Data", FileTrait::kDenied);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(Lines(), ElementsAre(Error("access error 13", kExists)));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\file"));
}

TEST_F(FileUtilsTest, ForceRemoveEmptyFolder_RemovesIt) {
    files.AddFolder(L"C:\\Data");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_FALSE(files.Exists(L"C:\\Data"));
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(FileUtilsTest, ForceRemoveTree_GoesDepthFirstAndLeavesNothing) {
    files.AddFile(L"C:\\Data\\a\\inner\\deep");
    files.AddFile(L"C:\\Data\\a\\zed");
    files.AddFile(L"C:\\Data\\b");
    files.AddFolder(L"C:\\Data\\c");
    files.AddFile(L"C:\\Other\\file");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(L"C:"), ElementsAre("C:\\Other\\", "C:\\Other\\file"));
    EXPECT_THAT(
        platform.CallsOf({"_wfindfirst64i32", "_wunlink", "_wrmdir", "_findclose"}),
        ElementsAre("_wfindfirst64i32(\"C:\\Data\\*.*\")", "_wfindfirst64i32(\"C:\\Data\\a\\*.*\")",
                    "_wfindfirst64i32(\"C:\\Data\\a\\inner\\*.*\")",
                    "_wunlink(\"C:\\Data\\a\\inner\\deep\")",
                    "_findclose(listing C:\\Data\\a\\inner)", "_wrmdir(\"C:\\Data\\a\\inner\")",
                    "_wunlink(\"C:\\Data\\a\\zed\")", "_findclose(listing C:\\Data\\a)",
                    "_wrmdir(\"C:\\Data\\a\")", "_wunlink(\"C:\\Data\\b\")",
                    "_wfindfirst64i32(\"C:\\Data\\c\\*.*\")", "_findclose(listing C:\\Data\\c)",
                    "_wrmdir(\"C:\\Data\\c\")", "_findclose(listing C:\\Data)",
                    "_wrmdir(\"C:\\Data\")"));
}

TEST_F(FileUtilsTest, ForceRemoveDeepTree_LeavesNothing) {
    std::wstring path = L"C:\\Data";
    for (int depth = 0; depth != 100; ++depth) {
        path += L"\\d";
    }
    files.AddFile(path + L"\\file");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(files.Tree(L"C:"), IsEmpty());
}

TEST_F(FileUtilsTest, ForceRemove_TakesNamesThatOnlyBeginWithDots) {
    files.AddFile(L"C:\\Data\\.hidden");
    files.AddFile(L"C:\\Data\\..data");
    files.AddFolder(L"C:\\Data\\...x");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(files.Tree(L"C:"), IsEmpty());
}

TEST_F(FileUtilsTest, ForceRemove_SkipsTheFirstEntryUnseenWhateverItIs) {
    files.AddFile(L"C:\\Data\\first");
    files.AddFile(L"C:\\Data\\second");
    files.Give(L"C:\\Data", FileTrait::kNoDots);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(files.Tree(L"C:\\Data"), ElementsAre("C:\\Data\\first"));
    EXPECT_THAT(Lines(), ElementsAre(Error("rmdir error 145", kRemove)));
}

TEST_F(FileUtilsTest, ForceRemoveFile_FailsToListAndReturns28) {
    files.AddFile(L"C:\\Data");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(), ElementsAre(Error("find first error 22", kForce)));
    EXPECT_TRUE(files.Exists(L"C:\\Data"));
}

TEST_F(FileUtilsTest, ForceRemoveStopsAtReadOnlyFile_AndKeepsWhatComesAfterIt) {
    files.AddFile(L"C:\\Data\\a");
    files.AddFile(L"C:\\Data\\b");
    files.AddFile(L"C:\\Data\\c");
    files.Give(L"C:\\Data\\b", FileTrait::kReadOnly);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(), ElementsAre(Error("unlink error 13", kForce)));
    EXPECT_THAT(files.Tree(L"C:\\Data"), ElementsAre("C:\\Data\\b", "C:\\Data\\c"));
    EXPECT_EQ(platform.Calls().back(), "_findclose(listing C:\\Data)");
}

TEST_F(FileUtilsTest, FailureDeepInATree_GivesOneLinePerLevel) {
    files.AddFile(L"C:\\Data\\a\\b\\file");
    files.Give(L"C:\\Data\\a\\b\\file", FileTrait::kHeldOpen);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(),
                ElementsAre(Error("unlink error 13", kForce), Error("rmdir error 13", kForce),
                            Error("rmdir error 13", kForce)));
    EXPECT_THAT(platform.CallsOf({"_findclose"}),
                ElementsAre("_findclose(listing C:\\Data\\a\\b)", "_findclose(listing C:\\Data\\a)",
                            "_findclose(listing C:\\Data)"));
}

TEST_F(FileUtilsTest, SubfolderThatCannotBeRemoved_LogsLastErrorThenErrno) {
    files.AddFolder(L"C:\\Data\\a");
    files.AddFile(L"C:\\Data\\b");
    files.Give(L"C:\\Data\\a", FileTrait::kHeldOpen);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(),
                ElementsAre(Error("rmdir error 32", kRemove), Error("rmdir error 13", kForce)));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\b"));
}

TEST_F(FileUtilsTest, SubfolderWithFurtherAttributes_IsStillEntered) {
    files.AddFile(L"C:\\Data\\a\\file");
    files.Give(L"C:\\Data\\a", FileTrait::kReadOnly);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(files.Tree(L"C:\\Data"), ElementsAre("C:\\Data\\a\\"));
    EXPECT_THAT(Lines(),
                ElementsAre(Error("rmdir error 5", kRemove), Error("rmdir error 13", kForce)));
}

TEST_F(FileUtilsTest, FolderThatCannotBeRemovedWhenEmpty_ReturnsTheCodeOfItsRemoval) {
    files.AddFile(L"C:\\Data\\a");
    files.Give(L"C:\\Data", FileTrait::kHeldOpen);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(), ElementsAre(Error("rmdir error 32", kRemove)));
    EXPECT_FALSE(files.Exists(L"C:\\Data\\a"));
}

TEST_F(FileUtilsTest, ErrorWhileListing_CountsAsTheEnd) {
    files.AddFile(L"C:\\Data\\a");
    files.AddFile(L"C:\\Data\\b");
    platform.Faults().FailCall("_wfindnext64i32", 3, ERROR_ACCESS_DENIED);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(files.Tree(L"C:\\Data"), ElementsAre("C:\\Data\\b"));
    EXPECT_THAT(Lines(), ElementsAre(Error("rmdir error 145", kRemove)));
}

// Links

TEST_F(FileUtilsTest, FolderLinkInATree_IsRemovedAndNotFollowed) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFolderLink(L"C:\\Data\\link", L"C:\\Target");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(L"C:"), ElementsAre("C:\\Target\\", "C:\\Target\\keep"));
    EXPECT_THAT(platform.CallsOf({"_wrmdir", "_wunlink"}),
                ElementsAre("_wrmdir(\"C:\\Data\\link\")", "_wrmdir(\"C:\\Data\")"));
}

TEST_F(FileUtilsTest, FileLinkInATree_IsRemovedAndItsTargetKept) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFileLink(L"C:\\Data\\link", L"C:\\Target\\keep");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(files.Tree(L"C:"), ElementsAre("C:\\Target\\", "C:\\Target\\keep"));
    EXPECT_THAT(platform.CallsOf({"_wunlink"}), ElementsAre("_wunlink(\"C:\\Data\\link\")"));
}

TEST_F(FileUtilsTest, PathThatIsALinkItself_IsRemovedAndNotFollowed) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFolderLink(L"C:\\Data", L"C:\\Target");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(L"C:"), ElementsAre("C:\\Target\\", "C:\\Target\\keep"));
}

// Only the link's own existence counts for the system.
TEST_F(FileUtilsTest, PathThatIsALinkToNothing_IsRemoved) {
    files.AddFolderLink(L"C:\\Data", L"C:\\Gone");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(platform.Calls(),
                ElementsAre("_waccess(\"C:\\Data\", 0)", "GetFileAttributesW(\"C:\\Data\")",
                            "_wrmdir(\"C:\\Data\")"));
    EXPECT_FALSE(files.Exists(L"C:\\Data"));
}

TEST_F(FileUtilsTest, PathThatIsAFileLinkItself_IsRemovedAndItsTargetKept) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFileLink(L"C:\\Data", L"C:\\Target\\keep");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 0);
    EXPECT_THAT(files.Tree(L"C:"), ElementsAre("C:\\Target\\", "C:\\Target\\keep"));
}

TEST_F(FileUtilsTest, FolderLinkThatCannotBeRemoved_StopsWith28) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFolderLink(L"C:\\Data\\link", L"C:\\Target");
    files.AddFile(L"C:\\Data\\zed");
    files.Give(L"C:\\Data\\link", FileTrait::kHeldOpen);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    ASSERT_THAT(Lines(), Not(IsEmpty()));
    EXPECT_EQ(Lines().back(), Error("rmdir error 13", kForce));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\zed"));
    EXPECT_TRUE(files.Exists(L"C:\\Target\\keep"));
}

TEST_F(FileUtilsTest, FileLinkThatCannotBeRemoved_StopsWith28) {
    files.AddFileLink(L"C:\\Data\\link", L"C:\\Target");
    files.Give(L"C:\\Data\\link", FileTrait::kHeldOpen);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"C:\\Data"), 28);
    EXPECT_THAT(Lines(), ElementsAre(Error("unlink error 13", kForce)));
}

// Roots

TEST_F(FileUtilsTest, DriveAndShareRoots_AreRefusedWith28BeforeAnyListing) {
    files.AddFile(L"C:\\a");
    files.AddFile(L"C:\\b");
    files.AddFile(L"\\\\server\\share\\a");
    files.AddFile(L"\\\\server\\share\\b");
    for (const wchar_t* drive :
         {L"\\\\?\\C:", L"\\\\.\\C:", L"\\\\?\\UNC\\server\\share", L"\\\\.\\UNC\\server\\share"}) {
        files.AddFile(std::wstring(drive) + L"\\b");
    }
    for (const wchar_t* root :
         {L"C:", L"C:\\", L"c:", L"C:/", L"\\\\server\\share", L"\\\\server\\share\\", L"\\", L"/",
          L"\\\\?\\C:\\", L"\\\\.\\C:", L"\\\\?\\UNC\\server\\share", L"//./unc/server/share/",
          L"\\\\?\\UNC\\server"}) {
        EXPECT_EQ(FileUtils::ForceRemoveDirectory(root), 28) << Narrow(root);
    }
    EXPECT_THAT(platform.CallsOf({"_wfindfirst64i32", "_wunlink", "_wrmdir"}), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_TRUE(files.Exists(L"C:\\b"));
    EXPECT_TRUE(files.Exists(L"\\\\server\\share\\b"));
}

// A data folder \\server makes each candidate of a working folder such a root.
TEST_F(FileUtilsTest, RootThatDoesNotExist_IsRemovedAlready) {
    for (const wchar_t* root : {L"X:", L"X:\\", L"\\\\server", L"\\\\server\\plenx"}) {
        EXPECT_EQ(FileUtils::ForceRemoveDirectory(root), 0) << Narrow(root);
    }
    EXPECT_THAT(platform.CallsWithout({"_waccess"}), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

// Only the second character of this path is a separator.
TEST_F(FileUtilsTest, RelativePathThatBeginsWithOneLetter_IsNotARoot) {
    platform.Files().AddFolder(L"a\\b");
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(L"a\\b"), 0);
    EXPECT_FALSE(platform.Files().Exists(L"a\\b"));
}

TEST_F(FileUtilsTest, FolderRightUnderARoot_IsRemoved) {
    for (const std::wstring root : {L"\\\\server\\share", L"\\\\?\\C:",
                                    L"\\\\?\\UNC\\server\\share", L"\\\\?\\UNX\\server"}) {
        files.AddFile(root + L"\\plenx\\a");
        EXPECT_EQ(FileUtils::ForceRemoveDirectory(root + L"\\plenx"), 0) << Narrow(root);
        EXPECT_THAT(files.Tree(root), IsEmpty()) << Narrow(root);
    }
}

// Every failure

TEST_F(FileUtilsTest, WithAnyCallFailing_CodesAreTheDocumentedOnesAndListingsAreClosed) {
    const auto nothing = [this] {
        files.AddFolder(L"C:\\Data");
        return 0;
    };
    const unsigned make = WithEveryCallFailing(
        nothing, [](int) { EXPECT_THAT(FileUtils::MakeDirectory(L"C:\\Data\\x"), AnyOf(0, 27)); });
    const unsigned remove = WithEveryCallFailing(
        nothing, [](int) { EXPECT_THAT(FileUtils::RemoveDirectoryW(L"C:\\Data"), AnyOf(0, 28)); });
    const unsigned exists = WithEveryCallFailing(
        nothing, [](int) { EXPECT_THAT(FileUtils::FileExists(L"C:\\Data"), AnyOf(0, 30)); });
    EXPECT_EQ(make, 1U);
    EXPECT_EQ(remove, 1U);
    EXPECT_EQ(exists, 1U);
}

TEST_F(FileUtilsTest, ForceRemoveWithAnyCallFailing_ClosesListingsAndSparesWhatIsOutside) {
    const auto tree = [this] {
        files.AddFile(L"C:\\Data\\a\\inner\\deep");
        files.AddFile(L"C:\\Data\\b");
        files.AddFile(L"C:\\Target\\keep");
        files.AddFolderLink(L"C:\\Data\\link", L"C:\\Target");
        return 0;
    };
    const unsigned calls = WithEveryCallFailing(tree, [this](int) {
        EXPECT_THAT(FileUtils::ForceRemoveDirectory(L"C:\\Data"), AnyOf(0, 28));
        EXPECT_TRUE(files.Exists(L"C:\\Target\\keep"));
    });
    EXPECT_GT(calls, 15U);
}

}  // namespace
