// The arguments of the exports, checked. What cannot be used is refused by a throw.

#ifndef PLENXSDK_C_ARGUMENTS_H
#define PLENXSDK_C_ARGUMENTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "plenxsdk/plenx.h"

namespace PlenxC {

/// A text that comes in, copied. The name is a literal.
std::string CopyIn(const char* name, const char* text, std::size_t length);

/// How many bytes the block has.
std::uint64_t BlockSize(const void* data, std::uint64_t size);

/// A pointer through which something comes out or in.
void RequirePointer(const char* name, const void* pointer);

/// A caller's buffer for a text.
void RequireBuffer(const char* text, std::size_t capacity);

/// Copies the text and a NUL into such a buffer. Tells the length whether it fits or not, and
/// leaves a buffer that is too short as it is.
/// @return false when it is too short.
bool FitsInto(char* buffer, std::size_t capacity, std::size_t* length,
              std::string_view text) noexcept;

/// The same; a buffer that is too short is refused.
void CopyOut(char* buffer, std::size_t capacity, std::size_t* length, std::string_view text);

}  // namespace PlenxC

#endif  // PLENXSDK_C_ARGUMENTS_H
