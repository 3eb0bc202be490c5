// These functions check the arguments of the exports. They throw a Refusal for an argument that
// cannot be used.

#ifndef PLENXSDK_C_ARGUMENTS_H
#define PLENXSDK_C_ARGUMENTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "plenxsdk/plenx.h"
#include "result.h"

namespace PlenxC {

/// Copies a text that the caller gives. The name must be a literal.
std::string CopyIn(const char* name, const char* text, std::size_t length);

/// Returns how many bytes the caller's block has.
std::uint64_t BlockSize(const void* data, std::uint64_t size);

/// Checks a pointer through which a call gives or takes a value.
template <typename Value>
void RequirePointer(const char* name, Value* pointer) {
    if (pointer == nullptr) {
        throw Refusal{PLENX_E_ARGUMENT, name, "is null"};
    }
}

/// Checks a caller's buffer for a text.
void RequireBuffer(const char* text, std::size_t capacity);

/// Copies the text and a NUL into such a buffer. It sets the length whether the text fits or not,
/// and leaves a buffer that is too short as it is.
/// @return false when the buffer is too short.
bool FitsInto(char* buffer, std::size_t capacity, std::size_t* length,
              std::string_view text) noexcept;

/// Does the same, but refuses a buffer that is too short.
void CopyOut(char* buffer, std::size_t capacity, std::size_t* length, std::string_view text);

}  // namespace PlenxC

#endif  // PLENXSDK_C_ARGUMENTS_H
