// Looks at every part of a message, good or broken, and names each mistake with its place. Decode
// is the short form.
//
// It trusts no byte. All functions are pure; any thread may call them.

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

/// The place of an argument's descriptor: tag, offset and size, a uint32 each.
constexpr std::uint64_t DescriptorOffset(std::uint64_t index) {
    return 8 + 12 * index;
}

/// One argument as its descriptor states it.
struct Field {
    std::uint32_t tag = 0;
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
    std::optional<Argument> value;  // empty when nothing can be read there
};

struct Problem {
    std::uint64_t offset = 0;  // the place of the wrong bytes
    std::string text;
};

struct Layout {
    std::optional<std::uint32_t> statedSize;  // empty when the message is shorter than its header
    std::optional<std::uint32_t> count;       // empty in the same case
    std::vector<Field> fields;                // empty when the table does not fit
    std::vector<Problem> problems;            // in the order of reading; empty for a good message
};

/// data may be null when size is 0.
Layout Inspect(const std::uint8_t* data, std::size_t size);

/// The values of a good message's fields.
Arguments ValuesOf(const Layout& layout);

/// Inspects the layout. If it is good, compares it with the shape that such a message must have.
Layout InspectAs(const MessageShape& shape, const std::uint8_t* data, std::size_t size);

}  // namespace PlenxWire

#endif  // PLENXKIT_WIRE_INSPECT_H
