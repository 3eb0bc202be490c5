#include "scenario_reader.h"

#include <algorithm>
#include <utility>

#include "hex_bytes.h"
#include "scenario_message.h"
#include "scenario_section.h"
#include "wire/catalog.h"

namespace PlenxService {
namespace {

using PlenxWire::Direction;

constexpr std::int64_t kInt32Least = -2147483648LL;
constexpr std::int64_t kInt32Most = 2147483647LL;
constexpr std::int64_t kUint32Most = 4294967295LL;
constexpr std::int64_t kMostMilliseconds = std::int64_t{10} * 60 * 1000;
constexpr std::int64_t kMostTimes = 10000;

enum class Kind { kFlag, kCode, kTime, kCount, kReply, kHow };

struct Key {
    const char* name;
    Kind kind;
};

const std::vector<Key> kStartKeys = {
    {"crash", Kind::kFlag}, {"delay_ms", Kind::kTime},  {"die", Kind::kFlag},
    {"fail", Kind::kCode},  {"hint_ms", Kind::kTime},   {"never", Kind::kFlag},
    {"serve", Kind::kFlag}, {"silent_ms", Kind::kTime},
};

const std::vector<Key> kStopKeys = {
    {"accept", Kind::kFlag}, {"after_ms", Kind::kTime},  {"delay_ms", Kind::kTime},
    {"how", Kind::kHow},     {"linger_ms", Kind::kTime},
};

const std::vector<Key> kOnKeys = {
    {"answer", Kind::kCode},        {"crash", Kind::kFlag},     {"delay_ms", Kind::kTime},
    {"die", Kind::kFlag},           {"fault", Kind::kCode},     {"hostile", Kind::kFlag},
    {"leak_handles", Kind::kCount}, {"leak_kib", Kind::kCount}, {"notify", Kind::kFlag},
    {"repeat", Kind::kCount},       {"reply", Kind::kReply},    {"result", Kind::kCode},
};

const std::vector<std::string> kServices = {"office", "pc", "phone"};
const std::vector<std::string> kHows = {"normal", "ignore", "never"};
const std::vector<std::string> kReplies = {"normal", "empty", "garbage", "short", "large", "lie"};
const std::vector<std::string> kTables = {"title",  "about",  "service",   "[start]",
                                          "[stop]", "[[on]]", "[[notify]]"};
constexpr const char* kLog = "log";
constexpr const char* kScenario = "scenario";
constexpr const char* kStart = "start";
constexpr const char* kStop = "stop";
constexpr const char* kHostile = "hostile";

bool Contains(const std::vector<std::string>& items, const std::string& item) {
    return std::find(items.begin(), items.end(), item) != items.end();
}

std::vector<std::string> Quoted(std::vector<std::string> items) {
    for (std::string& item : items) {
        item = '"' + item + '"';
    }
    return items;
}

std::vector<std::string> NamesOf(Direction direction) {
    std::vector<std::string> names;
    for (const PlenxWire::MessageShape& shape : PlenxWire::Catalog()) {
        if (shape.direction == direction) {
            names.emplace_back(shape.name);
        }
    }
    return names;
}

// Returns a text if it is one of the words.
std::optional<std::string> OneOf(Section& section, const char* key,
                                 const std::vector<std::string>& allowed) {
    std::optional<std::string> text = section.Text(key);
    if (text && !Contains(allowed, *text)) {
        section.Refuse(key, Alternatives(Quoted(allowed)));
        return std::nullopt;
    }
    return text;
}

std::optional<std::string> ReplyOf(Section& section, const char* key) {
    std::optional<std::string> text = section.Text(key);
    std::vector<std::uint8_t> bytes;
    const bool hex = text && text->compare(0, 4, "hex:") == 0 && ParseBytes(text->substr(4), bytes);
    if (text && !hex && !Contains(kReplies, *text)) {
        section.Refuse(
            key, Alternatives(Quoted(kReplies)) + ", or \"hex:\" with pairs of hexadecimal digits");
        return std::nullopt;
    }
    return text;
}

std::optional<Value> ValueOf(Section& section, const Key& key) {
    switch (key.kind) {
    case Kind::kFlag:
        return section.Flag(key.name);
    case Kind::kCode:
        return section.Integer(key.name, kInt32Least, kUint32Most);
    case Kind::kTime:
        return section.Integer(key.name, 0, kMostMilliseconds);
    case Kind::kCount:
        return section.Integer(key.name, 1, kMostTimes);
    case Kind::kReply:
        return ReplyOf(section, key.name);
    case Kind::kHow:
        return OneOf(section, key.name, kHows);
    }
    return std::nullopt;
}

Values ValuesOf(Section& section, const std::vector<Key>& keys) {
    Values::Map values;
    for (const Key& key : keys) {
        if (std::optional<Value> value = ValueOf(section, key)) {
            values[key.name] = std::move(*value);
        }
    }
    return Values(std::move(values));
}

// Returns a request by its name or number. Any number is allowed, even one that is not in use.
std::optional<std::int32_t> RequestOf(Section& section, const char* key,
                                      const std::vector<std::string>& otherWords) {
    const toml::node* const node = section.Any(key);
    if (!node) {
        return std::nullopt;
    }
    if (const auto number = node->value_exact<std::int64_t>();
        number && *number >= kInt32Least && *number <= kInt32Most) {
        return static_cast<std::int32_t>(*number);
    }
    std::vector<std::string> names = NamesOf(Direction::kRequest);
    const std::optional<std::string> name = node->value_exact<std::string>();
    if (name && Contains(names, *name)) {
        return PlenxWire::FindMessage(*name)->id;
    }
    if (!name || !Contains(otherWords, *name)) {
        names.insert(names.begin(), otherWords.begin(), otherWords.end());
        section.Refuse(key, Alternatives(Quoted(names)) + ", or a number");
    }
    return std::nullopt;
}

class Reader {
public:
    Reader(FileKind kind, std::vector<Mistake>& mistakes) : kind_(kind), mistakes_(mistakes) {}

