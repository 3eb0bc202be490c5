#include "doctor/facts.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace PlenxHost {
namespace {

constexpr const char* kStateTexts[] = {
    "stopped",           "being started", "being stopped", "running",
    "about to continue", "being paused",  "paused",
};

constexpr const char* kStartTypeTexts[] = {
    "at boot", "with the system", "automatically", "on demand", "disabled",
};

constexpr const char* kDevicePrefix = "\\??\\";

char Lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// Letters beyond ASCII stay as they are. Several separators in a row count as one, because a folder
// may have come with separators at its end: here, or from the host whose Init registered a file.
std::string Comparable(std::string path) {
    std::transform(path.begin(), path.end(), path.begin(), Lower);
    std::replace(path.begin(), path.end(), '/', '\\');
    const auto bothSeparators = [](char one, char other) { return one == '\\' && other == '\\'; };
    path.erase(std::unique(path.begin(), path.end(), bothSeparators), path.end());
    if (!path.empty() && path.back() == '\\') {
        path.pop_back();
    }
    return path;
}

}  // namespace

std::string ErrorText(std::uint32_t error) {
    std::string text = "error " + std::to_string(error);
    switch (error) {
    case 2:
    case 3:
        return text + " (not found)";
    case kErrorAccessDenied:
        return text + " (access denied)";
    case kErrorSharingViolation:
        return text + " (in use)";
    default:
        return text;
    }
}

std::string StateText(const ServiceFacts& facts) {
    const auto index = static_cast<std::size_t>(facts.state) - 1;
    const std::string state = index < std::size(kStateTexts)
                                  ? kStateTexts[index]
                                  : "in state " + std::to_string(index + 1);
    return facts.processId == 0 ? state : state + " as process " + std::to_string(facts.processId);
}

std::string StartTypeText(StartType type) {
    const auto index = static_cast<std::size_t>(type);
    return index < std::size(kStartTypeTexts) ? kStartTypeTexts[index]
                                              : "with type " + std::to_string(index);
}

std::string PlainPath(const std::string& registered) {
    if (!registered.empty() && registered[0] == '"') {
        return registered.substr(1, registered.find('"', 1) - 1);
    }
    return registered.rfind(kDevicePrefix, 0) == 0 ? registered.substr(std::strlen(kDevicePrefix))
                                                   : registered;
}

bool SamePath(const std::string& first, const std::string& second) {
    return Comparable(first) == Comparable(second);
}

bool IsWithin(const std::string& path, const std::string& folder) {
    const std::string outer = Comparable(folder) + "\\";
    return (Comparable(path) + "\\").compare(0, outer.size(), outer) == 0;
}

bool HasPrefix(const std::string& name, const std::string& lowerCasePrefix) {
    return Comparable(name).compare(0, lowerCasePrefix.size(), lowerCasePrefix) == 0;
}

}  // namespace PlenxHost
