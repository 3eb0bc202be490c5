// Tests plenxkit message as its users start it: the texts of the command line, its exit codes, its
// files, and the log of a service that has run.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "devservice/service_client.h"
#include "devservice/service_under_test.h"
#include "support/child_process.h"
#include "support/install_folder.h"
#include "support/test_folder.h"
#include "wire/catalog.h"

namespace PlenxTest {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

struct Told {
    int exitCode;
    std::string output;
    std::string errors;
};

// A folder whose name exists in no code page.
class MessageCommand : public testing::Test {
protected:
    MessageCommand() { std::filesystem::create_directories(folder_); }
    ~MessageCommand() override { RemoveFolder(folder_); }

    Told Run(const std::wstring& arguments) const {
        const std::wstring output = folder_ / L"output.txt";
        const std::wstring errors = folder_ / L"errors.txt";
        ChildProcess shell(L"cmd.exe /s /c \"\"" + ProgramFolder() + L"\\plenxkit.exe\" message " +
                           arguments + L" <nul >\"" + output + L"\" 2>\"" + errors + L"\"\"");
        const auto code = shell.WaitForExit(60000);
        return {code ? static_cast<int>(*code) : -1, ReadFile(output), ReadFile(errors)};
    }

    const std::filesystem::path folder_ = TestFolder() / L"plenxkit \u00fc\u20ac\u65e5";
};

TEST_F(MessageCommand, TextsOfTheCommandLine_AreUtf8InTheMessage) {
    const Told told = Run(L"encode DiskNameNotify \"diskName=\u00fc \u20ac \U0001f600\"");
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_EQ(told.errors, "");
    EXPECT_THAT(told.output, HasSubstr("c3 bc 20 e2 82 ac 20 f0 9f 98 80 00"));
}

TEST_F(MessageCommand, FilesOfAnyName_AreWrittenAndRead) {
    const std::wstring file = L"\"" + (folder_ / L"message \u00e9.bin").wstring() + L"\"";
    EXPECT_EQ(Run(L"encode PingService number=7 --binary --output " + file).exitCode, 0);
    EXPECT_EQ(std::filesystem::file_size(folder_ / L"message \u00e9.bin"), 28u);
    const Told told = Run(L"decode --as PingService --file " + file);
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_THAT(told.output, AllOf(StartsWith("PingService(19): request"), HasSubstr("\ngood")));
}

TEST_F(MessageCommand, BrokenMessage_EndsWith1) {
    const Told told =
        Run(L"decode --as DiskNameNotify 16000000 01000000 04000000 14000000 02000000 503a");
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_EQ(told.errors, "");
    EXPECT_THAT(told.output, HasSubstr("NUL"));
}

TEST_F(MessageCommand, WrongUsage_EndsWith2AndSaysWhatIsWrong) {
    const Told told = Run(L"encode Nonsense");
    EXPECT_EQ(told.exitCode, 2);
    EXPECT_EQ(told.output, "");
    EXPECT_THAT(told.errors, HasSubstr("Nonsense"));
}

TEST_F(MessageCommand, LogOfAServiceThatHasRun_IsDecoded) {
    ServiceUnderTest service(2);
    ASSERT_TRUE(service.StartAndRun());
    CallService(L"PLENXPhoneService", PlenxWire::kSetInt64Config,
                {std::int32_t{1}, std::int64_t{5}});
    const std::wstring log = (service.DataFolder() / L"service.log").wstring();
    const Told told = Run(L"log \"" + log + L"\"");
    EXPECT_EQ(told.exitCode, 0) << told.errors;
    EXPECT_THAT(told.output, HasSubstr("SetInt64Config"));
}

}  // namespace
}  // namespace PlenxTest
