// Feeds any bytes to the peers' decoder and to the code that shows its results. A decoded message
// must encode to the very same bytes, every text shown must be valid UTF-8 on one line, and a
// refusal must give its reason.

#include <cstdint>
#include <string>

#include "fuzz/input.h"
#include "fuzz/require.h"
#include "wire/catalog.h"
#include "wire/message.h"
#include "wire/render.h"

namespace {

// Returns the length of the well-formed UTF-8 character at the position, or 0 when there is none.
std::size_t Utf8Length(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) -> unsigned {
        return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U;
    };
    const auto tail = [&](std::size_t i) { return (byte(i) & 0xc0) == 0x80; };
    const unsigned lead = byte(0);
    if (lead < 0x80) {
        return lead >= 0x20 && lead != 0x7f ? 1 : 0;
    }
    if (lead >= 0xc2 && lead <= 0xdf) {
        return tail(1) ? 2 : 0;
    }
    if ((lead & 0xf0) == 0xe0) {
        const bool overlong = lead == 0xe0 && byte(1) < 0xa0;
        const bool surrogate = lead == 0xed && byte(1) >= 0xa0;
        return tail(1) && tail(2) && !overlong && !surrogate ? 3 : 0;
    }
    const bool overlong = lead == 0xf0 && byte(1) < 0x90;
    const bool beyond = lead > 0xf4 || (lead == 0xf4 && byte(1) >= 0x90);
    return (lead & 0xf8) == 0xf0 && tail(1) && tail(2) && tail(3) && !overlong && !beyond ? 4 : 0;
}

void RequirePrintable(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = Utf8Length(text, at);
        REQUIRE(length > 0);
        at += length;
    }
}

void RequireShapes(const PlenxWire::Bytes& message, bool decodes) {
    for (const PlenxWire::MessageShape& shape : PlenxWire::Catalog()) {
        const PlenxWire::Decoded as = PlenxWire::DecodeAs(shape, message.data(), message.size());
        REQUIRE(decodes || !as.Ok());
        REQUIRE(as.Ok() == (decodes && PlenxWire::CheckShape(shape, as.arguments).empty()));
        RequirePrintable(as.error);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::int32_t id = input.Byte() < 0xf0 ? input.Byte() % 32 : input.Number<std::int32_t>();
    const PlenxWire::Bytes message = input.Rest();
    const PlenxWire::Decoded decoded = PlenxWire::Decode(message);
    if (decoded.Ok()) {
        REQUIRE(PlenxWire::Encode(decoded.arguments) == message);
        RequirePrintable(PlenxWire::RenderMessage(id, decoded.arguments));
    } else {
        RequirePrintable(decoded.error);
    }
    RequireShapes(message, decoded.Ok());
    const PlenxWire::Decoded reply = PlenxWire::DecodeReply(message.data(), message.size());
    REQUIRE(!reply.Ok() || (decoded.Ok() && message.size() == 24));
    RequirePrintable(PlenxWire::RenderId(id));
    RequirePrintable(PlenxWire::RenderMessage(id, message.data(), message.size()));
    RequirePrintable(PlenxWire::RenderText(std::string(message.begin(), message.end())));
    return 0;
}
