// Finds the DLLs that a program needs at its start and that Windows does not bring.

#ifndef PLENXKIT_DOCTOR_NEEDED_DLLS_H
#define PLENXKIT_DOCTOR_NEEDED_DLLS_H

#include <string>
#include <vector>

#include "doctor/system.h"

namespace PlenxHost {

struct NeededDll {
    std::string name;
    std::string neededBy;  ///< the program, or the DLL beside it that is the first to need it
    bool isThere;          ///< whether it lies in the program's folder
};

/// Follows the imports from the program through the DLLs in its folder. Lists each DLL once.
std::vector<NeededDll> NeededDlls(const std::string& folder, const std::string& program,
                                  System& system);

/// Whether the DLL belongs to the C++ run time of Visual C++, which Microsoft's redistributable
/// installs for the whole system. All other run times are shipped beside the program.
bool IsOfVisualCpp(const std::string& dll);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_NEEDED_DLLS_H
