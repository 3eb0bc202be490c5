// Texts with places: "start service ({svc}) is pushed". A place takes what stands there.

#ifndef PLENXKIT_TRACE_TEMPLATE_TEXT_H
#define PLENXKIT_TRACE_TEMPLATE_TEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace PlenxTrace {

/// What the places of a text took, by their names. They refer to the text.
class Captures {
public:
    void Set(std::string_view name, std::string_view value) { values_.emplace_back(name, value); }
    void Clear() { values_.clear(); }
    std::optional<std::string_view> Text(std::string_view name) const;
    std::optional<std::int64_t> Number(std::string_view name) const;

private:
    std::vector<std::pair<std::string_view, std::string_view>> values_;
};

inline bool IsDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// Whether the whole of text has the shape of the pattern. {text} takes as little as it can, maybe
/// nothing; {word} and {name} one word; every other place a decimal number.
bool Matches(std::string_view pattern, std::string_view text, Captures& captures);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_TEMPLATE_TEXT_H
