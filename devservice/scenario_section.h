// One table of a scenario file. It returns checked values and collects their mistakes. A key that
// nobody asked for is a mistake too, which AllRead reports.

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
    /// The name is that in the file, such as "[start]". The table and the mistakes must outlive
    /// this.
    Section(std::string name, const toml::table& table, std::vector<Mistake>& mistakes);

    bool Has(const std::string& key) const { return table_.contains(key); }

    // These return nullopt when the key is absent or its value is wrong.
    std::optional<std::string> Text(const std::string& key);
    std::optional<bool> Flag(const std::string& key);
    std::optional<std::int64_t> Integer(const std::string& key, std::int64_t least,
                                        std::int64_t most);
    /// For a value that may have one of several types. Returns null when it is absent.
    const toml::node* Any(const std::string& key);

    /// Reports that the value of the key is not what it must be.
    void Refuse(const std::string& key, const std::string& must);
    /// Reports that the table as a whole is wrong.
    void Refuse(const std::string& what);

    void AllRead();

private:
    const std::string name_;
    const toml::table& table_;
    std::vector<Mistake>& mistakes_;
    std::vector<std::string> known_;
};

/// These return "a, b or c" and "a, b, c".
std::string Alternatives(const std::vector<std::string>& items);
std::string Enumeration(std::vector<std::string> items);

}  // namespace PlenxService

#endif  // PLENXSERVICE_SCENARIO_SECTION_H
