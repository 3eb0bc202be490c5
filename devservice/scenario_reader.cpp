#include "scenario_reader.h"

#include <algorithm>
#include <utility>

#include "scenario_message.h"
#include "scenario_section.h"
#include "wire/catalog.h"

namespace PlenxService {
namespace {

using PlenxWire::Direction;

constexpr std::int64_t kInt32Least = -2147483648LL;
constexpr std::int64_t kInt32Most = 2147483647LL;
constexpr std::int64_t kUint32Most = 4294967295LL;
constexpr std::int64_t kMostMilliseconds = 10 * 60 * 1000;
constexpr std::int64_t kMostTimes = 10000;

enum class Kind { kFlag, kCode, kTime, kCount, kReply, kHow };

struct Key {
    const char* name;
    Kind kind;
    const char* setting;  // of the control file
};

const std::vector<Key> kStartKeys = {
    {"crash", Kind::kFlag, "start_crash"},  {"delay_ms", Kind::kTime, "start_delay"},
    {"die", Kind::kFlag, "start_die"},      {"fail", Kind::kCode, "start_fail"},
    {"hint_ms", Kind::kTime, "start_hint"}, {"never", Kind::kFlag, "start_never"},
    {"serve", Kind::kFlag, "serve"},        {"silent_ms", Kind::kTime, "start_silent"},
};

const std::vector<Key> kStopKeys = {
    {"accept", Kind::kFlag, "accept_stop"},  {"after_ms", Kind::kTime, "stop_after"},
    {"delay_ms", Kind::kTime, "stop_delay"}, {"how", Kind::kHow, "stop"},
    {"linger_ms", Kind::kTime, "linger"},
};

const std::vector<Key> kOnKeys = {
    {"answer", Kind::kCode, "answer"},  {"crash", Kind::kFlag, "crash"},
    {"delay_ms", Kind::kTime, "delay"}, {"die", Kind::kFlag, "die"},
    {"fault", Kind::kCode, "fault"},    {"hostile", Kind::kFlag, "hostile"},
    {"notify", Kind::kFlag, "notify"},  {"repeat", Kind::kCount, "repeat"},
    {"reply", Kind::kReply, "reply"},   {"result", Kind::kCode, "result"},
};

const std::vector<std::string> kServices = {"office", "pc", "phone"};
const std::vector<std::string> kHows = {"normal", "ignore", "never"};
const std::vector<std::string> kReplies = {"normal", "empty", "garbage", "short", "large", "lie"};
const std::vector<std::string> kTables = {"title",  "about",  "service",   "[start]",
                                          "[stop]", "[[on]]", "[[notify]]"};
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

// A text in a list of words, or nothing.
std::optional<std::string> OneOf(Section& section, const char* key,
                                 const std::vector<std::string>& allowed) {
    const std::optional<std::string> text = section.Text(key);
    if (text && !Contains(allowed, *text)) {
        section.Refuse(key, Alternatives(Quoted(allowed)));
        return std::nullopt;
    }
    return text;
}

std::optional<std::string> ReplyOf(Section& section, const char* key) {
    const std::optional<std::string> text = section.Text(key);
    std::vector<std::uint8_t> bytes;
    const bool hex = text && text->compare(0, 4, "hex:") == 0 && ParseBytes(text->substr(4), bytes);
    if (text && !hex && !Contains(kReplies, *text)) {
        section.Refuse(
            key, Alternatives(Quoted(kReplies)) + ", or \"hex:\" with pairs of hexadecimal digits");
        return std::nullopt;
    }
    return text;
}

std::optional<std::string> AsText(const std::optional<std::int64_t>& number) {
    return number ? std::optional<std::string>(std::to_string(*number)) : std::nullopt;
}

// As the control file would say it.
std::optional<std::string> SettingOf(Section& section, const Key& key) {
    switch (key.kind) {
    case Kind::kFlag: {
        const std::optional<bool> flag = section.Flag(key.name);
        return flag ? std::optional<std::string>(*flag ? "yes" : "no") : std::nullopt;
    }
    case Kind::kCode:
        return AsText(section.Integer(key.name, kInt32Least, kUint32Most));
    case Kind::kTime:
        return AsText(section.Integer(key.name, 0, kMostMilliseconds));
    case Kind::kCount:
        return AsText(section.Integer(key.name, 1, kMostTimes));
    case Kind::kReply:
        return ReplyOf(section, key.name);
    case Kind::kHow:
        return OneOf(section, key.name, kHows);
    }
    return std::nullopt;
}

Values SettingsOf(Section& section, const std::vector<Key>& keys) {
    Values values;
    for (const Key& key : keys) {
        if (const std::optional<std::string> value = SettingOf(section, key)) {
            values[key.setting] = *value;
        }
    }
    return values;
}

// A request by its name or number; other numbers than those in use are allowed.
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
    explicit Reader(std::vector<Mistake>& mistakes) : mistakes_(mistakes) {}

