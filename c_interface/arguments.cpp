#include "arguments.h"

#include <cstring>

namespace PlenxC {
namespace {

// The library cannot send more to a service. A caller's negative number also arrives here as a size
// above this limit.
constexpr std::uint64_t kMostBytes = INT32_MAX;

}  // namespace

std::string CopyIn(const char* name, const char* text, std::size_t length) {
    if (text == nullptr) {
        if (length != 0) {
            throw Refusal{PLENX_E_ARGUMENT, name, "is null, but its length is not 0"};
        }
        return {};
    }
    if (length == PLENX_SIZE_TO_NUL) {
        length = std::strlen(text);
    }
    if (length > kMostBytes) {
        throw Refusal{PLENX_E_ARGUMENT, name, "is longer than 2^31 - 1 bytes"};
    }
    return {text, length};
}

std::uint64_t BlockSize(const void* data, std::uint64_t size) {
    if (data == nullptr && size != 0) {
        throw Refusal{PLENX_E_ARGUMENT, "data", "is null, but its size is not 0"};
    }
    if (size > kMostBytes) {
        throw Refusal{PLENX_E_ARGUMENT, "size", "is above 2^31 - 1"};
    }
    return size;
}

void RequireBuffer(const char* text, std::size_t capacity) {
    if (text == nullptr && capacity != 0) {
        throw Refusal{PLENX_E_ARGUMENT, "text", "is null, but its capacity is not 0"};
    }
}

bool FitsInto(char* buffer, std::size_t capacity, std::size_t* length,
              std::string_view text) noexcept {
    if (length != nullptr) {
        *length = text.size();
    }
    if (text.size() >= capacity) {
        return false;
    }
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return true;
}

void CopyOut(char* buffer, std::size_t capacity, std::size_t* length, std::string_view text) {
    if (!FitsInto(buffer, capacity, length, text)) {
        throw Refusal{PLENX_E_BUFFER, "capacity", "is too small for the text and its NUL"};
    }
}

}  // namespace PlenxC
