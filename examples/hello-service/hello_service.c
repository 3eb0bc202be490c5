/* plenxservice.exe: answers every request with success, and tells the host that a group is
 * connected as soon as it has been created. */

#include <windows.h>

#include "rpc_link.h"

enum { START_HINT = 3000, STOP_HINT = 2000 };

static SERVICE_STATUS_HANDLE statusHandle;
static HANDLE stopEvent;

static void Report(DWORD state, DWORD waitHint, DWORD exitCode) {
    SERVICE_STATUS status = {0};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted =
        state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN : 0;
    status.dwWin32ExitCode = exitCode;
    status.dwWaitHint = waitHint;
    SetServiceStatus(statusHandle, &status);
}

static DWORD WINAPI OnControl(DWORD control, DWORD type, void* data, void* context) {
    (void)type, (void)data, (void)context;
    if (control == SERVICE_CONTROL_STOP || control == SERVICE_CONTROL_SHUTDOWN) {
        Report(SERVICE_STOP_PENDING, STOP_HINT, NO_ERROR);
        SetEvent(stopEvent);
        return NO_ERROR;
    }
    return control == SERVICE_CONTROL_INTERROGATE ? NO_ERROR : ERROR_CALL_NOT_IMPLEMENTED;
}

/* The role's digit is the last of the start arguments: the service's name, the install folder,
 * the data folder, the digit. */
static const wchar_t* EndpointOf(DWORD count, wchar_t** arguments) {
    static const wchar_t* const endpoints[] = {L"PLENXOfficeService", L"PLENXPCService",
                                               L"PLENXPhoneService"};
    if (count != 4 || arguments[3][0] < L'0' || arguments[3][0] > L'2' || arguments[3][1] != 0) {
        return NULL;
    }
    return endpoints[arguments[3][0] - L'0'];
}

static void WINAPI ServiceMain(DWORD count, wchar_t** arguments) {
    const wchar_t* const endpoint = EndpointOf(count, arguments);
    long status;
    statusHandle = RegisterServiceCtrlHandlerExW(L"", OnControl, NULL);
    if (!statusHandle) {
        return;
    }
    Report(SERVICE_START_PENDING, START_HINT, NO_ERROR);
    if (!endpoint) {
        Report(SERVICE_STOPPED, 0, ERROR_INVALID_PARAMETER);
        return;
    }
    stopEvent = CreateEventW(NULL, TRUE, FALSE, NULL);
    status = Serve(endpoint);
    if (status != 0) {
        Report(SERVICE_STOPPED, 0, (DWORD)status);
        return;
    }
    Report(SERVICE_RUNNING, 0, NO_ERROR);
    WaitForSingleObject(stopEvent, INFINITE);
    StopServing();
    Report(SERVICE_STOPPED, 0, NO_ERROR);
}

int main(void) {
    wchar_t name[] = L"";
    const SERVICE_TABLE_ENTRYW table[] = {{name, ServiceMain}, {NULL, NULL}};
    return StartServiceCtrlDispatcherW(table) ? 0 : (int)GetLastError();
}
