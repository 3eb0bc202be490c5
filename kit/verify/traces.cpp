#include "verify/traces.h"

#include <windows.h>

#include <sddl.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>

#include "doctor/facts.h"
#include "doctor/system.h"
#include "scenario/registered_services.h"
#include "support/handle.h"
#include "support/wide_text.h"

namespace PlenxVerify {
namespace {

namespace fs = std::filesystem;
using PlenxSupport::Handle;

constexpr const char* kMark = "made-by-plenxkit-verify.txt";
// Services run from the folder with all rights, so only administrators may put anything there.
constexpr wchar_t kForAdministrators[] = L"D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";
constexpr const char* kEndpoints[] = {"Manager", "PLENXOfficeService", "PLENXPCService",
                                      "PLENXPhoneService"};
constexpr DWORD kEndOfProcess = 5000;
constexpr ULONGLONG kUntilRemoved = 5000;
constexpr DWORD kBetweenLooks = 50;

struct Process {
    DWORD id = 0;
    std::string program;
};

std::string ProgramOf(DWORD id) {
    const Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    std::wstring path(32768, L'\0');
    auto length = static_cast<DWORD>(path.size());
    if (!process || !QueryFullProcessImageNameW(process.Get(), 0, path.data(), &length)) {
        return {};
    }
    path.resize(length);
    return PlenxSupport::ToUtf8(path);
}

std::vector<Process> ProcessesOf(const fs::path& folder) {
    std::vector<Process> found;
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more;
         more = Process32NextW(snapshot.Get(), &entry)) {
        const std::string program = ProgramOf(entry.th32ProcessID);
        if (PlenxHost::IsWithin(program, folder.u8string())) {
            found.push_back({entry.th32ProcessID, program});
        }
    }
    return found;
}

void End(const Process& process) {
    const Handle handle(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, process.id));
    if (handle && TerminateProcess(handle.Get(), 0xDEAD)) {
        WaitForSingleObject(handle.Get(), kEndOfProcess);
    }
}

std::vector<Trace> ServiceTraces() {
    std::vector<Trace> traces;
    const auto system = PlenxHost::MakeSystem();
    for (const std::string& name : PlenxScenario::ServiceNames()) {
        const PlenxHost::ServiceFacts facts = system->Service(name);
        if (facts.error != PlenxHost::kErrorNoSuchService) {
            const std::string program = PlenxHost::PlainPath(facts.program);
            traces.push_back({"the service " + name + ", " + program,
                              PlenxHost::IsWithin(program, RunFolder().u8string())});
        }
    }
    return traces;
}

std::string NameOf(const fs::path& path) {
    return path.filename().u8string();
}

// Windows removes a service when its last handle is closed, and a program when its process is gone.
template <class Condition>
void WaitUntil(Condition condition) {
    const ULONGLONG end = GetTickCount64() + kUntilRemoved;
    while (!condition() && GetTickCount64() < end) {
        Sleep(kBetweenLooks);
    }
}

bool HasServices() {
    const std::vector<Trace> traces = ServiceTraces();
    return std::any_of(traces.begin(), traces.end(),
                       [](const Trace& trace) { return trace.fromVerify; });
}

struct LocalMemoryCloser {
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};

bool MakeFolderForAdministrators(const fs::path& folder) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(kForAdministrators, SDDL_REVISION_1,
                                                              &descriptor, nullptr)) {
        return false;
    }
    const std::unique_ptr<void, LocalMemoryCloser> owner(descriptor);
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    return CreateDirectoryW(folder.c_str(), &attributes) != 0;
}

void RemovePatiently(const fs::path& path) {
    WaitUntil([&] {
        std::error_code error;
        fs::remove_all(path, error);
        return !error;
    });
}

}  // namespace

fs::path RunFolder() {
    const char* const drive = std::getenv("SystemDrive");
    return fs::path(drive != nullptr ? drive : "C:") / "\\plenxverify-run";
}

bool MakeRunFolder() {
    if (!MakeFolderForAdministrators(RunFolder())) {
        return false;
    }
    std::ofstream mark(RunFolder() / kMark);
    mark << "plenxkit verify has made this folder, and plenxkit verify --clean removes it.\n";
    return static_cast<bool>(mark.flush());
}

std::vector<Trace> AllTraces() {
    std::vector<Trace> traces = ServiceTraces();
    const std::vector<Process> processes = ProcessesOf(RunFolder());
    const auto system = PlenxHost::MakeSystem();
    for (const char* const endpoint : kEndpoints) {
        if (system->IsServed(endpoint)) {
            traces.push_back({std::string("somebody who serves ") + endpoint, !processes.empty()});
        }
    }
    for (const Process& process : processes) {
        traces.push_back({"the process of " + process.program, true});
    }
    if (fs::exists(RunFolder())) {
        traces.push_back({"the folder " + RunFolder().u8string(), fs::exists(RunFolder() / kMark)});
    }
    return traces;
}

std::vector<std::string> RemoveTracesIn(const fs::path& folder) {
    std::vector<std::string> removed;
    for (const Trace& trace : ServiceTraces()) {
        if (trace.fromVerify) {
            removed.push_back(trace.text);
        }
    }
    PlenxScenario::RemoveServicesOf(RunFolder());
    for (const Process& process : ProcessesOf(RunFolder())) {
        removed.push_back("the process of " + process.program);
        End(process);
    }
    WaitUntil([] { return !HasServices(); });
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        removed.push_back(NameOf(entry.path()));
        RemovePatiently(entry.path());
    }
    return removed;
}

void RemoveAllTraces() {
    RemoveTracesIn(RunFolder() / "work");
    if (!fs::exists(RunFolder() / kMark)) {
        return;
    }
    // The mark goes last, so that whatever stays is known to be ours.
    std::error_code error;
    bool isLeft = false;
    for (const fs::directory_entry& entry : fs::directory_iterator(RunFolder(), error)) {
        if (entry.path().filename() != kMark) {
            RemovePatiently(entry.path());
            isLeft = isLeft || fs::exists(entry.path());
        }
    }
    if (!isLeft) {
        RemovePatiently(RunFolder());
    }
}

}  // namespace PlenxVerify
