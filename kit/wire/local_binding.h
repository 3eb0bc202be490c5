// LocalBinding: a binding of a peer to an endpoint of this PC. It exists on Windows only.

#ifndef PLENXKIT_WIRE_LOCAL_BINDING_H
#define PLENXKIT_WIRE_LOCAL_BINDING_H

#include <windows.h>

#include <rpc.h>

#include <string>

namespace PlenxWire {

/// Make one for each call. A binding does not survive the end of its server, and a call that raised
/// an exception may spoil it.
class LocalBinding {
public:
    explicit LocalBinding(const std::wstring& endpoint) {
        std::wstring text = L"ncalrpc:[" + endpoint + L"]";
        status_ = RpcBindingFromStringBindingW(reinterpret_cast<RPC_WSTR>(text.data()), &handle_);
    }
    ~LocalBinding() {
        if (handle_ != nullptr) {
            RpcBindingFree(&handle_);
        }
    }
    LocalBinding(const LocalBinding&) = delete;
    LocalBinding& operator=(const LocalBinding&) = delete;

    RPC_STATUS Status() const noexcept { return status_; }
    /// Null unless Status() is RPC_S_OK.
    RPC_BINDING_HANDLE Get() const noexcept { return handle_; }

private:
    RPC_BINDING_HANDLE handle_ = nullptr;
    RPC_STATUS status_ = RPC_S_OK;
};

}  // namespace PlenxWire

#endif  // PLENXKIT_WIRE_LOCAL_BINDING_H
