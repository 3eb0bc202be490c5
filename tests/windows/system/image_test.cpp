// Tests the headers of plenxsdk.dll: its exports, its imports and its description of itself.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

#include "support/exported_names.h"
#include "support/known_dlls.h"

namespace PlenxTest {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::Truly;
using testing::UnorderedElementsAre;

/// The library as this process has loaded it.
class Image {
public:
    Image() : base_(reinterpret_cast<const char*>(GetModuleHandleW(L"plenxsdk.dll"))) {}

    std::vector<std::string> Exports() const {
        const auto& table = Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
        const auto* const names = At<DWORD>(table.AddressOfNames);
        EXPECT_EQ(table.NumberOfFunctions, table.NumberOfNames) << "some exports have no name";
        std::vector<std::string> exports;
        for (DWORD i = 0; i != table.NumberOfNames; ++i) {
            exports.push_back(At<char>(names[i]));
        }
        return exports;
    }

    std::vector<std::string> Imports() const {
        const auto* entry = &Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
        std::vector<std::string> imports;
        for (; entry->Name != 0; ++entry) {
            imports.push_back(At<char>(entry->Name));
        }
        return imports;
    }

private:
    template <class T>
    const T* At(DWORD offset) const {
        return reinterpret_cast<const T*>(base_ + offset);
    }
    template <class T>
    const T& Directory(int index) const {
        const auto& dos = *At<IMAGE_DOS_HEADER>(0);
        const auto& headers = *At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(dos.e_lfanew));
        return *At<T>(headers.OptionalHeader.DataDirectory[index].VirtualAddress);
    }

    const char* base_;
};

TEST(Image, Exports_AreThe18OperationsAndNothingElse) {
    using namespace ExportedNames;
    EXPECT_THAT(
        Image().Exports(),
        UnorderedElementsAre(kGetInstance, kInit, kDestroy, kGetInt64Config, kGetStringConfig,
                             kSetStringConfig, kSetInt64Config, kStart, kStop, kLocalDeviceOnline,
                             kRemoteDeviceOnline, kLocalDeviceOffline, kRemoteDeviceOffline,
                             kDeviceNameChanged, kRecvRemoteMessage, kGetOfficeDir,
                             kRegisterObserver, kUnregisterObserver));
}

TEST(Image, Imports_AreTheSystemTheCompanionsAndTheRunTime) {
    const auto imports = Image().Imports();
    EXPECT_THAT(imports, Each(AnyOf(Truly(IsSystemDll), Truly(IsRunTimeDll), "LogHelper.dll",
                                    "distributedfile.dll")));
    EXPECT_THAT(imports, Contains("LogHelper.dll"));
    EXPECT_THAT(imports, Contains("distributedfile.dll"));
}

TEST(Image, VersionResource_NamesTheFile) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(L"plenxsdk.dll", &ignored);
    ASSERT_NE(size, 0u);
    std::vector<char> block(size);
    ASSERT_TRUE(GetFileVersionInfoW(L"plenxsdk.dll", 0, size, block.data()));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
    EXPECT_EQ(fixed->dwFileType, DWORD{VFT_DLL});
    EXPECT_NE(fixed->dwFileVersionMS, 0u);
}

}  // namespace
}  // namespace PlenxTest
