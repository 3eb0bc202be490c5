// Tests choosing the working folder and making the folders of the services in it.

#include "service_manager_test.h"

using DistributedFs::ServiceManager;
using testing::AnyOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string kSource = "ServiceManager::MakeSourcePath";
const std::string kServicePath = "ServiceManager::MakeServicePath";

using MakeSourcePathTest = ServiceManagerTest;
using MakeServicePathTest = ServiceManagerTest;

// MakeSourcePath

TEST_F(MakeSourcePathTest, FreshFolder_IsTakenWithItsSubfolders) {
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 0);
    EXPECT_EQ(out, L"C:\\Data\\plenx");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_THAT(files.Tree(kData), ElementsAre("C:\\Data\\plenx\\", "C:\\Data\\plenx\\pc\\",
                                               "C:\\Data\\plenx\\phone\\"));
}

TEST_F(MakeSourcePathTest, BlockedFolder_FallsBackToTheNextFreeNumber) {
    Block(L"C:\\Data\\plenx");
    Block(L"C:\\Data\\plenx0");
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 0);
    EXPECT_EQ(out, L"C:\\Data\\plenx1");
    const std::string unlink = Error("unlink error 13", "FileUtils::ForceRemoveDirectory");
    EXPECT_THAT(Lines(), ElementsAre(unlink, unlink));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\plenx1\\phone"));
}

TEST_F(MakeSourcePathTest, EveryFolderBlocked_Returns31WithTheLastCandidate) {
    BlockAllCandidates();
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 31);
    EXPECT_EQ(out, L"C:\\Data\\plenx99");
    EXPECT_THAT(platform.CallsOf({"_wmkdir"}), IsEmpty());
    EXPECT_THAT(Lines(), SizeIs(101));
}

TEST_F(MakeSourcePathTest, LastCandidateFree_IsTaken) {
    BlockAllCandidates();
    files.Take(L"C:\\Data\\plenx99\\held", FileTrait::kHeldOpen);
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 0);
    EXPECT_EQ(out, L"C:\\Data\\plenx99");
    EXPECT_FALSE(files.Exists(L"C:\\Data\\plenx99\\held"));
}

TEST_F(MakeSourcePathTest, Candidates_AreTriedInOrderWithoutLeadingZeros) {
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(L"C:\\Missing", out), 31);
    std::vector<std::string> expected = {"_wmkdir(\"C:\\Missing\\plenx\")"};
    for (int n = 0; n != 100; ++n) {
        expected.push_back("_wmkdir(\"C:\\Missing\\plenx" + std::to_string(n) + "\")");
    }
    EXPECT_THAT(platform.CallsOf({"_wmkdir"}), ElementsAreArray(expected));
    const Texts lines(101, Error("mkdir error 3", "FileUtils::MakeDirectory"));
    EXPECT_EQ(Lines(), lines);
}

TEST_F(MakeSourcePathTest, FileUnderTheName_FailsTheCandidateAndStays) {
    files.AddFile(L"C:\\Data\\plenx");
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 0);
    EXPECT_EQ(out, L"C:\\Data\\plenx0");
    EXPECT_THAT(Lines(),
                ElementsAre(Error("find first error 22", "FileUtils::ForceRemoveDirectory")));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\plenx"));
}

TEST_F(MakeSourcePathTest, LinkUnderTheName_IsReplacedAndItsTargetSpared) {
    files.AddFile(L"C:\\Target\\keep");
    files.AddFolderLink(L"C:\\Data\\plenx", L"C:\\Target");
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 0);
    EXPECT_EQ(out, L"C:\\Data\\plenx");
    EXPECT_THAT(files.Tree(L"C:\\Target"), ElementsAre("C:\\Target\\keep"));
}

TEST_F(MakeSourcePathTest, SubfolderThatCannotBeMade_RemovesTheCandidateAgain) {
    platform.Faults().FailCall("_wmkdir", 3, ERROR_ACCESS_DENIED);  // its "\phone"
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 0);
    EXPECT_EQ(out, L"C:\\Data\\plenx0");
    EXPECT_FALSE(files.Exists(L"C:\\Data\\plenx"));
    EXPECT_THAT(Lines(), ElementsAre(Error("mkdir error 5", "FileUtils::MakeDirectory")));
}

