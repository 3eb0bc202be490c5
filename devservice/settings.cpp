#include "settings.h"

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <utility>

#include "wire/catalog.h"

namespace PlenxService {
namespace {

enum class Kind { kFlag, kNumber, kReply, kStop, kText };

struct Key {
    const char* name;
    Kind kind;
    bool perRequest;
};

constexpr Key kKeys[] = {
    // while it starts
    {"start_hint", Kind::kNumber, false},
    {"start_delay", Kind::kNumber, false},
    {"start_silent", Kind::kNumber, false},
    {"start_never", Kind::kFlag, false},
    {"start_fail", Kind::kNumber, false},
    {"start_crash", Kind::kFlag, false},
    {"start_die", Kind::kFlag, false},
    {"serve", Kind::kFlag, false},
    {"accept_stop", Kind::kFlag, false},
    // at each request
    {"times", Kind::kNumber, true},
    {"crash", Kind::kFlag, true},
    {"die", Kind::kFlag, true},
    {"delay", Kind::kNumber, true},
    {"fault", Kind::kNumber, true},
    {"result", Kind::kNumber, true},
    {"answer", Kind::kNumber, true},
    {"reply", Kind::kReply, true},
    {"notify", Kind::kFlag, true},
    {"repeat", Kind::kNumber, true},
    {"hostile", Kind::kFlag, true},
    // when it is to stop
    {"stop", Kind::kStop, false},
    {"stop_after", Kind::kNumber, false},
    {"stop_delay", Kind::kNumber, false},
    {"linger", Kind::kNumber, false},
    // always
    {"log", Kind::kText, false},
    {"scenario", Kind::kText, false},
};

constexpr std::string_view kNicknames[] = {"office", "pc", "phone"};

const Key* FindKey(std::string_view name) {
    for (const Key& key : kKeys) {
        if (name == key.name) {
            return &key;
        }
    }
    return nullptr;
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<bool> ParseFlag(std::string_view text) {
    if (text == "yes" || text == "1") {
        return true;
    }
    if (text == "no" || text == "0") {
        return false;
    }
    return std::nullopt;
}

bool IsReply(std::string_view value) {
    std::vector<std::uint8_t> bytes;
    return value == "normal" || value == "empty" || value == "garbage" || value == "short" ||
           value == "lie" || value == "large" ||
           (value.substr(0, 4) == "hex:" && ParseBytes(value.substr(4), bytes));
}

bool Fits(Kind kind, std::string_view value) {
    std::int64_t number = 0;
    switch (kind) {
    case Kind::kFlag:
        return ParseFlag(value).has_value();
    case Kind::kNumber:
        return ParseNumber(value, number);
    case Kind::kReply:
        return IsReply(value);
    case Kind::kStop:
        return value == "normal" || value == "ignore" || value == "never";
    case Kind::kText:
        return true;
    }
    return false;
}

// A request may be written with its name or its number; the number is kept.
std::string RequestNumber(std::string_view text) {
    std::int64_t number = 0;
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(text);
    if (shape) {
        return std::to_string(shape->id);
    }
    return ParseNumber(text, number) ? std::to_string(number) : std::string();
}

}  // namespace

Settings::Settings(std::string_view fileText, const std::string& nickname, Values below)
    : general_(std::move(below)) {
    constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
    if (fileText.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        fileText.remove_prefix(kByteOrderMark.size());
    }
    for (std::size_t number = 1; !fileText.empty(); ++number) {
        const std::size_t end = fileText.find('\n');
        try {
            TakeLine(Trimmed(fileText.substr(0, end)), nickname);
        } catch (const std::invalid_argument& error) {
            complaints_.push_back("line " + std::to_string(number) + ": " + error.what());
        }
        fileText.remove_prefix(end == std::string_view::npos ? fileText.size() : end + 1);
    }
}

void Settings::TakeLine(std::string_view line, const std::string& nickname) {
    if (line.empty() || line[0] == '#' || line[0] == ';') {
        return;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
        throw std::invalid_argument("no key=value");
    }
    std::string_view key = Trimmed(line.substr(0, equals));
    const std::string_view value = Trimmed(line.substr(equals + 1));
    bool ours = true;
    bool particular = false;
    for (const std::string_view service : kNicknames) {
        if (key.size() > service.size() && key.substr(0, service.size()) == service &&
            key[service.size()] == '.') {
            key.remove_prefix(service.size() + 1);
            ours = service == nickname;
            particular = true;
            break;
        }
    }
    const std::string checked = CheckedKey(key, value);
    if (ours) {
        (particular ? particular_ : general_)[checked] = value;
    }
}

std::string Settings::CheckedKey(std::string_view key, std::string_view value) {
    const std::size_t dot = key.find('.');
    const std::string name(key.substr(0, dot));
    const Key* const known = FindKey(name);
    if (!known) {
        throw std::invalid_argument("unknown key " + name);
    }
    if (!Fits(known->kind, value)) {
        throw std::invalid_argument("bad value of " + name + ": " + std::string(value));
    }
    if (dot == std::string_view::npos) {
        return name;
    }
    const std::string request = RequestNumber(key.substr(dot + 1));
    if (!known->perRequest || request.empty()) {
        throw std::invalid_argument("unknown key " + std::string(key));
    }
    return name + "." + request;
}

const std::string* Settings::Find(std::string_view key, std::int32_t request) const {
    const std::string plain(key);
    const std::string ofRequest = plain + "." + std::to_string(request);
    for (const std::string& name : {ofRequest, plain}) {
        for (const auto* values : {&particular_, &general_}) {
            if (const auto found = values->find(name); found != values->end()) {
                return &found->second;
            }
        }
    }
    return nullptr;
}

bool Settings::Has(std::string_view key, std::int32_t request) const {
    return Find(key, request) != nullptr;
}

bool Settings::Flag(std::string_view key, std::int32_t request) const {
    // what is on unless it is switched off
    const bool otherwise = key == "serve" || key == "accept_stop" || key == "notify";
    const std::string* const value = Find(key, request);
    return value ? ParseFlag(*value).value_or(otherwise) : otherwise;
}

std::int64_t Settings::Number(std::string_view key, std::int64_t otherwise,
                              std::int32_t request) const {
    const std::string* const value = Find(key, request);
    std::int64_t number = otherwise;
    return value && ParseNumber(*value, number) ? number : otherwise;
}

std::string Settings::Text(std::string_view key, std::int32_t request) const {
    const std::string* const value = Find(key, request);
    return value ? *value : std::string();
}

bool ParseNumber(std::string_view text, std::int64_t& number) {
    const std::string copy(text);
    const std::size_t digits = copy.find_first_not_of("+-");
    if (digits == std::string::npos || digits > 1 || copy[digits] < '0' || copy[digits] > '9') {
        return false;
    }
    const bool hexadecimal = copy.compare(digits, 2, "0x") == 0;
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(copy.c_str(), &end, hexadecimal ? 16 : 10);
    if (errno != 0 || end != copy.c_str() + copy.size()) {
        return false;
    }
    number = value;
    return true;
}

bool ParseBytes(std::string_view text, std::vector<std::uint8_t>& bytes) {
    std::string digits;
    for (const char letter : text) {
        if (letter == ' ') {
            continue;
        }
        if (std::string_view("0123456789abcdefABCDEF").find(letter) == std::string_view::npos) {
            return false;
        }
        digits += letter;
    }
    if (digits.size() % 2 != 0) {
        return false;
    }
    bytes.clear();
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    }
    return true;
}

}  // namespace PlenxService
