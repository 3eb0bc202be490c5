// Calls an interface's procedure, through the library's stubs or the IDL compiler's.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_CALLS_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_CALLS_H

#include <windows.h>

#include <rpc.h>

#include <cstdint>
#include <string>
#include <vector>

namespace PlenxTest {

enum class Stubs { kOurs, kWidl };
enum class Interface { kService, kManager };

using Bytes = std::vector<std::uint8_t>;

struct Reply {
    bool raised = false;
    unsigned long exceptionCode = 0;
    long result = 0;
    long size = 0;
    bool hasBlock = false;
    Bytes bytes;  // copied from the block
};

/// Fills an interface's implicit handle for as long as it lives. Only one of each kind may exist.
class Binding {
public:
    Binding(Stubs stubs, Interface which, const std::wstring& endpoint);
    ~Binding();
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;

    /// May be called from several threads at once.
    Reply Call(long msgType, const Bytes& msg) const;

private:
    Stubs stubs_;
    Interface interface_;
    RPC_BINDING_HANDLE& handle_;
};

/// Binds, calls and releases.
Reply CallOnce(Stubs stubs, Interface which, const std::wstring& endpoint, long msgType,
               const Bytes& msg);

/// Calls through an implicit handle that is null. No Binding of this kind may exist.
Reply CallWithoutABinding(Stubs stubs, Interface which, long msgType, const Bytes& msg);

/// Returns the handle to register for serving an interface.
RPC_IF_HANDLE ServerInterface(Stubs stubs, Interface which);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_CALLS_H
