// plenxservice.exe: the development stand-in for the three services.

#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <string>
#include <vector>

#include "command_line.h"
#include "dev_service.h"
#include "scenario_player.h"
#include "scenario_reader.h"
#include "support/file.h"
#include "support/wide_text.h"
#include "windows_service.h"

namespace {

constexpr int kUsageError = 2;

PlenxService::DevService* onConsole = nullptr;

std::vector<std::wstring> Arguments() {
    int count = 0;
    wchar_t** const all = CommandLineToArgvW(GetCommandLineW(), &count);
    const std::vector<std::wstring> arguments(all ? all + 1 : nullptr, all ? all + count : nullptr);
    LocalFree(static_cast<void*>(all));
    return arguments;
}

std::wstring ProgramFolder() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L'\\'));
}

int UsageError(const std::string& error) {
    std::fprintf(stderr, "plenxservice: %s\n\n%s", error.c_str(), PlenxService::kUsage);
    return kUsageError;
}

BOOL WINAPI OnConsoleEvent(DWORD) {
    onConsole->RequestStop();
    return TRUE;
}

DWORD WINAPI StopLater(void* seconds) {
    Sleep(*static_cast<const unsigned*>(seconds) * 1000);
    onConsole->StopNow();
    return 0;
}

int RunOnConsole(const PlenxService::Identity& identity, const PlenxService::CommandLine& line) {
    SetConsoleOutputCP(CP_UTF8);
    // This lives until the process ends, because late requests may still come in.
    auto& status = *new PlenxService::ServiceStatus;
    onConsole = new PlenxService::DevService(identity, status, true, line.scenario);
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
    PlenxSupport::Handle timer;
    if (line.seconds) {
        timer = PlenxSupport::Handle(
            CreateThread(nullptr, 0, StopLater, const_cast<unsigned*>(&*line.seconds), 0, nullptr));
    }
    return onConsole->Run();
}

int CheckFile(const std::wstring& path) {
    SetConsoleOutputCP(CP_UTF8);
    const std::string name = PlenxSupport::ToUtf8(path);
    const auto text = PlenxSupport::ReadWholeFile(path);
    if (!text) {
        std::fprintf(stderr, "plenxservice: cannot read %s\n", name.c_str());
        return kUsageError;
    }
    const bool isControlFile =
        path.substr(path.find_last_of(L"\\/") + 1) == PlenxService::kControlFileName;
    const PlenxService::ReadScenario read =
        PlenxService::ReadScenarioText(*text, isControlFile ? PlenxService::FileKind::kControl
                                                            : PlenxService::FileKind::kScenario);
    for (const PlenxService::Mistake& mistake : read.mistakes) {
        std::fprintf(stderr, "%s\n", PlenxService::Located(name, mistake).c_str());
    }
    if (!read.mistakes.empty()) {
        return kUsageError;
    }
    std::printf("%s: no mistakes\n", name.c_str());
    return 0;
}

int RunUnderManager() {
    const unsigned long error = PlenxService::RunAsService();
    if (error == ERROR_FAILED_SERVICE_CONTROLLER_CONNECT) {
        return UsageError("not started by the Service Control Manager");
    }
    return static_cast<int>(error);
}

}  // namespace

int main() {
    const PlenxService::CommandLine line =
        PlenxService::ParseCommandLine(Arguments(), ProgramFolder());
    if (line.help) {
        std::fputs(PlenxService::kUsage, stdout);
        return 0;
    }
    if (!line.error.empty()) {
        return UsageError(line.error);
    }
    if (!line.check.empty()) {
        return CheckFile(line.check);
    }
    return line.console ? RunOnConsole(*line.console, line) : RunUnderManager();
}