    Scenario Read(const toml::table& file) {
        Section top("the file", file, mistakes_);
        Scenario scenario;
        scenario.title = top.Text("title").value_or("");
        scenario.about = top.Text("about").value_or("");
        service_ = OneOf(top, "service", kServices).value_or("");
        if (kind_ == FileKind::kControl) {
            scenario.log = top.Text(kLog).value_or("");
            scenario.below = top.Text(kScenario).value_or("");
        }
        for (const toml::table* table : LifeTablesOf(top, kStart)) {
            scenario.life.push_back(LifePartOf(*table, Moment::kStart, "[start]", kStartKeys));
        }
        for (const toml::table* table : LifeTablesOf(top, kStop)) {
            scenario.life.push_back(LifePartOf(*table, Moment::kStop, "[stop]", kStopKeys));
        }
        for (const toml::table* table : TablesOf(top, "on")) {
            scenario.steps.push_back(StepOf(*table));
        }
        for (const toml::table* table : TablesOf(top, "notify")) {
            scenario.schedules.push_back(ScheduleOf(*table));
        }
        RefuseOthers(file);
        return scenario;
    }

private:
    void Refuse(const toml::node& node, const std::string& text) {
        mistakes_.push_back({node.source().begin.line, text});
    }

    void RefuseOthers(const toml::table& file) {
        std::vector<std::string> all = kTables;
        if (kind_ == FileKind::kControl) {
            all.insert(all.end(), {kLog, kScenario});
        }
        for (const auto& [key, value] : file) {
            const std::string name(key.str());
            const bool known = Contains(all, name) || Contains(all, "[" + name + "]") ||
                               Contains(all, "[[" + name + "]]");
            if (!known) {
                mistakes_.push_back({key.source().begin.line,
                                     "unknown key " + name + "; there are " + Enumeration(all)});
            }
        }
    }

    // Usually there is one table. Several tables are for several services.
    std::vector<const toml::table*> LifeTablesOf(Section& top, const std::string& name) {
        const toml::node* const node = top.Any(name);
        if (node && node->is_table()) {
            return {node->as_table()};
        }
        return TablesIn(node,
                        name + " must be a table, [" + name + "], or tables, [[" + name + "]]");
    }

    std::vector<const toml::table*> TablesOf(Section& top, const std::string& name) {
        return TablesIn(top.Any(name), name + " must be tables, [[" + name + "]]");
    }

