#include "distributedfile/requested_failure.h"

#include <charconv>
#include <optional>
#include <system_error>

namespace Office {
namespace {

std::string_view Trim(std::string_view text) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

// Removes the text up to and including the separator from the front of rest, and returns it
// without the separator.
std::string_view TakeUntil(std::string_view& rest, char separator) {
    const std::size_t end = rest.find(separator);
    const std::string_view front = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return front;
}

std::optional<int> ParseCode(std::string_view text) {
    int code = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, code);
    if (error != std::errc() || rest != end) {
        return std::nullopt;
    }
    return code;
}

}  // namespace

int RequestedFailure(std::string_view list, std::string_view operation) noexcept {
    while (!list.empty()) {
        std::string_view value = TakeUntil(list, ',');
        const std::string_view name = Trim(TakeUntil(value, '='));
        const std::optional<int> code = ParseCode(Trim(value));
        if (name == operation && code) {
            return *code;
        }
    }
    return 0;
}

}  // namespace Office
