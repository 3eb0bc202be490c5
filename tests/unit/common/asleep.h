// Tells whether a thread of this process waits for a lock, for a condition or for time to pass.

#ifndef PLENXSDK_UNIT_COMMON_ASLEEP_H
#define PLENXSDK_UNIT_COMMON_ASLEEP_H

#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

/// @param thread  The number that gettid gives.
inline bool IsAsleep(const std::string& thread) {
    std::ifstream file("/proc/self/task/" + thread + "/stat");
    std::string text;
    std::getline(file, text);
    const std::size_t name = text.rfind(')');  // the state follows the name
    return name != std::string::npos && name + 2 < text.size() && text[name + 2] == 'S';
}

/// Returns whether all threads but the calling one are asleep.
inline bool AllOthersAreAsleep() {
    const std::string own = std::to_string(gettid());
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        const std::string thread = entry.path().filename();
        if (thread != own && !IsAsleep(thread)) {
            return false;
        }
    }
    return true;
}

#endif  // PLENXSDK_UNIT_COMMON_ASLEEP_H
