#include "message/table.h"

#include <algorithm>

#include "message/columns.h"
#include "message/notes.h"
#include "message/utf16.h"
#include "wire/render.h"

namespace PlenxMessage {
namespace {

using PlenxWire::Field;
using PlenxWire::Layout;
using PlenxWire::MessageShape;

constexpr std::size_t kFieldWidth = 14;
constexpr std::size_t kTypeWidth = 10;
constexpr std::size_t kNumberWidth = 10;  // the largest uint32

std::string Row(const std::string& offset, const std::string& size, const std::string& field,
                const std::string& type, std::string_view value) {
    return Hanging(PadLeft(offset, kNumberWidth - 2) + "  " + PadLeft(size, kNumberWidth - 2) +
                       "  " + PadRight(field, kFieldWidth) + "  " + PadRight(type, kTypeWidth) +
                       "  ",
                   value);
}

std::string Row(std::uint64_t offset, std::uint64_t size, const std::string& field,
                const std::string& type, std::string_view value) {
    return Row(std::to_string(offset), std::to_string(size), field, type, value);
}

std::string TypeOf(const Field& field) {
    const auto type = static_cast<PlenxWire::ArgumentType>(field.tag);
    const std::string name = PlenxWire::NameOf(type);
    return name == "unknown" ? "tag " + std::to_string(field.tag) : name;
}

bool IsPath(const Subject& subject, const PlenxWire::Argument& value) {
    return subject.id == PlenxWire::kUpdateWindowsExplore &&
           std::holds_alternative<PlenxWire::Bytes>(value);
}

struct ValueRenderer {
    std::string operator()(std::int32_t value) const { return std::to_string(value); }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(const std::string& value) const { return PlenxWire::RenderText(value); }
    std::string operator()(const PlenxWire::Bytes& value) const {
        return PlenxWire::RenderBytes(value.data(), value.size());
    }
};

std::string BytesAt(const PlenxWire::Bytes& bytes, std::uint64_t offset, std::uint64_t size) {
    if (offset + size > bytes.size()) {
        return "(outside the message)";
    }
    return PlenxWire::RenderBytes(bytes.data() + offset, static_cast<std::size_t>(size));
}

std::string ValueOf(const Message& message, const Field& field) {
    if (!field.value) {
        return BytesAt(message.bytes, field.offset, field.size);
    }
    std::string value = std::visit(ValueRenderer{}, *field.value);
    if (IsPath(message.subject, *field.value)) {
        if (const auto path = FromUtf16(std::get<PlenxWire::Bytes>(*field.value))) {
            return PlenxWire::RenderText(*path) + " as UTF-16: " + value;
        }
    }
    return value;
}

std::string Rest(const Message& message, std::uint64_t offset) {
    if (offset >= message.bytes.size()) {
        return {};
    }
    const std::uint64_t size = message.bytes.size() - offset;
    return Row(offset, size, "(no field)", "bytes", BytesAt(message.bytes, offset, size));
}

std::string HeaderRows(std::uint32_t statedSize, std::uint32_t count) {
    return Row(0, 4, "total size", "uint32", std::to_string(statedSize)) +
           Row(4, 4, "argument count", "uint32", std::to_string(count));
}

std::string DescriptorRow(const Field& field, std::size_t index) {
    return Row(PlenxWire::DescriptorOffset(index), 12, "descriptor " + std::to_string(index),
               "3 x uint32",
               "tag " + std::to_string(field.tag) + ", offset " + std::to_string(field.offset) +
                   ", size " + std::to_string(field.size));
}

std::string Rows(const Message& message, const Layout& layout) {
    if (!layout.statedSize || !layout.count) {
        return Rest(message, 0);
    }
    std::string rows = HeaderRows(*layout.statedSize, *layout.count);
    std::uint64_t end = PlenxWire::DescriptorOffset(layout.fields.size());
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        rows += DescriptorRow(layout.fields[i], i);
    }
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        const Field& field = layout.fields[i];
        rows += Row(field.offset, field.size, ArgumentName(message.subject, i), TypeOf(field),
                    ValueOf(message, field));
        end = std::max(end, std::uint64_t{field.offset} + field.size);
    }
    return rows + Rest(message, end);
}

std::string Way(const Subject& subject) {
    if (!subject.shape) {
        return subject.id ? "the system has no such message" : "the message was not named";
    }
    if (subject.IsReply()) {
        return "the answer to any message";
    }
    return subject.shape->direction == PlenxWire::Direction::kRequest
               ? "request, library to service"
               : "notification, service to library";
}

