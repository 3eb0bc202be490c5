#include "support/known_dlls.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

namespace PlenxTest {
namespace {

#ifdef _MSC_VER
constexpr const char* kRunTime[] = {"msvcp140.dll", "msvcp140_1.dll", "vcruntime140.dll",
                                    "vcruntime140_1.dll"};
constexpr const char* kSystem[] = {"kernel32.dll", "advapi32.dll", "rpcrt4.dll",  "shell32.dll",
                                   "user32.dll",   "ntdll.dll",    "ucrtbase.dll"};
#else
constexpr const char* kRunTime[] = {"libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"};
constexpr const char* kSystem[] = {"kernel32.dll", "advapi32.dll", "rpcrt4.dll", "shell32.dll",
                                   "user32.dll",   "ntdll.dll",    "msvcrt.dll"};
#endif

template <class Names>
bool IsOneOf(const Names& names, const std::string& name) {
    return std::any_of(std::begin(names), std::end(names),
                       [&](const char* known) { return lstrcmpiA(known, name.c_str()) == 0; });
}

}  // namespace

// The C run time of Visual C++ is a part of Windows that is imported by many names.
bool IsSystemDll(const std::string& name) {
    return IsOneOf(kSystem, name) || name.rfind("api-ms-win-crt-", 0) == 0;
}

bool IsRunTimeDll(const std::string& name) {
    return IsOneOf(kRunTime, name);
}

}  // namespace PlenxTest
