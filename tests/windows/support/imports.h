// Redirects a module's imports.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_IMPORTS_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_IMPORTS_H

#include <windows.h>

namespace PlenxTest {

/// From now on the module's calls of the imported function go to the other one, which must have the
/// same signature.
/// @return the function that they went to before, or null when the module imports no such function.
void* RedirectImport(HMODULE module, const char* function, void* other);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_IMPORTS_H
