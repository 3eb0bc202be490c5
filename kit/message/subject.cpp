#include "message/subject.h"

#include <charconv>
#include <system_error>

#include "message/usage.h"

namespace PlenxMessage {
namespace {

std::optional<std::int32_t> NumberIn(const std::string& word) {
    std::int32_t number = 0;
    const char* const end = word.data() + word.size();
    const auto [last, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && last == end ? std::optional(number) : std::nullopt;
}

}  // namespace

Subject SubjectOf(std::int32_t id) {
    return {PlenxWire::FindMessage(id), id};
}

Subject SubjectOf(const std::string& word) {
    if (word.empty()) {
        return {};
    }
    if (word == PlenxWire::ReplyShape().name) {
        return {&PlenxWire::ReplyShape(), std::nullopt};
    }
    if (const auto number = NumberIn(word)) {
        return SubjectOf(*number);
    }
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(word);
    if (!shape) {
        throw UsageError("there is no message \"" + word +
                         "\"; \"plenxkit message list\" shows them all");
    }
    return {shape, shape->id};
}

std::string NameOf(const Subject& subject) {
    if (subject.shape) {
        return subject.shape->name;
    }
    return subject.id ? "message " + std::to_string(*subject.id) : "message";
}

std::string ArgumentName(const Subject& subject, std::size_t index) {
    if (subject.shape && index < subject.shape->arguments.size()) {
        return subject.shape->arguments[index].name;
    }
    return "argument " + std::to_string(index);
}

const char* SortOf(const Subject& subject) {
    if (!subject.shape) {
        return "unknown";
    }
    if (subject.IsReply()) {
        return "reply";
    }
    return subject.shape->direction == PlenxWire::Direction::kRequest ? "request" : "notification";
}

PlenxWire::Layout Inspected(const Message& message) {
    const std::uint8_t* const data = message.bytes.data();
    const std::size_t size = message.bytes.size();
    return message.subject.shape ? PlenxWire::InspectAs(*message.subject.shape, data, size)
                                 : PlenxWire::Inspect(data, size);
}

}  // namespace PlenxMessage
