// Tests that the shipped binaries are hardened against an attacker.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>

#include "hardening/image_file.h"
#include "hardening/victim.h"
#include "support/child_process.h"
#include "support/known_dlls.h"

namespace PlenxTest {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::Not;
using testing::StrCaseEq;
using testing::Truly;

// The least number of guarded functions is half of the present number. Without the guard there are
// none at all.
struct Shipped {
    const char* file;
    int guarded;
};

std::ostream& operator<<(std::ostream& out, const Shipped& shipped) {
    return out << shipped.file;
}

constexpr Shipped kShipped[] = {
    {"plenxsdk.dll", 100},       {"plenxsdk_c.dll", 15},   {"LogHelper.dll", 100},
    {"distributedfile.dll", 15}, {"plenxservice.exe", 35}, {"plenxkit.exe", 150},
};

class Hardening : public testing::TestWithParam<Shipped> {
protected:
    void SetUp() override { ASSERT_TRUE(image.IsRead()); }

    WORD Traits() const { return image.Headers().OptionalHeader.DllCharacteristics; }

    const ImageFile image{GetParam().file};
};

INSTANTIATE_TEST_SUITE_P(, Hardening, testing::ValuesIn(kShipped));

TEST_P(Hardening, Image_IsLaidOutAtRandomInTheWholeAddressSpace) {
    constexpr ULONGLONG k4Gib = 0x100000000;
    EXPECT_NE(Traits() & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE, 0);
    EXPECT_NE(Traits() & IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA, 0);
    EXPECT_EQ(image.Headers().FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED, 0);
    EXPECT_TRUE(image.HasRelocations());
    EXPECT_GE(image.Headers().OptionalHeader.ImageBase, k4Gib);
}

TEST_P(Hardening, Data_IsNeverCode) {
    EXPECT_NE(Traits() & IMAGE_DLLCHARACTERISTICS_NX_COMPAT, 0);
    constexpr DWORD kBoth = IMAGE_SCN_MEM_EXECUTE | IMAGE_SCN_MEM_WRITE;
    for (const IMAGE_SECTION_HEADER& section : image.Sections()) {
        EXPECT_NE(section.Characteristics & kBoth, kBoth)
            << std::string(reinterpret_cast<const char*>(section.Name), 8);
    }
}

#ifdef _MSC_VER
TEST_P(Hardening, Functions_GuardTheirFramesAndTheirIndirectCalls) {
    constexpr DWORD kInstrumented = 0x100;
    EXPECT_NE(image.LoadConfig().SecurityCookie, 0u);
    EXPECT_NE(image.LoadConfig().GuardFlags & kInstrumented, 0u);
}
#else
TEST_P(Hardening, Functions_GuardTheirFrames) {
    EXPECT_GE(image.CallsOf("__stack_chk_fail").value_or(0), GetParam().guarded);
}
#endif

TEST_P(Hardening, Imports_AreTheSystemOurOwnAndTheRunTime) {
    EXPECT_THAT(image.Imports(), Each(AnyOf(Truly(IsSystemDll), Truly(IsRunTimeDll), "plenxsdk.dll",
                                            "LogHelper.dll", "distributedfile.dll")));
}

// The shell takes longer to load than all other DLLs together.
TEST(LibraryImage, LeavesTheShellUntilItIsNeeded) {
    const ImageFile image("plenxsdk.dll");
    ASSERT_TRUE(image.IsRead());
    EXPECT_THAT(image.Imports(), Not(Contains(StrCaseEq("shell32.dll"))));
}

#ifndef _MSC_VER  // whose run time is installed for the whole system
TEST(ServiceImage, ContainsItsOwnRunTime) {
    const ImageFile image("plenxservice.exe");
    ASSERT_TRUE(image.IsRead());
    EXPECT_THAT(image.Imports(), Each(Truly(IsSystemDll)));
}
#endif

constexpr DWORD kStackBufferOverrun = 0xC0000409;

DWORD ExitCodeOf(const wchar_t* mode) {
    ChildProcess child(ChildProcess::Self(mode));
    return child.WaitForExit(60000).value_or(0xDEAD);
}

TEST(Guard, OverwrittenFrame_EndsTheProcessAtOnce) {
    EXPECT_EQ(ExitCodeOf(L"--overwrite-frame"), kStackBufferOverrun);
}

#ifndef _MSC_VER  // which does not check copies
TEST(Guard, CopyBeyondABuffer_EndsTheProcessAtOnce) {
    EXPECT_EQ(ExitCodeOf(L"--copy-too-much"), kStackBufferOverrun);
}
#endif

TEST(Guard, NothingOverwritten_GoesOn) {
    EXPECT_EQ(ExitCodeOf(L"--copy-what-fits"), DWORD{0});
}

}  // namespace
}  // namespace PlenxTest

int main(int argc, char** argv) {
    if (argc == 2 && std::strncmp(argv[1], "--gtest", 7) != 0) {
        SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);  // nobody answers a window
        return PlenxTest::RunVictim(argv[1]);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
