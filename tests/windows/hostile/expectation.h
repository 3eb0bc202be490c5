// Predicts the library's answer to a message. It works from the layout of messages alone and uses
// no code of the library.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_EXPECTATION_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_EXPECTATION_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "wire/message.h"

namespace PlenxTest {

/// Writes a string of any size into a line of text. It shows a long one by its size and a hash.
std::string Shown(const std::string& text);

/// The tests' observer leaves this as the link status.
std::int32_t LinkStatusFor(std::uint32_t linkType);

struct Expected {
    std::int32_t result = 0;
    std::optional<std::int32_t> reply;  // empty when there is no block
    std::string heard;                  // the observer's line; empty when it hears nothing
};

/// Predicts the answer to a notification.
Expected ExpectedOf(std::int32_t id, const std::uint8_t* message, std::size_t size);

/// Returns the number that a service's reply says, or nothing when it cannot be read.
std::optional<std::int32_t> NumberInReply(const std::uint8_t* reply, std::size_t size);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_EXPECTATION_H
