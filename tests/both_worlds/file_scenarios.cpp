// Scenarios of the file functions, and of the product's functions that use them.

#include <direct.h>
#include <io.h>

#include <cerrno>
#include <set>

#include "both_worlds/stage.h"
#include "common/log.h"
#include "common/result_code.h"
#include "service/file_utils.h"
#include "service/service_manager.h"

namespace BothWorlds {
namespace {

using DistributedFs::FileUtils;
using DistributedFs::ServiceManager;

// An operation logs the errors of the system's calls after other lines.
TEST(LogLines, KeepTheErrorsOfTheCallBeforeThem) {
    SetLastError(1234);
    errno = ENOENT;
    DistributedFs::LogError("Function", std::string(10000, 'x'));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(GetLastError(), 1234U);
}

class Files : public Stage {};

TEST_F(Files, MakingFolders) {
    PutFile(At(L"f"));
    PutFolder(At(L"d"));
    EXPECT_EQ(_wmkdir(At(L"new").c_str()), 0);
    EXPECT_CRT_FAILS(_wmkdir(At(L"d").c_str()), 183, EEXIST);
    EXPECT_CRT_FAILS(_wmkdir(At(L"f").c_str()), 183, EEXIST);
    EXPECT_CRT_FAILS(_wmkdir(At(L"no\\x").c_str()), 3, ENOENT);
    EXPECT_CRT_FAILS(_wmkdir(At(L"f\\x").c_str()), 3, ENOENT);
    EXPECT_CRT_FAILS(_wmkdir(L""), 3, ENOENT);
    EXPECT_CRT_FAILS(_wmkdir(At(L"a?b").c_str()), 123, EINVAL);
}

TEST_F(Files, RemovingFolders) {
    PutFile(At(L"d\\x"));
    PutFile(At(L"f"));
    PutFolder(At(L"empty"));
    EXPECT_CRT_FAILS(_wrmdir(At(L"no").c_str()), 2, ENOENT);
    EXPECT_CRT_FAILS(_wrmdir(At(L"no\\no").c_str()), 3, ENOENT);
    EXPECT_CRT_FAILS(_wrmdir(At(L"f").c_str()), 267, EINVAL);
    EXPECT_CRT_FAILS(_wrmdir(At(L"d").c_str()), 145, kNotEmpty);
    EXPECT_EQ(_wrmdir(L""), -1);
    EXPECT_TRUE(Shows(PlenxTest::Habits::kFolderWithoutAName, errno));
    EXPECT_EQ(_wrmdir(At(L"EMPTY").c_str()), 0);
    EXPECT_CRT_FAILS(_waccess(At(L"empty").c_str(), 0), 2, ENOENT);
}

TEST_F(Files, RemovingFiles) {
    PutFolder(At(L"d"));
    PutFile(At(L"f"));
    PutFile(At(L"g"));
    PutFile(At(L"ro"));
    MakeReadOnly(At(L"ro"));
    PutFile(At(L"held"));
    Hold(At(L"held"));
    EXPECT_CRT_FAILS(_wunlink(At(L"no").c_str()), 2, ENOENT);
    EXPECT_CRT_FAILS(_wunlink(At(L"no\\no").c_str()), 3, ENOENT);
    EXPECT_CRT_FAILS(_wunlink(At(L"d").c_str()), 5, EACCES);
    EXPECT_CRT_FAILS(_wunlink(At(L"ro").c_str()), 5, EACCES);
    EXPECT_CRT_FAILS(_wunlink(At(L"held").c_str()), 32, EACCES);
    EXPECT_FAILS(DeleteFileW(At(L"no").c_str()), 2);
    EXPECT_FAILS(DeleteFileW(At(L"no\\no").c_str()), 3);
    EXPECT_FAILS(DeleteFileW(At(L"d").c_str()), 5);
    EXPECT_FAILS(DeleteFileW(At(L"ro").c_str()), 5);
    EXPECT_FAILS(DeleteFileW(At(L"held").c_str()), 32);
    EXPECT_EQ(_wunlink(At(L"F").c_str()), 0);
    EXPECT_TRUE(DeleteFileW(At(L"G").c_str()));
    Release();
    EXPECT_TRUE(DeleteFileW(At(L"held").c_str()));
}

TEST_F(Files, Looking) {
    constexpr DWORD kOthers = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_REPARSE_POINT;
    PutFolder(At(L"d"));
    PutFile(At(L"ro"));
    MakeReadOnly(At(L"ro"));
    EXPECT_EQ(GetFileAttributesW(At(L"ro").c_str()) & FILE_ATTRIBUTE_READONLY,
              DWORD{FILE_ATTRIBUTE_READONLY});
    EXPECT_EQ(GetFileAttributesW(At(L"d").c_str()) & (FILE_ATTRIBUTE_DIRECTORY | kOthers),
              DWORD{FILE_ATTRIBUTE_DIRECTORY});
    EXPECT_EQ(GetFileAttributesW(At(L"no").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), DWORD{2});
    EXPECT_EQ(GetFileAttributesW(At(L"no\\no").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), DWORD{3});
    EXPECT_EQ(_waccess(At(L"d\\").c_str(), 0), 0);
    EXPECT_EQ(_waccess(At(L"ro").c_str(), 0), 0);
    EXPECT_CRT_FAILS(_waccess(At(L"no").c_str(), 0), 2, ENOENT);
    EXPECT_CRT_FAILS(_waccess(At(L"no\\no").c_str(), 0), 3, ENOENT);
}

TEST_F(Files, Moving) {
    PutFile(At(L"f"), "f");
    PutFile(At(L"b"), "b");
    PutFile(At(L"d\\x"), "x");
    PutFile(At(L"held"));
    Hold(At(L"held"));
    const auto move = [this](const wchar_t* from, const wchar_t* to, DWORD flags) {
        return MoveFileExW(At(from).c_str(), At(to).c_str(), flags);
    };
    EXPECT_FAILS(move(L"no", L"new", MOVEFILE_COPY_ALLOWED), 2);
    EXPECT_FAILS(move(L"no\\no", L"new", MOVEFILE_COPY_ALLOWED), 3);
    EXPECT_FAILS(move(L"f", L"no\\new", MOVEFILE_COPY_ALLOWED), 3);
    EXPECT_FAILS(move(L"f", L"b", MOVEFILE_COPY_ALLOWED), 183);
    EXPECT_FAILS(move(L"f", L"d", MOVEFILE_COPY_ALLOWED), 183);
    EXPECT_FAILS(move(L"f", L"d", MOVEFILE_REPLACE_EXISTING), 5);
    EXPECT_FAILS(move(L"held", L"new", MOVEFILE_REPLACE_EXISTING), 32);
    EXPECT_TRUE(move(L"f", L"b", MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ(Content(At(L"b")), "f");
    EXPECT_TRUE(move(L"b", L"new", MOVEFILE_COPY_ALLOWED));
    EXPECT_TRUE(move(L"d", L"d2", 0));
    EXPECT_EQ(Content(At(L"d2\\x")), "x");
    EXPECT_CRT_FAILS(_waccess(At(L"b").c_str(), 0), 2, ENOENT);
}

TEST_F(Files, Listing) {
    for (const wchar_t* name : {L"p\\Zed", L"p\\alpha", L"p\\d\\deep"}) {
        PutFile(At(name));
    }
    _wfinddata64i32_t data{};
    const std::intptr_t listing = _wfindfirst64i32(At(L"p\\*.*").c_str(), &data);
    ASSERT_NE(listing, -1);
    EXPECT_EQ(data.name, std::wstring(L"."));
    std::set<std::wstring> names;
    while (_wfindnext64i32(listing, &data) == 0) {
        names.insert(data.name);
        EXPECT_EQ((data.attrib & _A_SUBDIR) != 0, data.name[0] == L'.' || data.name[0] == L'd');
    }
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_FILES});
    EXPECT_EQ(_findclose(listing), 0);
    EXPECT_EQ(names, (std::set<std::wstring>{L"..", L"Zed", L"alpha", L"d"}));
    EXPECT_EQ(_wfindfirst64i32(At(L"no\\*.*").c_str(), &data), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Files, RemovingATree) {
    PutFile(At(L"t\\a\\b\\c\\f"));
    PutFile(At(L"t\\g"));
    PutFolder(At(L"t\\empty"));
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(At(L"t")), 0);
    EXPECT_CRT_FAILS(_waccess(At(L"t").c_str(), 0), 2, ENOENT);
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(At(L"t")), 0) << "what is not there is removed";
}

TEST_F(Files, RemovingATreeWithAFileThatIsHeld) {
    PutFile(At(L"t\\a\\held"));
    Hold(At(L"t\\a\\held"));
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(At(L"t")), DistributedFs::kNotRemoved);
    EXPECT_EQ(_waccess(At(L"t\\a\\held").c_str(), 0), 0);
    Release();
    EXPECT_EQ(FileUtils::ForceRemoveDirectory(At(L"t")), 0);
}

