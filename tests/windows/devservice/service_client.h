// Sends requests to a service over the library's own stubs.

#ifndef PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_CLIENT_H
#define PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_CLIENT_H

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include "wire/message.h"

namespace PlenxTest {

struct ServiceAnswer {
    unsigned long exception = 0;  // 0 when there is none
    long result = 0;
    long statedSize = 0;
    bool hasBlock = false;
    PlenxWire::Bytes reply;

    /// Returns the int32 of a well-formed reply, or INT32_MIN when there is none.
    std::int32_t Code() const;
};

/// Makes one call at a time. endpoint: a name such as L"PLENXPCService".
ServiceAnswer CallServiceWith(const std::wstring& endpoint, std::int32_t id,
                              const PlenxWire::Bytes& message);
ServiceAnswer CallService(const std::wstring& endpoint, std::int32_t id,
                          const PlenxWire::Arguments& arguments);

/// Returns the command line that runs this program as a client. The client sends one request with
/// the argument "g_1" and exits with the exception's code, or 0.
std::wstring CallerOf(const std::wstring& endpoint, std::int32_t id);

/// Returns the exception of such a client, or 0, or nullopt when it does not come back. A call that
/// raises needs a process of its own, because Wine's RPC runtime keeps something of it: the caller
/// may fail for good (1727) when the server has been restarted some more times.
std::optional<DWORD> ExceptionOfCall(const std::wstring& endpoint, std::int32_t id);

/// Runs this process as the caller. @return the exit code, or nothing when this is no caller.
std::optional<int> RunCaller(int argc, char** argv);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_DEVSERVICE_SERVICE_CLIENT_H
