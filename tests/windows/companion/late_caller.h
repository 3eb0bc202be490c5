// A DLL with a static object whose destructor logs a line and calls the office service. When the
// process ends, the destructor runs after the system has ended all other threads. The calls go to
// the file that PLENX_LATE_OFFICE_LOG names.

#ifndef PLENXSDK_TESTS_WINDOWS_COMPANION_LATE_CALLER_H
#define PLENXSDK_TESTS_WINDOWS_COMPANION_LATE_CALLER_H

#ifdef LATE_CALLER_BUILD
#define LATE_CALLER_API __declspec(dllexport)
#else
#define LATE_CALLER_API __declspec(dllimport)
#endif

class DistributedFileManager;

/// Returns the DLL's own office service, which is made when the DLL is loaded.
LATE_CALLER_API DistributedFileManager& LateOffice();

#endif  // PLENXSDK_TESTS_WINDOWS_COMPANION_LATE_CALLER_H
