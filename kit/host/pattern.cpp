#include "host/pattern.h"

#include <algorithm>
#include <iterator>

#include "host/arguments.h"
#include "host/text.h"

namespace PlenxHost {
namespace {

constexpr FieldShape kObserverField = {"observer", FieldKind::kText};
constexpr const char* kServiceField = "svcType";

const NotificationShape& ShapeOf(const Word& name) {
    std::string known;
    for (const NotificationShape& shape : NotificationShapes()) {
        if (name.text == shape.name) {
            return shape;
        }
        known += std::string(" ") + shape.name;
    }
    throw ScriptError("no notification is named " + Quote(name.text, 60) + "; the names are" +
                      known);
}

std::int64_t StatusKindOf(const Word& word) {
    constexpr const char* kNames[] = {"start", "stop", "online", "offline"};
    const auto name = std::find_if(std::begin(kNames), std::end(kNames),
                                   [&](const char* candidate) { return word.Is(candidate); });
    if (name != std::end(kNames)) {
        return name - std::begin(kNames);
    }
    return Bits32Of(word, "a status kind (start, stop, online, offline)");
}

bool BoolOf(const Word& word) {
    const bool isTrue = word.Is("true") || word.Is("1");
    if (!isTrue && !word.Is("false") && !word.Is("0")) {
        throw ScriptError("write true or false, not " + Quote(word.text, 60));
    }
    return isTrue;
}

Field Wanted(const FieldShape& shape, const Word& word) {
    switch (shape.kind) {
    case FieldKind::kServiceType:
        return {shape.name, std::int64_t{ServiceTypeOf(word)}};
    case FieldKind::kStatusKind:
        return {shape.name, StatusKindOf(word)};
    case FieldKind::kNumber:
        return {shape.name, std::int64_t{Bits32Of(word, shape.name)}};
    case FieldKind::kBool:
        return {shape.name, BoolOf(word)};
    case FieldKind::kText:
        break;
    }
    return {shape.name, TextOf(word)};
}

// The argument that a word of the form name=value names; null when the word is a plain value.
const FieldShape* NamedField(const NotificationShape& shape, const Word& word) {
    const auto hasName = [&](const FieldShape& field) {
        return word.Has(std::string(field.name) + "=");
    };
    if (hasName(kObserverField)) {
        return &kObserverField;
    }
    const auto field = std::find_if(shape.fields.begin(), shape.fields.end(), hasName);
    return field == shape.fields.end() ? nullptr : &*field;
}

Word ValueAfterName(const Word& word, const FieldShape& field) {
    const std::size_t length = std::string(field.name).size() + 1;
    return {word.text.substr(length), word.bare - length};
}

bool Equal(const Field& wanted, const Field& actual) {
    const auto* number = std::get_if<std::int64_t>(&wanted.value);
    const auto* other = std::get_if<std::int64_t>(&actual.value);
    if (number != nullptr && other != nullptr) {
        return static_cast<std::uint32_t>(*number) == static_cast<std::uint32_t>(*other);
    }
    return wanted.value == actual.value;
}

bool Fits(const Field& wanted, const Notification& notification) {
    if (std::string(wanted.name) == kObserverField.name) {
        return std::get<std::string>(wanted.value) == notification.observer;
    }
    return std::any_of(notification.fields.begin(), notification.fields.end(),
                       [&](const Field& field) {
                           return std::string(field.name) == wanted.name && Equal(wanted, field);
                       });
}

}  // namespace

Pattern::Pattern(const std::vector<Word>& words) {
    if (words.empty()) {
        throw ScriptError("the name of a notification is missing");
    }
    if (words[0].Is("*")) {
        if (words.size() > 1) {
            throw ScriptError("no arguments may follow *");
        }
        return;
    }
    const NotificationShape& shape = ShapeOf(words[0]);
    name_ = shape.name;
    std::size_t position = 0;
    for (std::size_t i = 1; i != words.size(); ++i) {
        if (const FieldShape* field = NamedField(shape, words[i])) {
            wanted_.push_back(Wanted(*field, ValueAfterName(words[i], *field)));
            continue;
        }
        if (position == shape.fields.size()) {
            throw ScriptError(name_ + " has no argument for " + Quote(words[i].text, 60));
        }
        const FieldShape& field = shape.fields[position++];
        if (!words[i].Is("*")) {
            wanted_.push_back(Wanted(field, words[i]));
        }
    }
}

bool Pattern::Matches(const Notification& notification) const {
    if (name_.empty()) {
        return true;
    }
    if (name_ != notification.name) {
        return false;
    }
    return std::all_of(wanted_.begin(), wanted_.end(),
                       [&](const Field& wanted) { return Fits(wanted, notification); });
}

bool Pattern::IsNearMiss(const Notification& notification) const {
    const auto isOtherService = [&](const Field& wanted) {
        return std::string(wanted.name) == kServiceField && !Fits(wanted, notification);
    };
    return name_ == notification.name && !Matches(notification) &&
           std::none_of(wanted_.begin(), wanted_.end(), isOtherService);
}

bool Pattern::IsOpposite(const Notification& notification) const {
    const auto isNamed = [&](const Field& field) {
        return std::any_of(wanted_.begin(), wanted_.end(), [&](const Field& wanted) {
            return std::string(wanted.name) == field.name;
        });
    };
    const auto misses = [&](const Field& wanted) { return !Fits(wanted, notification); };
    const auto missed = std::find_if(wanted_.begin(), wanted_.end(), misses);
    return name_ == notification.name && missed != wanted_.end() &&
           std::holds_alternative<bool>(missed->value) &&
           std::none_of(std::next(missed), wanted_.end(), misses) &&
           std::all_of(notification.fields.begin(), notification.fields.end(), isNamed);
}

}  // namespace PlenxHost
