// A server in another process, which is this program started again with --peer. It ends when its
// object is destroyed, or by itself after two minutes.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_PEER_PROCESS_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_PEER_PROCESS_H

#include <optional>
#include <string>

#include "rpc_interface/calls.h"
#include "support/child_process.h"
#include "support/handle.h"

namespace PlenxTest {

/// Returns a name that nobody else in this prefix uses.
std::wstring UniqueName(const std::wstring& stem);

class PeerProcess {
public:
    PeerProcess(Stubs stubs, Interface which);
    ~PeerProcess();

    /// Returns whether it serves.
    bool Ready() const { return ready_; }
    /// Returns the reason why it was not started, or 0 when it was.
    DWORD StartError() const { return process_.StartError(); }
    const std::wstring& Endpoint() const { return endpoint_; }
    std::optional<DWORD> WaitForExit(DWORD milliseconds);

private:
    std::wstring endpoint_;
    PlenxSupport::Handle readyEvent_;
    PlenxSupport::Handle stopEvent_;
    ChildProcess process_;
    bool ready_;
};

/// Runs the peer, with the arguments of its command line.
int RunPeer(const std::string& stubs, const std::string& which, const std::string& endpoint);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_PEER_PROCESS_H
