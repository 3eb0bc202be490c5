// The values of one table by their keys in the file.

#ifndef PLENXSERVICE_VALUES_H
#define PLENXSERVICE_VALUES_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace PlenxService {

using Value = std::variant<bool, std::int64_t, std::string>;

class Values {
public:
    using Map = std::map<std::string, Value, std::less<>>;

    Values() = default;
    explicit Values(Map map) : map_(std::move(map)) {}

    bool Has(std::string_view key) const { return map_.find(key) != map_.end(); }

    // These return `otherwise` when the key is absent.
    bool Flag(std::string_view key, bool otherwise = false) const { return Find(key, otherwise); }
    std::int64_t Number(std::string_view key, std::int64_t otherwise = 0) const {
        return Find(key, otherwise);
    }
    std::string Text(std::string_view key) const { return Find(key, std::string()); }

    /// Takes over the values of keys that are missing here.
    void Add(const Values& more) { map_.insert(more.map_.begin(), more.map_.end()); }

    bool operator==(const Values& other) const { return map_ == other.map_; }

private:
    template <class Type>
    Type Find(std::string_view key, const Type& otherwise) const {
        const auto found = map_.find(key);
        const Type* const value = found == map_.end() ? nullptr : std::get_if<Type>(&found->second);
        return value ? *value : otherwise;
    }

    Map map_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_VALUES_H
