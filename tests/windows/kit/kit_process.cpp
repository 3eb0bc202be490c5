#include "kit/kit_process.h"

#include "support/child_process.h"
#include "support/install_folder.h"
#include "support/start_process.h"
#include "support/wait.h"
#include "support/wide_text.h"

namespace PlenxTest {
namespace {

constexpr DWORD kLongest = 60000;

std::wstring NextFile() {
    static int number = 0;
    return L"C:\\plenxkit" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(++number) + L".txt";
}

SECURITY_ATTRIBUTES Inherited() {
    SECURITY_ATTRIBUTES attributes{};
    attributes.nLength = sizeof(attributes);
    attributes.bInheritHandle = TRUE;
    return attributes;
}

HANDLE OutputTo(const std::wstring& file) {
    SECURITY_ATTRIBUTES inherited = Inherited();
    return CreateFileW(file.c_str(), FILE_APPEND_DATA,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                       CREATE_ALWAYS, 0, nullptr);
}

}  // namespace

KitProcess::KitProcess(const std::string& arguments)
    : outputFile_(NextFile()), errorFile_(NextFile()) {
    SECURITY_ATTRIBUTES inherited = Inherited();
    HANDLE childInput = nullptr;
    CreatePipe(&childInput, &input_, &inherited, 0);
    SetHandleInformation(input_, HANDLE_FLAG_INHERIT, 0);
    const HANDLE output = OutputTo(outputFile_);
    const HANDLE errors = OutputTo(errorFile_);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = childInput;
    startup.hStdOutput = output;
    startup.hStdError = errors;
    PROCESS_INFORMATION process{};
    std::wstring command =
        L"\"" + ProgramFolder() + L"\\plenxkit.exe\" " + PlenxSupport::ToWide(arguments);
    if (PlenxSupport::StartProcess(command, true, 0, startup, process)) {
        CloseHandle(process.hThread);
        process_ = process.hProcess;
    }
    CloseHandle(childInput);
    CloseHandle(output);
    CloseHandle(errors);
}

KitProcess::~KitProcess() {
    CloseInput();
    Kill();
    CloseHandle(process_);
    DeleteFileW(outputFile_.c_str());
    DeleteFileW(errorFile_.c_str());
}

void KitProcess::Send(const std::string& line) {
    const std::string text = line + "\n";
    DWORD written = 0;
    ::WriteFile(input_, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

void KitProcess::CloseInput() {
    if (input_ != nullptr) {
        CloseHandle(input_);
        input_ = nullptr;
    }
}

bool KitProcess::Prints(const std::string& text) const {
    return WaitFor([&] { return Output().find(text) != std::string::npos; }, kLongest);
}

int KitProcess::Wait(DWORD longest) {
    CloseInput();
    DWORD code = 0;
    if (WaitForSingleObject(process_, longest) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process_, &code)) {
        return -1;
    }
    return static_cast<int>(code);
}

std::string KitProcess::Output() const {
    return Printed() + ReadFile(errorFile_);
}

std::string KitProcess::Printed() const {
    return ReadFile(outputFile_);
}

void KitProcess::Kill() {
    if (WaitForSingleObject(process_, 0) == WAIT_TIMEOUT) {
        TerminateProcess(process_, 0xDEAD);
        WaitForSingleObject(process_, kLongest);
    }
}

Finished RunKit(const std::string& arguments) {
    KitProcess process(arguments);
    const int exitCode = process.Wait();
    return {exitCode, process.Output()};
}

}  // namespace PlenxTest
