#include "doctor/needed_dlls.h"

#include <algorithm>

#include "doctor/facts.h"

namespace PlenxHost {
namespace {

// These names stand for parts of Windows. Most of them are not files.
bool IsApiSet(const std::string& name) {
    return HasPrefix(name, "api-ms-") || HasPrefix(name, "ext-ms-");
}

bool IsIn(const std::vector<NeededDll>& needed, const std::string& name) {
    return std::any_of(needed.begin(), needed.end(),
                       [&](const NeededDll& dll) { return SamePath(dll.name, name); });
}

}  // namespace

bool IsOfVisualCpp(const std::string& dll) {
    return HasPrefix(dll, "msvcp140") || HasPrefix(dll, "vcruntime140") ||
           HasPrefix(dll, "concrt140");
}

std::vector<NeededDll> NeededDlls(const std::string& folder, const std::string& program,
                                  System& system) {
    std::vector<NeededDll> needed = {{program, "", true}};
    for (std::size_t i = 0; i != needed.size(); ++i) {
        const NeededDll user = needed[i];
        if (!user.isThere) {
            continue;
        }
        for (const std::string& name : system.ImportsOf(folder + "\\" + user.name)) {
            const bool isThere = system.Look(folder + "\\" + name) == PathKind::kFile;
            const bool comesWithWindows = IsApiSet(name) || system.HasSystemDll(name);
            if ((isThere || !comesWithWindows) && !IsIn(needed, name)) {
                needed.push_back({name, user.name, isThere});
            }
        }
    }
    needed.erase(needed.begin());
    return needed;
}

}  // namespace PlenxHost
