// Counts events by section and name. Any thread may count.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_TALLY_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_TALLY_H

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace PlenxSoak {

class Tally {
public:
    using Names = std::map<std::string, std::uint64_t>;

    void Count(const char* section, const std::string& name) {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++sections_[section][name];
    }
    Names Of(const char* section) const {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = sections_.find(section);
        return found != sections_.end() ? found->second : Names();
    }
    std::uint64_t Total(const char* section) const {
        std::uint64_t total = 0;
        for (const auto& [name, count] : Of(section)) {
            total += count;
        }
        return total;
    }

private:
    mutable std::mutex mutex_;
    std::map<std::string, Names> sections_;
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_TALLY_H
