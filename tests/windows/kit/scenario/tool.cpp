#include "kit/scenario/tool.h"

#include <algorithm>

#include "support/child_process.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kPatience = 120000;
constexpr DWORD kNotStarted = 9009;  // from the shell
constexpr int kMostStarts = 3;

std::string WithoutReturns(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

}  // namespace

Tool::Tool() {
    RemoveFolder(folder_);
    fs::create_directories(folder_);
}

Tool::~Tool() {
    RemoveFolder(folder_);
}

Tool::Outcome Tool::Run(const std::wstring& program, const std::wstring& arguments) const {
    const fs::path output = folder_ / "output.txt";
    Outcome outcome;
    // Under Wine, the shell's new process too is lost now and then before it has begun.
    int starts = 0;
    do {
        ChildProcess shell(L"cmd /s /c \"\"" + ProgramFolder() + L"\\" + program + L".exe\" " +
                           arguments + L" > " + output.wstring() + L" 2>&1\"");
        outcome.code = shell.WaitForExit(kPatience);
    } while (outcome.code == kNotStarted && ++starts < kMostStarts);
    outcome.output = WithoutReturns(ReadFile(output));
    return outcome;
}

Tool::Outcome Tool::RunScenario(const std::wstring& arguments) const {
    return Run(L"plenxkit",
               L"scenario run --work " + (folder_ / "work").wstring() + L" " + arguments);
}

fs::path Tool::Write(const std::string& name, const std::string& content) const {
    WriteFile(folder_ / name, content);
    return folder_ / name;
}

std::string Tool::Read(const std::string& name) const {
    return WithoutReturns(ReadFile(folder_ / name));
}

}  // namespace PlenxTest