TEST_F(Files, UpgradingTheDriver) {
    for (const wchar_t* name : {L"dokan1.sys", L"dokan1.dll", L"dokanfuse1.dll"}) {
        PutFile(At(name), "old");
    }
    PutFile(At(L"upgrade\\dokan1.sys"), "new");
    PutFile(At(L"upgrade\\dokanfuse1.dll"), "new");
    EXPECT_EQ(ServiceManager::UpgradeDriver(Folder()), 0);
    EXPECT_EQ(Content(At(L"dokan1.sys")), "new");
    EXPECT_EQ(Content(At(L"dokan1.dll")), "old");
    EXPECT_EQ(Content(At(L"dokanfuse1.dll")), "new");
    EXPECT_CRT_FAILS(_waccess(At(L"upgrade\\dokan1.sys").c_str(), 0), 2, ENOENT);
}

TEST_F(Files, UpgradingADriverThatIsHeld) {
    PutFile(At(L"dokan1.sys"), "old");
    PutFile(At(L"upgrade\\dokan1.sys"), "new");
    Hold(At(L"dokan1.sys"));
    EXPECT_EQ(ServiceManager::UpgradeDriver(Folder()), DistributedFs::kDriverNotReplaced);
    Release();
    EXPECT_EQ(Content(At(L"dokan1.sys")), "old");
    EXPECT_EQ(Content(At(L"upgrade\\dokan1.sys")), "new");
}

}  // namespace
}  // namespace BothWorlds
