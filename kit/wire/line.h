// Reads back what render.h writes: one message in one line of text.

#ifndef PLENXKIT_WIRE_LINE_H
#define PLENXKIT_WIRE_LINE_H

#include <cstdint>
#include <string>
#include <string_view>

#include "wire/message.h"

namespace PlenxWire {

struct ParsedLine {
    enum class Kind {
        kNone,     // no message stands in this text
        kWhole,    // bytes holds the message, good or broken, as it was
        kTold,     // a broken message whose bytes the line does not show; error says what it was
        kPartial,  // the line is cut, so that the message cannot be had back; error says where
    };

    Kind kind = Kind::kNone;
    std::int32_t id = 0;
    Bytes bytes;
    std::string error;
};

/// The text must begin with the message ("CreateGroup(0) groupName:..."). Never throws for
/// what the text holds.
ParsedLine ParseMessageLine(std::string_view text);

}  // namespace PlenxWire

#endif  // PLENXKIT_WIRE_LINE_H
