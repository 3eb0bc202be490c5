// A DLL with a static object whose destructor logs a line and calls the office service. When
// the process ends, this runs after the system has ended all other threads. The calls are
// written to the file that PLENX_LATE_OFFICE_LOG names.

#ifndef PLENXSDK_TESTS_WINDOWS_COMPANION_LATE_CALLER_H
#define PLENXSDK_TESTS_WINDOWS_COMPANION_LATE_CALLER_H

#ifdef LATE_CALLER_BUILD
#define LATE_CALLER_API __declspec(dllexport)
#else
#define LATE_CALLER_API __declspec(dllimport)
#endif

class DistributedFileManager;

/// The DLL's own office service, made when the DLL is loaded.
LATE_CALLER_API DistributedFileManager& LateOffice();

#endif  // PLENXSDK_TESTS_WINDOWS_COMPANION_LATE_CALLER_H
