// Every platform call of every operation on folders fails once, and from there on. The tests
// compare the result and every line.

#include "file_fault_tables.h"
#include "service/file_utils.h"
#include "service_manager_test.h"

using DistributedFs::FileUtils;
using DistributedFs::ServiceManager;
using testing::ElementsAre;

namespace {

using namespace file_faults;

class FileFaultTable : public ServiceManagerTest {
protected:
    template <class Setting, class Operation>
    void Check(const FaultTable& table, Setting setting, Operation operation) {
        CheckFaults(
            table,
            [=] {
                setting();
                return 0;
            },
            [=](int) { return operation(); });
    }
    static std::int32_t ForceRemoveData() { return FileUtils::ForceRemoveDirectory(L"C:\\Data"); }
};

TEST_F(FileFaultTable, MakeDirectory) {
    Check(
        {{0, {}}, {Row{"_wmkdir", [](const Fault& fault) { return Outcome{27, Mkdir(fault)}; }}}},
        [=] { files.AddFolder(kData); }, [] { return FileUtils::MakeDirectory(L"C:\\Data\\x"); });
}

TEST_F(FileFaultTable, RemoveDirectory) {
    Check(
        {{0, {}}, {Row{"_wrmdir", NotRemoved}}}, [=] { files.AddFolder(kData); },
        [] { return FileUtils::RemoveDirectoryW(L"C:\\Data"); });
}

TEST_F(FileFaultTable, FileExists) {
    Check(
        {{0, {}}, {Row{"_waccess", [](const Fault& fault) { return Outcome{30, Access(fault)}; }}}},
        [=] { files.AddFolder(kData); }, [] { return FileUtils::FileExists(L"C:\\Data"); });
}

TEST_F(FileFaultTable, ForceRemoveOfAnEmptyFolder) {
    Check(RemoveEmpty(), [=] { files.AddFolder(kData); }, ForceRemoveData);
}

TEST_F(FileFaultTable, ForceRemoveOfATree) {
    Check(
        RemoveTree(),
        [=] {
            files.AddFile(L"C:\\Data\\a\\deep");
            files.AddFile(L"C:\\Data\\b");
        },
        ForceRemoveData);
}

TEST_F(FileFaultTable, ForceRemoveOfAWorkingFolder) {
    Check(
        RemoveWorkingFolder(),
        [=] {
            files.AddFolder(L"C:\\Data\\pc");
            files.AddFolder(L"C:\\Data\\phone");
        },
        ForceRemoveData);
}

// Whatever fails, the target of a link is never touched.

TEST_F(FileFaultTable, ForceRemoveOfATreeWithALink) {
    Check(
        RemoveFolderOf(UnlinkEntry(), RemoveLinkEntry()),
        [=] {
            files.AddFile(L"C:\\Data\\b");
            files.AddFile(L"C:\\Target\\keep");
            files.AddFolderLink(L"C:\\Data\\link", L"C:\\Target");
        },
        [=] {
            const std::int32_t code = ForceRemoveData();
            EXPECT_THAT(files.Tree(L"C:\\Target"), ElementsAre("C:\\Target\\keep"));
            return code;
        });
}

TEST_F(FileFaultTable, ForceRemoveOfALinkItself) {
    Check(
        RemoveLink(),
        [=] {
            files.AddFile(L"C:\\Target\\keep");
            files.AddFolderLink(kData, L"C:\\Target");
        },
        [=] {
            const std::int32_t code = ForceRemoveData();
            EXPECT_THAT(files.Tree(L"C:\\Target"), ElementsAre("C:\\Target\\keep"));
            return code;
        });
}

TEST_F(FileFaultTable, MakeServicePath) {
    Check(
        file_faults::MakeServicePath(), [=] { files.AddFolder(L"C:\\Data\\x"); },
        [] { return ServiceManager::MakeServicePath(L"C:\\Data\\x"); });
}

TEST_F(FileFaultTable, MakeSourcePath) {
    const auto make = [] {
        std::wstring out;
        return ServiceManager::MakeSourcePath(kData, out);
    };
    Check(MakeSourcePathAfresh(), [=] { files.AddFolder(kData); }, make);
    Check(MakeSourcePathOverOld(), [=] { files.AddFolder(L"C:\\Data\\plenx"); }, make);
}

}  // namespace
