// Writes each message as one readable line, which is valid UTF-8 whatever the bytes are.
//
//     CreateGroup(0) groupName:"g_1" kind:2 groupArg:"arg"
//     DeviceOnline(2) groupName:"g_1" deviceId:"d" isRemote:0 length:3 data:[3] 01 02 ff

#ifndef PLENXKIT_WIRE_RENDER_H
#define PLENXKIT_WIRE_RENDER_H

#include <cstdint>
#include <string>
#include <string_view>

#include "wire/message.h"

namespace PlenxWire {

/// "CreateGroup(0)", or "message(6)" for an id that the system does not have.
std::string RenderId(std::int32_t id);

/// The arguments carry their names if the id and their count are known, and numbers if not.
std::string RenderMessage(std::int32_t id, const Arguments& arguments);

/// Decodes the message first. A broken one is shown with its error and its first bytes.
std::string RenderMessage(std::int32_t id, const std::uint8_t* data, std::size_t size);

/// A string in quotes. Control characters, quotes, backslashes and bytes that are not UTF-8 are
/// escaped. A long text is cut, and its end says so.
std::string RenderText(std::string_view text);

/// "[5] 01 02 03 04 05". A long array is cut, and its end says so.
std::string RenderBytes(const std::uint8_t* data, std::size_t size);

}  // namespace PlenxWire

#endif  // PLENXKIT_WIRE_RENDER_H