TEST_F(MakeSourcePathTest, CandidateThatCanNeitherBeFinishedNorRemoved_IsLogged) {
    platform.Faults().FailCall("_wmkdir", 2, ERROR_ACCESS_DENIED);  // its "\pc"
    platform.Faults().FailCall("_wrmdir", 1, ERROR_SHARING_VIOLATION);
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 0);
    EXPECT_EQ(out, L"C:\\Data\\plenx0");
    EXPECT_THAT(Lines(),
                ElementsAre(Error("mkdir error 5", "FileUtils::MakeDirectory"),
                            Error("rmdir error 32", "FileUtils::RemoveDirectoryW"),
                            Error("mkdir src directory error and force remove src directory error",
                                  kSource)));
}

TEST_F(MakeSourcePathTest, CandidateThatCannotBeAccessed_Fails) {
    files.AddFile(L"C:\\Data\\plenx\\keep");
    files.Give(L"C:\\Data\\plenx", FileTrait::kDenied);
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(kData, out), 0);
    EXPECT_EQ(out, L"C:\\Data\\plenx0");
    const std::string access = Error("access error 13", "FileUtils::FileExists");
    EXPECT_THAT(Lines(),
                ElementsAre(access, access, Error("src directory not exit", kServicePath), access));
    EXPECT_TRUE(files.Exists(L"C:\\Data\\plenx\\keep"));
}

TEST_F(MakeSourcePathTest, EmptyDataFolder_Returns31WithoutACall) {
    files.AddFile(L"C:\\plenx\\precious");
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(L"", out), 31);
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

// The system takes the NUL as the end of the path, so each candidate would be the data folder
// itself.
TEST_F(MakeSourcePathTest, DataFolderWithANul_Returns31WithoutACall) {
    std::wstring out;
    EXPECT_EQ(ServiceManager::MakeSourcePath(std::wstring(L"C:\\Data\0", 8), out), 31);
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(MakeSourcePathTest, WithAnyCallFailing_ReturnsADocumentedCode) {
    const auto prepare = [this] {
        files.AddFile(L"C:\\Data\\plenx\\pc\\left");
        return 0;
    };
    const unsigned calls = WithEveryCallFailing(prepare, [](int) {
        std::wstring out;
        EXPECT_THAT(ServiceManager::MakeSourcePath(kData, out), AnyOf(0, 31));
    });
    EXPECT_GT(calls, 10U);
}

// MakeServicePath

TEST_F(MakeServicePathTest, ServicePath_MakesPcThenPhoneAndNoOffice) {
    files.AddFolder(L"C:\\Data\\x");
    EXPECT_EQ(ServiceManager::MakeServicePath(L"C:\\Data\\x"), 0);
    EXPECT_THAT(platform.CallsOf({"_wmkdir"}),
                ElementsAre("_wmkdir(\"C:\\Data\\x\\pc\")", "_wmkdir(\"C:\\Data\\x\\phone\")"));
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(MakeServicePathTest, ServicePathWithSubfoldersThere_IsASuccess) {
    files.AddFolder(L"C:\\Data\\x\\pc");
    files.AddFolder(L"C:\\Data\\x\\phone");
    EXPECT_EQ(ServiceManager::MakeServicePath(L"C:\\Data\\x"), 0);
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(MakeServicePathTest, ServicePathOfAMissingFolder_Returns32) {
    EXPECT_EQ(ServiceManager::MakeServicePath(L"C:\\Data\\x"), 32);
    EXPECT_THAT(Lines(), ElementsAre(Error("src directory not exit", kServicePath)));
    EXPECT_THAT(platform.CallsOf({"_wmkdir"}), IsEmpty());
}

TEST_F(MakeServicePathTest, ServicePathWithPcRefused_Returns32WithoutTryingPhone) {
    files.AddFolder(L"C:\\Data\\x");
    platform.Faults().FailCall("_wmkdir", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(ServiceManager::MakeServicePath(L"C:\\Data\\x"), 32);
    EXPECT_THAT(platform.CallsOf({"_wmkdir"}), ElementsAre("_wmkdir(\"C:\\Data\\x\\pc\")"));
}

TEST_F(MakeServicePathTest, ServicePathWithPhoneRefused_Returns32) {
    files.AddFolder(L"C:\\Data\\x");
    platform.Faults().FailCall("_wmkdir", 2, ERROR_ACCESS_DENIED);
    EXPECT_EQ(ServiceManager::MakeServicePath(L"C:\\Data\\x"), 32);
}

TEST_F(MakeServicePathTest, ServicePathOfAnEmptyFolderName_Returns32) {
    EXPECT_EQ(ServiceManager::MakeServicePath(L""), 32);
    EXPECT_THAT(Lines(), ElementsAre(Error("path is empty", "FileUtils::FileExists"),
                                     Error("src directory not exit", kServicePath)));
}

}  // namespace
