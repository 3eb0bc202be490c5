#include "engine/config_tables.h"

#include "common/process_life.h"

namespace DistributedFs {

ConfigTables::ConfigTables() {
    integers.fill({{kIntegerConfig0, 0}, {kIntegerConfig2, 0}});
    strings.fill({{kLocaleConfig, "en_US"}});
}

ConfigTables& ConfigTables::GetInstance() {
    static ModuleObject<ConfigTables> instance;
    return instance.Get();
}

}  // namespace DistributedFs
