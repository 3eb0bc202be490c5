// Whether a thread of this process waits for something: a lock, a condition, the time.

#ifndef PLENXSDK_UNIT_COMMON_ASLEEP_H
#define PLENXSDK_UNIT_COMMON_ASLEEP_H

#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

/// thread: by its number, as gettid gives it.
inline bool IsAsleep(const std::string& thread) {
    std::ifstream file("/proc/self/task/" + thread + "/stat");
    std::string text;
    std::getline(file, text);
    const std::size_t name = text.rfind(')');  // the state stands behind the name
    return name != std::string::npos && name + 2 < text.size() && text[name + 2] == 'S';
}

/// Whether all threads are but the calling one.
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
