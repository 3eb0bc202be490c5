// What the library must make of a message, worked out from the layout of messages alone and
// without any code of the library.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_EXPECTATION_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_EXPECTATION_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "wire/message.h"

namespace PlenxTest {

/// A string of any size in a line of text: a long one by its size and a hash.
std::string Shown(const std::string& text);

/// What the tests' observer leaves as the link status.
std::int32_t LinkStatusFor(std::uint32_t linkType);

struct Expected {
    std::int32_t result = 0;
    std::optional<std::int32_t> reply;  // none: no block
    std::string heard;                  // by the observer; empty: nothing
};

/// For a notification.
Expected ExpectedOf(std::int32_t id, const std::uint8_t* message, std::size_t size);

/// The number that a service's reply says; nothing when it cannot be read.
std::optional<std::int32_t> NumberInReply(const std::uint8_t* reply, std::size_t size);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_EXPECTATION_H
