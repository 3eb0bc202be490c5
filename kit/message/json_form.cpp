#include "message/json_form.h"

#include "message/hex.h"
#include "message/notes.h"
#include "support/utf8.h"

namespace PlenxMessage {
namespace {

Json HexObject(const PlenxWire::Bytes& bytes) {
    return Json{{"hex", ToHex(bytes)}};
}

struct ValueToJson {
    Json operator()(std::int32_t value) const { return value; }
    Json operator()(std::int64_t value) const { return value; }
    Json operator()(const PlenxWire::Bytes& value) const { return HexObject(value); }
    Json operator()(const std::string& value) const {
        return PlenxSupport::IsUtf8(value) ? Json(value) : HexObject({value.begin(), value.end()});
    }
};

const char* TypeName(std::uint32_t tag) {
    return PlenxWire::NameOf(static_cast<PlenxWire::ArgumentType>(tag));
}

Json ArgumentToJson(const Subject& subject, const PlenxWire::Field& field, std::size_t index) {
    Json argument = {{"name", ArgumentName(subject, index)},
                     {"type", TypeName(field.tag)},
                     {"tag", field.tag},
                     {"offset", field.offset},
                     {"size", field.size}};
    argument["value"] = field.value ? std::visit(ValueToJson{}, *field.value) : Json(nullptr);
    return argument;
}

}  // namespace

Json ToJson(const Message& message, const PlenxWire::Layout& layout) {
    Json json = {{"message", NameOf(message.subject)}};
    json["id"] = message.subject.id ? Json(*message.subject.id) : Json(nullptr);
    json["sort"] = SortOf(message.subject);
    json["good"] = layout.problems.empty();
    json["size"] = message.bytes.size();
    json["statedSize"] = layout.statedSize ? Json(*layout.statedSize) : Json(nullptr);
    json["argumentCount"] = layout.count ? Json(*layout.count) : Json(nullptr);
    json["arguments"] = Json::array();
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        json["arguments"].push_back(ArgumentToJson(message.subject, layout.fields[i], i));
    }
    json["problems"] = Json::array();
    for (const PlenxWire::Problem& problem : layout.problems) {
        json["problems"].push_back({{"offset", problem.offset}, {"text", problem.text}});
    }
    if (const auto notes = NotesOn(message, layout); !notes.empty()) {
        json["notes"] = notes;
    }
    json["hex"] = ToHex(message.bytes);
    return json;
}

Json ToJson(const Subject& subject) {
    Json json = {{"message", NameOf(subject)}};
    json["id"] = subject.id ? Json(*subject.id) : Json(nullptr);
    json["sort"] = SortOf(subject);
    json["arguments"] = Json::array();
    for (const PlenxWire::ArgumentShape& argument : subject.shape->arguments) {
        Json entry = {{"name", argument.name}, {"type", PlenxWire::NameOf(argument.type)}};
        if (argument.always) {
            entry["always"] = *argument.always;
        }
        json["arguments"].push_back(entry);
    }
    return json;
}

}  // namespace PlenxMessage
