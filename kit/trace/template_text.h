// Texts with places: "start service ({svc}) is pushed". A place takes the
// words that stand there.

#ifndef PLENXKIT_TRACE_TEMPLATE_TEXT_H
#define PLENXKIT_TRACE_TEMPLATE_TEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace PlenxTrace {

/// The words that the places of a text took, by the names of the places. They refer to the text.
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

/// Whether the whole of text has the shape of the pattern. {text} takes as little as it can, and
/// may take nothing. {word} and {name} take one word. Every other place takes a decimal number.
bool Matches(std::string_view pattern, std::string_view text, Captures& captures);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_TEMPLATE_TEXT_H
