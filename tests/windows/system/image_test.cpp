// Tests the headers of plenxsdk.dll: its exports, its imports and its description of itself.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace PlenxTest {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::UnorderedElementsAre;

/// The library as this process has loaded it.
class Image {
public:
    Image() : base_(reinterpret_cast<const char*>(GetModuleHandleW(L"plenxsdk.dll"))) {}

    std::vector<std::string> Exports() const {
        const auto& table = Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
        const auto* const names = At<DWORD>(table.AddressOfNames);
        EXPECT_EQ(table.NumberOfFunctions, table.NumberOfNames) << "exports without a name";
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

// The names of the operations as the compiler writes them; S is std::string.
std::string Operation(const std::string& name, const std::string& arguments) {
    return "_ZN13DistributedFs12PLENXManager" + std::to_string(name.size()) + name + "E" +
           arguments;
}

TEST(Image, Exports_AreThe18OperationsAndNothingElse) {
    const std::string s = "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";
    const std::string type = "NS_11ServiceTypeE";
    const std::string config = "NS_10ConfigTypeE";
    const std::string observer = "PNS_20PLENXServiceObserverE";
    EXPECT_THAT(
        Image().Exports(),
        UnorderedElementsAre(
            Operation("GetInstance", "v"), Operation("Init", "RK" + s + "S8_S6_b"),
            Operation("Destroy", "v"), Operation("GetInt64Config", type + config),
            "_ZN13DistributedFs12PLENXManager15GetStringConfigB5cxx11E" + type + config,
            Operation("SetConfig", type + config + s), Operation("SetConfig", type + config + "x"),
            Operation("Start", type + "RK" + s + "S9_"), Operation("Stop", type + "RK" + s),
            Operation("LocalDeviceOnline", type + "RK" + s + "S9_yPKh"),
            Operation("RemoteDeviceOnline", type + "RK" + s + "S9_"),
            Operation("LocalDeviceOffline", type + "RK" + s + "S9_NS_11TriggerTypeE"),
            Operation("RemoteDeviceOffline", type + "RK" + s + "S9_NS_11TriggerTypeE"),
            Operation("DeviceNameChanged", "RK" + s),
            Operation("RecvRemoteMessage", "NS_16PLENXMessageTypeEjRK" + s),
            Operation("GetOfficeDir", "RK" + s + "S8_RS6_"),
            Operation("RegisterPLENXServiceObserver", observer),
            Operation("UnregisterPLENXServiceObserver", observer)));
}

TEST(Image, Imports_AreTheSystemTheCompanionsAndTheRunTime) {
    const auto imports = Image().Imports();
    EXPECT_THAT(imports,
                Each(AnyOf("KERNEL32.dll", "ADVAPI32.dll", "RPCRT4.dll", "ntdll.dll", "msvcrt.dll",
                           "LogHelper.dll", "distributedfile.dll", "libstdc++-6.dll",
                           "libgcc_s_seh-1.dll", "libwinpthread-1.dll")));
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
