#include "dev_service.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "endpoint.h"
#include "support/wide_text.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

constexpr DWORD kStartHint = 3000;
constexpr DWORD kStopHint = 2000;
constexpr DWORD kProgressInterval = 100;
// The library gives a stop two seconds. The queued notifications get a part of them.
constexpr DWORD kLastNotifications = 500;
// A service that is told to hang still ends, but later than anybody waits for it.
constexpr DWORD kForEver = 60 * 1000;

}  // namespace

DevService::DevService(Identity identity, ServiceStatus& status, bool toConsole,
                       std::wstring scenario)
    : identity_(std::move(identity)),
      status_(status),
      scenarioFile_(std::move(scenario)),
      log_(identity_.nickname, identity_.dataFolder, toConsole),
      stop_(PlenxSupport::MakeEvent()),
      sender_(log_),
      scenario_(identity_, log_, sender_),
      peer_(identity_, status_, log_, scenario_, sender_, stop_) {}

int DevService::Run() {
    if (!Start()) {
        return 1;
    }
    const auto longest = static_cast<DWORD>(scenario_.Stop().Number("after_ms", INFINITE));
    if (WaitForSingleObject(stop_.Get(), longest) == WAIT_TIMEOUT) {
        RequestStop();
    }
    WaitForSingleObject(stop_.Get(), INFINITE);
    End();
    return 0;
}

bool DevService::Start() {
    std::error_code error;
    std::filesystem::create_directories(identity_.dataFolder, error);
    scenario_.Load(scenarioFile_);
    const Values start = scenario_.Start();
    log_.Write("starts, process " + std::to_string(GetCurrentProcessId()) + ", install folder " +
               PlenxWire::RenderText(PlenxSupport::ToUtf8(identity_.installFolder)) +
               ", data folder " +
               PlenxWire::RenderText(PlenxSupport::ToUtf8(identity_.dataFolder)));
    if (error) {
        Fail("no data folder", static_cast<DWORD>(error.value()));
        return false;
    }
    if (!StartUnpunctually(start) || !ServeEndpoint(start)) {
        return false;
    }
    status_.Running(scenario_.Stop().Flag("accept", true));
    log_.Write("runs");
    scenario_.Started();
    return true;
}

// Ends like a service that crashes before it runs; "die" reports nothing.
void DevService::EndAtStart(const Values& start) {
    const bool crashes = start.Flag("crash");
    if (!crashes && !start.Flag("die")) {
        return;
    }
    log_.Write(crashes ? "crashes at the start" : "dies at the start");
    if (crashes) {
        status_.Stopped(ERROR_PROCESS_ABORTED);
    }
    TerminateProcess(GetCurrentProcess(), 3);
}

// Does what [start] says. Without [start], it only reports progress once.
bool DevService::StartUnpunctually(const Values& start) {
    const auto hint = static_cast<DWORD>(start.Number("hint_ms", kStartHint));
    status_.Pending(SERVICE_START_PENDING, hint);
    if (start.Flag("never")) {
        log_.Write("never leaves start pending");
        WaitForSingleObject(stop_.Get(), kForEver);
        Fail("gives up the start", ERROR_TIMEOUT);
        return false;
    }
    if (start.Has("silent_ms")) {
        log_.Write("starts silently");
        WaitForSingleObject(stop_.Get(), static_cast<DWORD>(start.Number("silent_ms")));
    }
    Progress(SERVICE_START_PENDING, hint, static_cast<DWORD>(start.Number("delay_ms")));
    EndAtStart(start);
    if (const auto code = static_cast<DWORD>(start.Number("fail")); code != 0) {
        Fail("is told to fail", NO_ERROR, code);
        return false;
    }
    return true;
}

bool DevService::ServeEndpoint(const Values& start) {
    const std::string name = PlenxSupport::ToUtf8(identity_.endpoint);
    if (!start.Flag("serve", true)) {
        log_.Write("does not serve " + name);
        return true;
    }
    if (const long status = Serve(identity_.endpoint, peer_); status != 0) {
        Fail("cannot serve " + name, static_cast<DWORD>(status));
        return false;
    }
    log_.Write("serves " + name);
    return true;
}

// Waits, and reports progress.
void DevService::Progress(DWORD state, DWORD waitHint, DWORD milliseconds) {
    const ULONGLONG end = GetTickCount64() + milliseconds;
    for (ULONGLONG now; (now = GetTickCount64()) < end;) {
        status_.Pending(state, waitHint);
        Sleep(static_cast<DWORD>(std::min<ULONGLONG>(end - now, kProgressInterval)));
    }
}

void DevService::RequestStop() {
    scenario_.AskedToStop();
    const std::string how = scenario_.Stop().Text("how");
    if (how == "ignore") {
        log_.Write("ignores stop");
        return;
    }
    status_.Pending(SERVICE_STOP_PENDING, kStopHint);
    if (how == "never") {
        log_.Write("never leaves stop pending");
        return;
    }
    log_.Write("stops");
    StopNow();
}

// The library may itself be ending and may answer nobody any more, so nothing here waits long.
void DevService::End() {
    scenario_.Stopping();
    const Values stop = scenario_.Stop();
    Progress(SERVICE_STOP_PENDING, kStopHint, static_cast<DWORD>(stop.Number("delay_ms")));
    const bool sent = sender_.Stop(kLastNotifications);
    if (!sent) {
        log_.Write("the library does not come back from a notification");
    }
    StopServing();
    log_.Write(peer_.Summary());
    log_.Write("has stopped");
    log_.LeaveDataFolder();
    status_.Stopped();
    Sleep(static_cast<DWORD>(stop.Number("linger_ms")));
    if (!sent) {
        TerminateProcess(GetCurrentProcess(), 0);
    }
}

void DevService::Fail(const std::string& what, DWORD exitCode, DWORD ownCode) {
    log_.Write(what + ", code " + std::to_string(ownCode != 0 ? ownCode : exitCode));
    log_.LeaveDataFolder();
    status_.Stopped(exitCode, ownCode);
}

}  // namespace PlenxService
