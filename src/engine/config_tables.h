// The configuration that is pushed to a service at each of its starts: per service, keys that
// are fixed by their defaults. Values last until the process ends.
//
// Setters and readers run on the facade's worker, so the tables have no lock of their own.

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

/// One map per service: office, PC, phone.
template <class Config>
using ConfigTable = std::array<Config, 3>;

struct ConfigTables {
    static ConfigTables& GetInstance();
    void OnProcessEnd() noexcept {}

    ConfigTable<IntegerConfig> integers;
    ConfigTable<StringConfig> strings;

    ConfigTables();
};

/// The map that a setter changes, null for a type that has none. Type 3 shares the map of the
/// PC service, on purpose.
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

/// Overwrites the value of a key that is there; no key is ever added.
template <class Config>
void ReplaceValue(Config& config, ConfigType key, typename Config::mapped_type value) {
    const auto entry = config.find(key);
    if (entry != config.end()) {
        entry->second = std::move(value);
    }
}

}  // namespace DistributedFs

#endif  // PLENXSDK_ENGINE_CONFIG_TABLES_H