    Scenario Read(const toml::table& file) {
        Section top("the file", file, mistakes_);
        Scenario scenario;
        scenario.title = top.Text("title").value_or("");
        scenario.about = top.Text("about").value_or("");
        service_ = OneOf(top, "service", kServices).value_or("");
        ReadLife(top, kStart, kStartKeys, scenario);
        ReadLife(top, kStop, kStopKeys, scenario);
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
        for (const auto& [key, value] : file) {
            const std::string name(key.str());
            const bool known = Contains(kTables, name) || Contains(kTables, "[" + name + "]") ||
                               Contains(kTables, "[[" + name + "]]");
            if (!known) {
                mistakes_.push_back(
                    {key.source().begin.line,
                     "unknown key " + name + "; there are " + Enumeration(kTables)});
            }
        }
    }

    void ReadLife(Section& top, const char* name, const std::vector<Key>& keys,
                  Scenario& scenario) {
        const toml::node* const node = top.Any(name);
        if (!node) {
            return;
        }
        const std::string title = std::string("[") + name + "]";
        if (!node->is_table()) {
            Refuse(*node, std::string(name) + " must be one table, " + title);
            return;
        }
        Section section(title, *node->as_table(), mistakes_);
        LifePart part;
        part.line = node->source().begin.line;
        part.moment = std::string_view(name) == kStart ? Moment::kStart : Moment::kStop;
        part.scope = ScopeOf(section);
        part.values = SettingsOf(section, keys);
        section.AllRead();
        scenario.life.push_back(std::move(part));
    }

    std::vector<const toml::table*> TablesOf(Section& top, const char* name) {
        std::vector<const toml::table*> tables;
        const toml::node* const node = top.Any(name);
        const toml::array* const array = node ? node->as_array() : nullptr;
        if (node && (!array || !array->is_homogeneous<toml::table>())) {
            Refuse(*node, std::string(name) + " must be tables, [[" + name + "]]");
            return tables;
        }
        for (std::size_t i = 0; array && i != array->size(); ++i) {
            tables.push_back(array->get(i)->as_table());
        }
        return tables;
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
        step.values = SettingsOf(section, kOnKeys);
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
        // Which other keys there are, only a good send tells.
        section.AllRead();
    }

    std::vector<Mistake>& mistakes_;
    std::string service_;
};

}  // namespace

ReadScenario ReadScenarioText(std::string_view text) {
    ReadScenario result;
    try {
        result.scenario = Reader(result.mistakes).Read(toml::parse(text));
    } catch (const toml::parse_error& error) {
        result.mistakes.push_back(
            {error.source().begin.line, "this is no TOML: " + std::string(error.description())});
    }
    std::stable_sort(result.mistakes.begin(), result.mistakes.end(),
                     [](const Mistake& a, const Mistake& b) { return a.line < b.line; });
    return result;
}

std::string Located(const std::string& file, const Mistake& mistake) {
    return file + ":" + std::to_string(mistake.line) + ": " + mistake.text;
}

}  // namespace PlenxService
