// Asks the real Service Control Manager about a service.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_SERVICE_STATE_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_SERVICE_STATE_H

#include <windows.h>

#include <optional>
#include <string>

#include "support/handle.h"

namespace PlenxTest {

/// Returns no handle when the service is not registered.
PlenxSupport::ServiceHandle OpenedService(const std::wstring& service, DWORD access);

bool IsRegistered(const std::wstring& service);

/// Returns SERVICE_STOPPED and so on, or nothing when the service is not registered.
std::optional<DWORD> StateOf(const std::wstring& service);

/// Returns 0 when the service is not registered or not running.
DWORD ProcessIdOf(const std::wstring& service);

/// Returns whether this system starts the driver of these tests, which has no signature.
bool DriverStarts();

/// Stops the service (for up to 5 s), deletes it, and waits until the system has removed it. The
/// service need not be registered.
void RemoveService(const std::wstring& service);

/// Ends the process of a service that may hang, deletes the service without asking it to stop, and
/// waits until the system has removed it.
/// The service need not be registered.
void EndService(const std::wstring& service);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_SERVICE_STATE_H
