// One table of a scenario file: gives its values, checked, and keeps what is wrong with them.
// A key that was never asked for is a mistake, which AllRead reports.

#ifndef PLENXSERVICE_SCENARIO_SECTION_H
#define PLENXSERVICE_SCENARIO_SECTION_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "scenario_reader.h"
#include "toml_reader.h"

namespace PlenxService {

class Section {
public:
    /// name: as it stands in the file, "[start]". table and mistakes outlive this.
    Section(std::string name, const toml::table& table, std::vector<Mistake>& mistakes);

    bool Has(const std::string& key) const { return table_.contains(key); }

    // Nothing when the key is absent or its value wrong.
    std::optional<std::string> Text(const std::string& key);
    std::optional<bool> Flag(const std::string& key);
    std::optional<std::int64_t> Integer(const std::string& key, std::int64_t least,
                                        std::int64_t most);
    /// For what may be one of several types; null when absent.
    const toml::node* Any(const std::string& key);

    /// The value of the key is not what it must be.
    void Refuse(const std::string& key, const std::string& must);
    /// The table as a whole is not.
    void Refuse(const std::string& what);

    void AllRead();

private:
    const std::string name_;
    const toml::table& table_;
    std::vector<Mistake>& mistakes_;
    std::vector<std::string> known_;
};

/// "a, b or c" and "a, b, c".
std::string Alternatives(const std::vector<std::string>& items);
std::string Enumeration(std::vector<std::string> items);

}  // namespace PlenxService

#endif  // PLENXSERVICE_SCENARIO_SECTION_H
