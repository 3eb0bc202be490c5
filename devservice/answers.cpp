#include "answers.h"

#include <string>
#include <string_view>

#include "hex_bytes.h"
#include "wire/catalog.h"

namespace PlenxService {
namespace {

using PlenxWire::Bytes;
using PlenxWire::Decoded;

constexpr std::size_t kReplySize = 24;
constexpr std::size_t kLargeReply = std::size_t{1024} * 1024;

// Changes the answer as the key "reply" says.
void ShapeReply(const std::string& kind, Answer& answer) {
    if (kind == "empty") {
        answer.reply.reset();
    } else if (kind == "garbage") {
        answer.reply = Bytes(kReplySize, 0xee);
    } else if (kind == "short" && answer.reply) {
        answer.reply->resize(kReplySize - 4);
    } else if (kind == "large") {
        answer.reply = Bytes(kLargeReply, 0);
    } else if (kind.compare(0, 4, "hex:") == 0) {
        answer.reply.emplace();
        ParseBytes(std::string_view(kind).substr(4), *answer.reply);
    }
    answer.statedSize = answer.reply ? static_cast<long>(answer.reply->size()) : 0;
    if (kind == "lie") {
        answer.reply.reset();
    }
}

}  // namespace

Decoded DecodeRequest(std::int32_t request, const std::uint8_t* message, std::int32_t size) {
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(request);
    if (size < 0 || (size > 0 && !message)) {
        return {{}, "size " + std::to_string(size) + " is invalid"};
    }
    const auto length = static_cast<std::size_t>(size);
    return shape ? PlenxWire::DecodeAs(*shape, message, length)
                 : PlenxWire::Decode(message, length);
}

std::int32_t HonestCode(std::int32_t request, const Decoded& decoded) {
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(request);
    if (!shape || shape->direction != PlenxWire::Direction::kRequest) {
        return kUnknownRequest;
    }
    return decoded.Ok() ? kTaken : kBrokenMessage;
}

Answer AnswerWith(std::int32_t code, const Values& told) {
    Answer answer;
    answer.fault = static_cast<unsigned long>(told.Number("fault"));
    answer.result = static_cast<long>(told.Number("result"));
    if (answer.result == 0 && answer.fault == 0) {
        answer.reply = PlenxWire::Encode({code});
        ShapeReply(told.Text("reply"), answer);
    }
    return answer;
}

}  // namespace PlenxService
