// Looks at every part of a message, good or broken, and says what is wrong where. Decode is
// the short form of it.
//
// Trusts no byte; pure functions; any thread may call them.

#ifndef PLENXKIT_WIRE_INSPECT_H
#define PLENXKIT_WIRE_INSPECT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "wire/catalog.h"
#include "wire/message.h"

namespace PlenxWire {

/// Where argument i has its descriptor: tag, offset and size, a uint32 each.
constexpr std::uint64_t DescriptorOffset(std::uint64_t index) {
    return 8 + 12 * index;
}

/// One argument as its descriptor tells of it.
struct Field {
    std::uint32_t tag = 0;
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
    std::optional<Argument> value;  // empty: nothing can be read there
};

struct Problem {
    std::uint64_t offset = 0;  // of the bytes that are wrong
    std::string text;
};

struct Layout {
    std::optional<std::uint32_t> statedSize;  // empty: the message is shorter than its header
    std::optional<std::uint32_t> count;       // likewise
    std::vector<Field> fields;                // empty when the table does not fit
    std::vector<Problem> problems;            // in the order they were met; empty: good
};

/// data may be null when size is 0.
Layout Inspect(const std::uint8_t* data, std::size_t size);

/// Inspects, and compares a good layout with what such a message must hold.
Layout InspectAs(const MessageShape& shape, const std::uint8_t* data, std::size_t size);

}  // namespace PlenxWire

#endif  // PLENXKIT_WIRE_INSPECT_H
