#include "message/commands.h"

#include <filesystem>

#include "message/description.h"
#include "message/hex.h"
#include "message/input.h"
#include "message/json_form.h"
#include "message/table.h"
#include "message/usage.h"
#include "text_file.h"

namespace PlenxMessage {
namespace {

constexpr std::size_t kHexBytesPerLine = 32;

PlenxWire::Bytes BytesToDecode(const DecodeOptions& options, std::istream& in) {
    if (options.hex.empty()) {
        return MessageBytes(ContentOf(options.file, in));
    }
    std::string text;
    for (const std::string& word : options.hex) {
        text += word + " ";
    }
    return FromHex(text);
}

Message MessageToEncode(const EncodeOptions& options, std::istream& in) {
    if (options.from.empty()) {
        return MessageFromWords(options.message, options.fields);
    }
    if (!options.message.empty()) {
        throw UsageError("use either --from or a message and its fields, not both");
    }
    return MessageFromJson(ContentOf(options.from, in));
}

Json CatalogJson() {
    Json all = Json::array();
    for (const PlenxWire::MessageShape& shape : PlenxWire::Catalog()) {
        all.push_back(ToJson(SubjectOf(shape.id)));
    }
    return all;
}

}  // namespace

int RunDecode(const DecodeOptions& options, std::istream& in, std::ostream& out) {
    const Message message = {SubjectOf(options.as), BytesToDecode(options, in)};
    const PlenxWire::Layout layout = Inspected(message);
    if (options.json) {
        out << ToJson(message, layout).dump(2) << "\n";
    } else {
        out << ToTable(message, layout);
    }
    return layout.problems.empty() ? kFine : kBrokenMessage;
}

int RunEncode(const EncodeOptions& options, std::istream& in, std::ostream& out) {
    const Message message = MessageToEncode(options, in);
    const std::string content = options.binary
                                    ? std::string(message.bytes.begin(), message.bytes.end())
                                    : ToHex(message.bytes, kHexBytesPerLine) + "\n";
    if (options.output == "-") {
        out << content;
    } else {
        PlenxKit::WriteText(std::filesystem::u8path(options.output), content);
    }
    return kFine;
}

int RunList(const ListOptions& options, std::ostream& out) {
    const Subject subject = SubjectOf(options.message);
    if (subject.id && !subject.shape) {
        throw UsageError("there is no " + NameOf(subject));
    }
    if (!options.json) {
        out << (subject.shape ? ShapeTable(subject) : CatalogTable());
        return kFine;
    }
    out << (subject.shape ? ToJson(subject) : CatalogJson()).dump(2) << "\n";
    return kFine;
}

}  // namespace PlenxMessage
