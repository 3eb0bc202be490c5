// Reads back the lines that render.h writes: one message in one line of text.

#ifndef PLENXKIT_WIRE_LINE_H
#define PLENXKIT_WIRE_LINE_H

#include <cstdint>
#include <string>
#include <string_view>

#include "wire/message.h"

namespace PlenxWire {

struct ParsedLine {
    enum class Kind {
        kNone,   // no message stands in this text
        kWhole,  // bytes holds the message as it was, good or broken
        kTold,   // the line says that a message is broken, without its bytes; error has the reason
        kPartial,  // the line is cut, so that the message is lost; error says where
    };

    Kind kind = Kind::kNone;
    std::int32_t id = 0;
    Bytes bytes;
    std::string error;
};

/// The text must begin with the message ("CreateGroup(0) groupName:..."). No content of the text
/// makes it throw.
ParsedLine ParseMessageLine(std::string_view text);

}  // namespace PlenxWire

#endif  // PLENXKIT_WIRE_LINE_H
