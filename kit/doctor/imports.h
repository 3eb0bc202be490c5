// Reads from a program's file which DLLs Windows loads before the program runs.

#ifndef PLENXKIT_DOCTOR_IMPORTS_H
#define PLENXKIT_DOCTOR_IMPORTS_H

#include <string>
#include <string_view>
#include <vector>

namespace PlenxHost {

/// The names in the import table of a 64-bit program or DLL, in its order. Delay-loaded DLLs are
/// not among them. The bytes may be anything: a file that cannot be read has no imports.
/// Source: https://learn.microsoft.com/windows/win32/debug/pe-format
std::vector<std::string> ImportedDlls(std::string_view file);

}  // namespace PlenxHost

#endif  // PLENXKIT_DOCTOR_IMPORTS_H
