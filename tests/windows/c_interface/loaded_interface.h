// Loads the plain C interface by its path. This program is not linked with it, because some of the
// cases are about loading and unloading.

#ifndef PLENXSDK_TESTS_WINDOWS_C_INTERFACE_LOADED_INTERFACE_H
#define PLENXSDK_TESTS_WINDOWS_C_INTERFACE_LOADED_INTERFACE_H

#define PLENX_LOAD
#include <string>

#include "plenxsdk/plenx.hpp"
#include "support/child_process.h"

namespace PlenxTest {

inline std::wstring InterfacePath() {
    return ProgramFolder() + L"\\plenxsdk_c.dll";
}

inline plenx::Library LoadInterface() {
    return plenx::Library::load(InterfacePath().c_str()).or_throw();
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_C_INTERFACE_LOADED_INTERFACE_H
