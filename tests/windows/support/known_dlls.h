// The DLLs that our programs may import from Windows and from their compiler.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_KNOWN_DLLS_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_KNOWN_DLLS_H

#include <string>

namespace PlenxTest {

/// Returns whether it is one of the DLLs of Windows that the project needs.
bool IsSystemDll(const std::string& name);

/// Returns whether it belongs to the C++ run time of the compiler that has built this program.
bool IsRunTimeDll(const std::string& name);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_KNOWN_DLLS_H
