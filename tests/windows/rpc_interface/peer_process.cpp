#include "rpc_interface/peer_process.h"

#include <atomic>

#include "rpc_interface/chosen_syntax.h"
#include "support/serve.h"
#include "support/wide_text.h"

namespace PlenxTest {
namespace {

constexpr DWORD kReadyMilliseconds = 20000;
constexpr DWORD kPeerLifeMilliseconds = 120000;

// The endpoint is unique, so the names of the events are too.
PlenxSupport::Handle EventOf(const std::wstring& endpoint, const wchar_t* what) {
    return PlenxSupport::MakeEvent((endpoint + what).c_str());
}

std::wstring CommandLine(Stubs stubs, Interface which, const std::wstring& endpoint) {
    return ChildProcess::Self(
        std::wstring(L"--peer ") + (stubs == Stubs::kOurs ? L"ours " : L"widl ") +
        (which == Interface::kService ? L"service " : L"manager ") + endpoint);
}

}  // namespace

std::wstring UniqueName(const std::wstring& stem) {
    static std::atomic<int> count{0};
    return stem + L"-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
}

PeerProcess::PeerProcess(Stubs stubs, Interface which)
    : endpoint_(UniqueName(L"plenx-peer")),
      readyEvent_(EventOf(endpoint_, L"-ready")),
      stopEvent_(EventOf(endpoint_, L"-stop")),
      process_(CommandLine(stubs, which, endpoint_)),
      ready_(process_.Started() &&
             WaitForSingleObject(readyEvent_.Get(), kReadyMilliseconds) == WAIT_OBJECT_0) {}

PeerProcess::~PeerProcess() {
    SetEvent(stopEvent_.Get());
    process_.WaitForExit(5000);
}

std::optional<DWORD> PeerProcess::WaitForExit(DWORD milliseconds) {
    return process_.WaitForExit(milliseconds);
}

int RunPeer(const std::string& stubs, const std::string& which, const std::string& endpoint) {
    const std::wstring name = PlenxSupport::ToWide(endpoint);
    const RPC_IF_HANDLE served =
        ServerInterface(stubs == "ours" ? Stubs::kOurs : Stubs::kWidl,
                        which == "service" ? Interface::kService : Interface::kManager);
    if (stubs == "ours") {
        WatchSyntaxes(served);
    }
    const PlenxSupport::Handle stop = EventOf(name, L"-stop");
    const RPC_STATUS status = Serve(served, name);
    if (status != RPC_S_OK) {
        return static_cast<int>(status);
    }
    SetEvent(EventOf(name, L"-ready").Get());
    return WaitForSingleObject(stop.Get(), kPeerLifeMilliseconds) == WAIT_OBJECT_0 ? 0 : 1;
}

}  // namespace PlenxTest