    std::vector<const toml::table*> TablesIn(const toml::node* node, const std::string& must) {
        std::vector<const toml::table*> tables;
        const toml::array* const array = node ? node->as_array() : nullptr;
        if (node && (!array || !array->is_homogeneous<toml::table>())) {
            Refuse(*node, must);
            return tables;
        }
        for (std::size_t i = 0; array && i != array->size(); ++i) {
            tables.push_back(array->get(i)->as_table());
        }
        return tables;
    }

    LifePart LifePartOf(const toml::table& table, Moment moment, const char* title,
                        const std::vector<Key>& keys) {
        Section section(title, table, mistakes_);
        LifePart part;
        part.line = table.source().begin.line;
        part.moment = moment;
        part.scope = ScopeOf(section);
        part.values = ValuesOf(section, keys);
        section.AllRead();
        return part;
    }

    Scope ScopeOf(Section& section) {
        Scope scope;
        scope.service = OneOf(section, "service", kServices).value_or(service_);
        scope.runs = section.Integer("runs", 1, kMostTimes).value_or(kUnlimited);
        return scope;
    }

    Step StepOf(const toml::table& table) {
        Section section("[[on]]", table, mistakes_);
        Step step;
        step.line = table.source().begin.line;
        step.scope = ScopeOf(section);
        step.request = RequestOf(section, "request", {});
        step.skip = section.Integer("skip", 0, kMostTimes).value_or(0);
        step.times = section.Integer("times", 1, kMostTimes).value_or(kUnlimited);
        step.values = ValuesOf(section, kOnKeys);
        section.AllRead();
        return step;
    }

    Schedule ScheduleOf(const toml::table& table) {
        Section section("[[notify]]", table, mistakes_);
        Schedule schedule;
        schedule.line = table.source().begin.line;
        schedule.scope = ScopeOf(section);
        if (const auto request = RequestOf(section, "on", {kStart, kStop})) {
            schedule.moment = Moment::kRequest;
            schedule.request = *request;
        } else if (section.Has("on") && table["on"].value<std::string>() == kStop) {
            schedule.moment = Moment::kStop;
        }
        schedule.after = section.Integer("after_ms", 0, kMostMilliseconds).value_or(0);
        schedule.every = section.Integer("every_ms", 0, kMostMilliseconds).value_or(0);
        schedule.times = section.Integer("times", 1, kMostTimes).value_or(1);
        ReadNotification(section, schedule);
        return schedule;
    }

    void ReadNotification(Section& section, Schedule& schedule) {
        std::vector<std::string> names = NamesOf(Direction::kNotification);
        names.emplace_back(kHostile);
        const std::string allowed = Alternatives(Quoted(names)) + ", or a number";
        const toml::node* const send = section.Any("send");
        if (!send) {
            section.Refuse("has no send; it must be " + allowed);
            return;
        }
        const auto id = send->value_exact<std::int64_t>();
        const auto name = send->value_exact<std::string>();
        if (id && *id >= kInt32Least && *id <= kInt32Most) {
            schedule.notification = RawNotificationOf(section, static_cast<std::int32_t>(*id));
        } else if (name == kHostile) {
            schedule.hostile = true;
        } else if (name && Contains(names, *name)) {
            schedule.notification = NotificationOf(section, *PlenxWire::FindMessage(*name));
        } else {
            section.Refuse("send", allowed);
            return;
        }
        // The allowed keys depend on send, so they can be checked only if send is valid.
        section.AllRead();
    }

    const FileKind kind_;
    std::vector<Mistake>& mistakes_;
    std::string service_;
};

}  // namespace

ReadScenario ReadScenarioText(std::string_view text, FileKind kind) {
    ReadScenario result;
    try {
        result.scenario = Reader(kind, result.mistakes).Read(toml::parse(text));
    } catch (const toml::parse_error& error) {
        result.mistakes.push_back({error.source().begin.line,
                                   "this is not valid TOML: " + std::string(error.description())});
    }
    std::stable_sort(result.mistakes.begin(), result.mistakes.end(),
                     [](const Mistake& a, const Mistake& b) { return a.line < b.line; });
    return result;
}

std::string Located(const std::string& file, const Mistake& mistake) {
    return file + ":" + std::to_string(mistake.line) + ": " + mistake.text;
}

}  // namespace PlenxService
