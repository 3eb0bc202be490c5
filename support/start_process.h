// Starts a process.

#ifndef PLENXSUPPORT_START_PROCESS_H
#define PLENXSUPPORT_START_PROCESS_H

#include <windows.h>

#include <string>

namespace PlenxSupport {

/// Calls CreateProcessW, and calls it again when Wine has lost the new process before it began.
/// folder is where the process begins; null stands for this process's own.
/// @return false when there is no process; GetLastError() says why.
bool StartProcess(std::wstring& commandLine, bool inheritsHandles, DWORD flags,
                  STARTUPINFOW& startup, PROCESS_INFORMATION& process,
                  const wchar_t* folder = nullptr);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_START_PROCESS_H