std::string Title(const Subject& subject) {
    std::string title = NameOf(subject);
    if (subject.shape && subject.id) {
        title += "(" + std::to_string(*subject.id) + ")";
    }
    return title + ": " + Way(subject);
}

// The kinds of message that a good message without a known id may be.
std::string Guess(const Message& message) {
    std::string names;
    for (const MessageShape& shape : PlenxWire::Catalog()) {
        if (PlenxWire::DecodeAs(shape, message.bytes.data(), message.bytes.size()).Ok()) {
            names += names.empty() ? "" : ", ";
            names += PlenxWire::RenderId(shape.id);
        }
    }
    const bool reply = PlenxWire::DecodeReply(message.bytes.data(), message.bytes.size()).Ok();
    names += reply ? (names.empty() ? "reply" : ", reply") : "";
    return Hanging("", "Judging by its arguments alone, it may be: " +
                           (names.empty() ? "no message of the system" : names));
}

std::string Notes(const Message& message, const Layout& layout) {
    std::string text;
    for (const std::string& note : NotesOn(message, layout)) {
        text += Hanging("note: ", note);
    }
    return text;
}

std::string Verdict(const Message& message, const Layout& layout) {
    if (layout.problems.empty()) {
        const bool untold = !message.subject.shape && !message.subject.id;
        return "good\n" + (untold ? Guess(message) : Notes(message, layout));
    }
    std::string text = "BROKEN\n";
    for (const PlenxWire::Problem& problem : layout.problems) {
        text += Hanging("at offset " + std::to_string(problem.offset) + "  ", problem.text);
    }
    return text;
}

std::string Signature(const MessageShape& shape) {
    std::string text;
    for (const PlenxWire::ArgumentShape& argument : shape.arguments) {
        text += text.empty() ? "" : ", ";
        text += std::string(argument.name) + " " + PlenxWire::NameOf(argument.type);
        text += argument.always ? " = " + std::to_string(*argument.always) : "";
    }
    return text;
}

std::string CatalogRows(PlenxWire::Direction direction) {
    std::string rows;
    for (const MessageShape& shape : PlenxWire::Catalog()) {
        if (shape.direction == direction) {
            rows += Hanging(
                PadLeft(std::to_string(shape.id), 2) + "  " + PadRight(shape.name, 20) + "  ",
                Signature(shape));
        }
    }
    return rows;
}

std::string Remark(const MessageShape& shape, std::size_t index) {
    const auto& arguments = shape.arguments;
    if (const auto& always = arguments[index].always) {
        return "always " + std::to_string(*always);
    }
    const bool length = index + 1 < arguments.size() &&
                        arguments[index + 1].type == PlenxWire::ArgumentType::kInt8Array;
    if (length) {
        return std::string("the size of ") + arguments[index + 1].name;
    }
    const bool path = shape.id == PlenxWire::kUpdateWindowsExplore &&
                      arguments[index].type == PlenxWire::ArgumentType::kInt8Array;
    return path ? "UTF-16 text with its NUL" : "";
}

}  // namespace

std::string ToTable(const Message& message, const Layout& layout) {
    return Title(message.subject) + ", " + std::to_string(message.bytes.size()) + " bytes\n\n" +
           Row("offset", "size", "field", "type", "value") + Rows(message, layout) + "\n" +
           Verdict(message, layout);
}

std::string CatalogTable() {
    return "Requests, library to service:\n" + CatalogRows(PlenxWire::Direction::kRequest) +
           "\nNotifications, service to library:\n" +
           CatalogRows(PlenxWire::Direction::kNotification) +
           "\nEvery one is answered by a reply: " + Signature(PlenxWire::ReplyShape()) + "\n";
}

std::string ShapeTable(const Subject& subject) {
    const MessageShape& shape = *subject.shape;
    std::string table = Title(subject) + "\n\n";
    for (std::size_t i = 0; i < shape.arguments.size(); ++i) {
        const PlenxWire::ArgumentShape& argument = shape.arguments[i];
        std::string row = "  " + std::to_string(i) + "  " + PadRight(argument.name, kFieldWidth) +
                          "  " + PadRight(PlenxWire::NameOf(argument.type), kTypeWidth) + "  " +
                          Remark(shape, i);
        row.erase(row.find_last_not_of(' ') + 1);
        table += row + "\n";
    }
    return table;
}

}  // namespace PlenxMessage
