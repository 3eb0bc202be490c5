// The configuration that the engine sends to a service at each of its starts. The defaults fix the
// keys of each service. Values last until the process ends.
//
// Setters and readers run on the facade's worker, so the tables have no lock.

#ifndef PLENXSDK_ENGINE_CONFIG_TABLES_H
#define PLENXSDK_ENGINE_CONFIG_TABLES_H

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "plenxsdk/plenx_manager.h"

namespace DistributedFs {

using IntegerConfig = std::map<std::uint32_t, std::int64_t>;
using StringConfig = std::map<std::uint32_t, std::string>;

/// Has one map for each service: office, PC, phone.
template <class Config>
using ConfigTable = std::array<Config, 3>;

struct ConfigTables {
    static ConfigTables& GetInstance();
    void OnProcessEnd() noexcept {}

    ConfigTable<IntegerConfig> integers;
    ConfigTable<StringConfig> strings;

    ConfigTables();
};

/// Returns the map that a setter changes, or null for a type that has none. Type 3 shares the map
/// of the PC service on purpose.
template <class Config>
Config* FindConfig(ConfigTable<Config>& table, ServiceType svcType) {
    switch (svcType) {
    case kPcService:
    case kCombinedService:
        return &table[kPcService];
    case kPhoneService:
        return &table[kPhoneService];
    default:
        return nullptr;
    }
}

/// Overwrites the value of an existing key, and never adds a key.
template <class Config>
void ReplaceValue(Config& config, ConfigType key, typename Config::mapped_type value) {
    const auto entry = config.find(key);
    if (entry != config.end()) {
        entry->second = std::move(value);
    }
}

}  // namespace DistributedFs

#endif  // PLENXSDK_ENGINE_CONFIG_TABLES_H
