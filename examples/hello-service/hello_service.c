/* plenxservice.exe answers every request with success. As soon as a group has been created, it
 * tells the host that the group is connected. */

#include <windows.h>

#include "sender.h"
#include "service_link.h"

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

/* The start arguments are the service's name, the install folder, the data folder and the role's
 * digit. */
enum { DATA_FOLDER = 2, ROLE = 3, ARGUMENTS = 4 };

static const wchar_t* EndpointOf(DWORD count, wchar_t** arguments) {
    static const wchar_t* const endpoints[] = {L"PLENXOfficeService", L"PLENXPCService",
                                               L"PLENXPhoneService"};
    const wchar_t* const role = count == ARGUMENTS ? arguments[ROLE] : L"";
    return role[0] >= L'0' && role[0] <= L'2' && role[1] == 0 ? endpoints[role[0] - L'0'] : NULL;
}

static DWORD MakeFolder(const wchar_t* folder) {
    if (CreateDirectoryW(folder, NULL)) {
        return NO_ERROR;
    }
    return GetLastError() == ERROR_ALREADY_EXISTS ? NO_ERROR : GetLastError();
}

/* Makes everything that must exist before the service reports that it runs. */
static DWORD Begin(DWORD count, wchar_t** arguments) {
    const wchar_t* const endpoint = EndpointOf(count, arguments);
    DWORD error = endpoint ? MakeFolder(arguments[DATA_FOLDER]) : ERROR_INVALID_PARAMETER;
    if (error == NO_ERROR) {
        stopEvent = CreateEventW(NULL, TRUE, FALSE, NULL);
        error = stopEvent ? StartSending() : GetLastError();
    }
    return error == NO_ERROR ? (DWORD)Serve(endpoint) : error;
}

static void WINAPI ServiceMain(DWORD count, wchar_t** arguments) {
    DWORD error;
    statusHandle = RegisterServiceCtrlHandlerExW(L"", OnControl, NULL);
    if (!statusHandle) {
        return;
    }
    Report(SERVICE_START_PENDING, START_HINT, NO_ERROR);
    error = Begin(count, arguments);
    if (error != NO_ERROR) {
        Report(SERVICE_STOPPED, 0, error);
        return;
    }
    Report(SERVICE_RUNNING, 0, NO_ERROR);
    WaitForSingleObject(stopEvent, INFINITE);
    StopServing();
    StopSending();
    Report(SERVICE_STOPPED, 0, NO_ERROR);
}

int main(void) {
    wchar_t name[] = L"";
    const SERVICE_TABLE_ENTRYW table[] = {{name, ServiceMain}, {NULL, NULL}};
    return StartServiceCtrlDispatcherW(table) ? 0 : (int)GetLastError();
}
