#include "scenario_section.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace PlenxService {
namespace {

constexpr std::size_t kMostShown = 60;

std::string Shown(const toml::node& node) {
    std::ostringstream stream;
    node.visit([&](const auto& value) { stream << value; });
    const std::string text = stream.str();
    return text.size() > kMostShown ? text.substr(0, kMostShown) + "..." : text;
}

std::string Joined(const std::vector<std::string>& items, const std::string& last) {
    std::string text;
    for (std::size_t i = 0; i != items.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == items.size() ? last : ", ") + items[i];
    }
    return text;
}

}  // namespace

Section::Section(std::string name, const toml::table& table, std::vector<Mistake>& mistakes)
    : name_(std::move(name)), table_(table), mistakes_(mistakes) {}

const toml::node* Section::Any(const std::string& key) {
    known_.push_back(key);
    return table_.get(key);
}

std::optional<std::string> Section::Text(const std::string& key) {
    const toml::node* const node = Any(key);
    if (node && !node->is_string()) {
        Refuse(key, "a text in quotes");
        return std::nullopt;
    }
    return node ? node->value<std::string>() : std::nullopt;
}

std::optional<bool> Section::Flag(const std::string& key) {
    const toml::node* const node = Any(key);
    if (node && !node->is_boolean()) {
        Refuse(key, "true or false");
        return std::nullopt;
    }
    return node ? node->value<bool>() : std::nullopt;
}

std::optional<std::int64_t> Section::Integer(const std::string& key, std::int64_t least,
                                             std::int64_t most) {
    const toml::node* const node = Any(key);
    if (!node) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> number =
        node->is_integer() ? node->value<std::int64_t>() : std::nullopt;
    if (!number || *number < least || *number > most) {
        Refuse(key, "an integer from " + std::to_string(least) + " to " + std::to_string(most));
        return std::nullopt;
    }
    return number;
}

void Section::Refuse(const std::string& key, const std::string& must) {
    const toml::node& node = *table_.get(key);
    mistakes_.push_back({node.source().begin.line,
                         key + " = " + Shown(node) + " in " + name_ + " must be " + must});
}

void Section::Refuse(const std::string& what) {
    mistakes_.push_back({table_.source().begin.line, name_ + " " + what});
}

void Section::AllRead() {
    for (const auto& [key, value] : table_) {
        const std::string name(key.str());
        if (std::find(known_.begin(), known_.end(), name) == known_.end()) {
            mistakes_.push_back(
                {key.source().begin.line,
                 "unknown key " + name + " in " + name_ + "; there are " + Enumeration(known_)});
        }
    }
}

std::string Alternatives(const std::vector<std::string>& items) {
    return Joined(items, " or ");
}

std::string Enumeration(std::vector<std::string> items) {
    std::sort(items.begin(), items.end());
    return Joined(items, " and ");
}

}  // namespace PlenxService
