#include "judge/forms.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <set>
#include <utility>

#include "wire/inspect.h"

namespace PlenxJudge {
namespace {

using PlenxWire::Arguments;
using PlenxWire::ArgumentShape;
using PlenxWire::ArgumentType;
using PlenxWire::Bytes;
using PlenxWire::DescriptorOffset;
using PlenxWire::MessageShape;

constexpr std::uint32_t kHuge = 0xffffffffU;
constexpr std::uint32_t kLargestInt32 = 0x7fffffffU;
constexpr std::uint32_t kJustBelowHuge = 0xfffffff0U;
// This many descriptors take 2^32 + 8 bytes, which wraps to 8.
constexpr std::uint32_t kWrappingCount = 0x15555556U;
constexpr std::size_t kLongText = std::size_t{64} * 1024;

// One argument as its bytes.
struct Part {
    std::uint32_t tag = 0;
    Bytes data;
};
using Parts = std::vector<Part>;

void PutWord(Bytes& bytes, std::size_t at, std::uint32_t word) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(word >> (8 * i));
    }
}

Bytes Changed(Bytes bytes, std::size_t at, std::uint32_t word) {
    PutWord(bytes, at, word);
    return bytes;
}

void CorrectTotalSize(Bytes& bytes) {
    if (bytes.size() >= 4) {
        PutWord(bytes, 0, static_cast<std::uint32_t>(bytes.size()));
    }
}

// Splits a good message.
Parts PartsOf(const Bytes& message) {
    Parts parts;
    for (const PlenxWire::Field& field :
         PlenxWire::Inspect(message.data(), message.size()).fields) {
        const auto begin = message.begin() + static_cast<std::ptrdiff_t>(field.offset);
        parts.push_back({field.tag, Bytes(begin, begin + static_cast<std::ptrdiff_t>(field.size))});
    }
    return parts;
}

// The layout is exact, whatever the parts hold: only a part can be wrong.
Bytes Assembled(const Parts& parts) {
    Bytes bytes(DescriptorOffset(parts.size()), 0);
    PutWord(bytes, 4, static_cast<std::uint32_t>(parts.size()));
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::size_t descriptor = DescriptorOffset(i);
        PutWord(bytes, descriptor, parts[i].tag);
        PutWord(bytes, descriptor + 4, static_cast<std::uint32_t>(bytes.size()));
        PutWord(bytes, descriptor + 8, static_cast<std::uint32_t>(parts[i].data.size()));
        bytes.insert(bytes.end(), parts[i].data.begin(), parts[i].data.end());
    }
    CorrectTotalSize(bytes);
    return bytes;
}

std::string Hex(std::uint32_t number) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += kDigits[(number >> static_cast<unsigned>(shift)) & 0xfU];
    }
    return text;
}

std::string Number(std::uint64_t number) {
    return number > 0xffff ? Hex(static_cast<std::uint32_t>(number)) : std::to_string(number);
}

// One request in good form, from which broken ones are made.
struct Model {
    const MessageShape& shape;
    Arguments arguments;
    Bytes bytes;

    Form As(Bytes broken, const std::string& what) const {
        return {std::string(shape.name) + " " + what, {shape.id, std::move(broken)}};
    }
    std::string ArgumentName(std::size_t index) const {
        return std::string(shape.arguments[index].name);
    }
};

std::vector<Model> Models(int role) {
    std::vector<Model> models;
    for (const MessageShape& shape : PlenxWire::Catalog()) {
        if (shape.direction == PlenxWire::Direction::kRequest) {
            const Arguments arguments = UsualArguments(shape.id, role);
            models.push_back({shape, arguments, PlenxWire::Encode(arguments)});
        }
    }
    return models;
}

// The places where one part of the message ends and another begins, and their neighbours.
std::set<std::size_t> Edges(const Bytes& message) {
    std::set<std::size_t> edges;
    const auto add = [&](std::size_t place) { edges.insert({place - 1, place, place + 1}); };
    const PlenxWire::Layout layout = PlenxWire::Inspect(message.data(), message.size());
    add(4);
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        add(DescriptorOffset(i));
        add(layout.fields[i].offset);
    }
    add(message.size() - 1);
    edges.erase(edges.lower_bound(message.size()), edges.end());
    return edges;
}

void AddCut(const Model& model, Forms& forms) {
    for (const std::size_t size : Edges(model.bytes)) {
        Bytes cut(model.bytes.begin(), model.bytes.begin() + static_cast<std::ptrdiff_t>(size));
        const std::string what = "cut to " + std::to_string(size) + " of " +
                                 std::to_string(model.bytes.size()) + " bytes";
        forms.push_back(model.As(cut, what));
        CorrectTotalSize(cut);
        forms.push_back(model.As(std::move(cut), what + ", with the total size of the rest"));
    }
}

void AddPadded(const Model& model, Forms& forms) {
    for (const std::size_t more : {1, 12, 4096}) {
        Bytes padded = model.bytes;
        padded.resize(padded.size() + more, 0);
        const std::string what = "with " + std::to_string(more) + " bytes behind its end";
        forms.push_back(model.As(padded, what));
        CorrectTotalSize(padded);
        forms.push_back(model.As(std::move(padded), what + ", which the total size counts"));
    }
}

void AddTotalSize(const Model& model, Forms& forms) {
    const auto size = static_cast<std::uint32_t>(model.bytes.size());
    for (const std::uint32_t total : {0U, 8U, size - 1, size + 1, kLargestInt32, kHuge}) {
        forms.push_back(
            model.As(Changed(model.bytes, 0, total), "with the total size " + Number(total)));
    }
}

void AddCount(const Model& model, Forms& forms) {
    const auto count = static_cast<std::uint32_t>(model.arguments.size());
    const std::set<std::uint32_t> allWrong = {
        0, count - 1, count + 1, kLargestInt32, kWrappingCount, kHuge};
    for (const std::uint32_t wrong : allWrong) {
        forms.push_back(model.As(Changed(model.bytes, 4, wrong),
                                 "with " + Number(wrong) + " as the number of arguments"));
    }
    Arguments fewer = model.arguments;
    fewer.pop_back();
    forms.push_back(model.As(PlenxWire::Encode(fewer), "without its last argument"));
    Arguments more = model.arguments;
    more.emplace_back(std::int32_t{0});
    forms.push_back(model.As(PlenxWire::Encode(more), "with one int32 too many"));
}

// Another type, with data that fits that type.
void AddOtherType(const Model& model, std::size_t index, Forms& forms) {
    const PlenxWire::Argument others[] = {std::int32_t{2}, std::int64_t{2}, std::string("2"),
                                          Bytes{'2', 0}};
    for (const PlenxWire::Argument& other : others) {
        if (PlenxWire::TypeOf(other) != model.shape.arguments[index].type) {
            Arguments arguments = model.arguments;
            arguments[index] = other;
            forms.push_back(model.As(PlenxWire::Encode(arguments),
                                     "with " + model.ArgumentName(index) + " as " +
                                         PlenxWire::NameOf(PlenxWire::TypeOf(other))));
        }
    }
}

void AddType(const Model& model, Forms& forms) {
    for (std::size_t i = 0; i < model.arguments.size(); ++i) {
        AddOtherType(model, i, forms);
        for (const std::uint32_t tag : {0U, 1U, 6U, kHuge}) {
            forms.push_back(model.As(Changed(model.bytes, DescriptorOffset(i), tag),
                                     "with " + model.ArgumentName(i) + " of type " + Number(tag)));
        }
        // The other types of the same size.
        const std::uint32_t own = static_cast<std::uint32_t>(model.shape.arguments[i].type);
        for (std::uint32_t tag = 2; tag <= 5; ++tag) {
            if (tag != own) {
                forms.push_back(
                    model.As(Changed(model.bytes, DescriptorOffset(i), tag),
                             "with the type " + Number(tag) + " on " + model.ArgumentName(i)));
            }
        }
    }
}

void AddOffset(const Model& model, Forms& forms) {
    const auto size = static_cast<std::uint32_t>(model.bytes.size());
    const PlenxWire::Layout layout = PlenxWire::Inspect(model.bytes.data(), model.bytes.size());
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        const std::uint32_t right = layout.fields[i].offset;
        for (const std::uint32_t wrong :
             {0U, 8U, right - 1, right + 1, size, kLargestInt32, kJustBelowHuge, kHuge}) {
            forms.push_back(
                model.As(Changed(model.bytes, DescriptorOffset(i) + 4, wrong),
                         "with " + model.ArgumentName(i) + " at offset " + Number(wrong)));
        }
    }
}

void AddResized(const Model& model, std::size_t index, Forms& forms) {
    const ArgumentType type = model.shape.arguments[index].type;
    Parts parts = PartsOf(model.bytes);
    const std::string name = model.ArgumentName(index);
    if (type == ArgumentType::kString) {
        parts[index].data.clear();
        forms.push_back(model.As(Assembled(parts), "with " + name + " of size 0"));
    }
    if (type != ArgumentType::kInt32 && type != ArgumentType::kInt64) {
        return;
    }
    const std::size_t right = parts[index].data.size();
    for (const std::size_t wrong :
         {std::size_t{0}, right - 1, right + 1, std::size_t{12} - right}) {
        parts[index].data.resize(wrong, 0);
        forms.push_back(
            model.As(Assembled(parts), "with " + name + " in " + std::to_string(wrong) + " bytes"));
    }
}

void AddSize(const Model& model, Forms& forms) {
    const PlenxWire::Layout layout = PlenxWire::Inspect(model.bytes.data(), model.bytes.size());
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        const std::uint32_t right = layout.fields[i].size;
        for (const std::uint32_t wrong : {0U, right - 1, right + 1, kLargestInt32, kHuge}) {
            forms.push_back(
                model.As(Changed(model.bytes, DescriptorOffset(i) + 8, wrong),
                         "with the size " + Number(wrong) + " on " + model.ArgumentName(i)));
        }
        AddResized(model, i, forms);
    }
}

void AddNul(const Model& model, Forms& forms) {
    Parts parts = PartsOf(model.bytes);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (model.shape.arguments[i].type == ArgumentType::kString) {
            Parts broken = parts;
            broken[i].data.back() = 'x';
            forms.push_back(
                model.As(Assembled(broken), "with " + model.ArgumentName(i) + " without its NUL"));
            broken[i].data = {'x'};
            forms.push_back(model.As(Assembled(broken),
                                     "with " + model.ArgumentName(i) + " of one byte, not a NUL"));
        }
    }
}

bool IsLength(const MessageShape& shape, std::size_t index) {
    return index + 1 < shape.arguments.size() &&
           shape.arguments[index + 1].type == ArgumentType::kInt8Array;
}

void AddDescription(const Model& model, Forms& forms) {
    for (std::size_t i = 0; i < model.arguments.size(); ++i) {
        const ArgumentShape& shape = model.shape.arguments[i];
        if (!shape.always && !IsLength(model.shape, i)) {
            continue;
        }
        const std::int32_t right = std::get<std::int32_t>(model.arguments[i]);
        for (const std::int32_t wrong :
             {0, right - 1, right + 1, -1, -right, std::numeric_limits<std::int32_t>::max()}) {
            Arguments arguments = model.arguments;
            arguments[i] = wrong;
            forms.push_back(model.As(PlenxWire::Encode(arguments),
                                     "with " + std::to_string(wrong) + " as its " + shape.name));
        }
    }
}

Forms UnknownIds(int role) {
    Forms forms;
    const Bytes bytes = PlenxWire::Encode({std::int32_t{1}});
    for (const std::int32_t id :
         {6, 20, 21, 100, 255, 256, -1, std::numeric_limits<std::int32_t>::min(),
          std::numeric_limits<std::int32_t>::max()}) {
        forms.push_back({"a request with the id " + std::to_string(id), {id, bytes}});
    }
    const std::string group = GroupOf(role);
    for (const MessageShape& shape : PlenxWire::Catalog()) {
        if (shape.direction != PlenxWire::Direction::kNotification) {
            continue;
        }
        Arguments arguments;
        for (const ArgumentShape& argument : shape.arguments) {
            switch (argument.type) {
            case ArgumentType::kString:
                arguments.emplace_back(group);
                break;
            case ArgumentType::kInt8Array:
                arguments.emplace_back(Bytes{0, 0});
                break;
            default:
                arguments.emplace_back(std::int32_t{2});
            }
        }
        forms.push_back(FormOf(shape.id, arguments, "as a request"));
    }
    return forms;
}

void AddTiny(const Model& model, Forms& forms) {
    forms.push_back(model.As({}, "of no bytes"));
    for (const std::uint8_t byte : std::initializer_list<std::uint8_t>{0, 1, 8, 255}) {
        forms.push_back(model.As({byte}, "of one byte, " + std::to_string(byte)));
    }
    forms.push_back(model.As({8, 0, 0, 0, 0, 0, 0, 0}, "of a header alone"));
}

using Adder = void (*)(const Model& model, Forms& forms);

Adder AdderOf(Breakage breakage) {
    switch (breakage) {
    case Breakage::kCut:
        return AddCut;
    case Breakage::kPadded:
        return AddPadded;
    case Breakage::kTotalSize:
        return AddTotalSize;
    case Breakage::kCount:
        return AddCount;
    case Breakage::kType:
        return AddType;
    case Breakage::kOffset:
        return AddOffset;
    case Breakage::kSize:
        return AddSize;
    case Breakage::kNul:
        return AddNul;
    case Breakage::kDescription:
        return AddDescription;
    case Breakage::kUnknownId:
    case Breakage::kTiny:
        break;
    }
    return AddTiny;
}

bool IsNeverEmpty(const std::string& name) {
    return name != "value" && name != "message";
}

std::string TextIn(Text text, const std::string& usual) {
    switch (text) {
    case Text::kEmpty:
        return {};
    case Text::kLong:
        return std::string(kLongText, 'x') + usual;
    case Text::kNotUtf8:
        return "\xff\xc0\x80\xed\xa0\x80" + usual;
    case Text::kWithNul:
        break;
    }
    return std::string("a\0b", 3) + usual;
}

const char* NameOf(Text text) {
    switch (text) {
    case Text::kEmpty:
        return "empty";
    case Text::kLong:
        return "64 KiB long";
    case Text::kNotUtf8:
        return "that is not UTF-8";
    case Text::kWithNul:
        break;
    }
    return "that holds a NUL";
}

}  // namespace

std::string GroupOf(int role) {
    return "judge_" + std::to_string(role);
}

Arguments UsualArguments(std::int32_t id, int role) {
    const std::string group = GroupOf(role);
    switch (id) {
    case PlenxWire::kCreateGroup:
        return {group, std::int32_t{2}, std::string("argument")};
    case PlenxWire::kDeleteGroup:
        return {group};
    case PlenxWire::kDeviceOnline:
        return {group, std::string("laptop"), std::int32_t{0}, std::int32_t{3}, Bytes{1, 2, 255}};
    case PlenxWire::kDeviceOffline:
        return {group, std::string("laptop"), std::int32_t{0}, std::int32_t{13}};
    case PlenxWire::kNameChanged:
        return {std::string("desk")};
    case PlenxWire::kRecvRemoteMessage:
        return {std::int32_t{42}, std::int32_t{5}, std::string("hello")};
    case PlenxWire::kSetStringConfig:
        return {std::int32_t{1}, std::string("en_US")};
    case PlenxWire::kSetInt64Config:
        return {std::int32_t{0}, std::int64_t{0}};
    default:
        return {std::int64_t{0}};
    }
}

Form FormOf(std::int32_t id, const Arguments& arguments, const std::string& what) {
    const MessageShape* const shape = PlenxWire::FindMessage(id);
    std::string name = shape ? shape->name : "message " + std::to_string(id);
    name += what.empty() ? "" : " " + what;
    return {std::move(name), {id, PlenxWire::Encode(arguments)}};
}

Forms UsualRequests(int role) {
    const auto usual = [role](std::int32_t id) { return FormOf(id, UsualArguments(id, role), ""); };
    const auto ofRemote = [role](std::int32_t id) {
        Arguments arguments = UsualArguments(id, role);
        arguments[1] = std::string("tablet");
        arguments[2] = std::int32_t{1};
        if (id == PlenxWire::kDeviceOnline) {
            arguments[3] = std::int32_t{0};
            arguments[4] = Bytes{};
        }
        return FormOf(id, arguments, "of another device");
    };
    Forms forms = {usual(PlenxWire::kPingService), usual(PlenxWire::kSetStringConfig),
                   usual(PlenxWire::kSetInt64Config)};
    forms.push_back(
        FormOf(PlenxWire::kSetInt64Config, {std::int32_t{2}, std::int64_t{0}}, "with key 2"));
    forms.push_back(usual(PlenxWire::kCreateGroup));
    forms.push_back(usual(PlenxWire::kDeviceOnline));
    forms.push_back(ofRemote(PlenxWire::kDeviceOnline));
    forms.push_back(usual(PlenxWire::kNameChanged));
    forms.push_back(usual(PlenxWire::kRecvRemoteMessage));
    forms.push_back(ofRemote(PlenxWire::kDeviceOffline));
    forms.push_back(usual(PlenxWire::kDeviceOffline));
    forms.push_back(usual(PlenxWire::kDeleteGroup));
    return forms;
}

Forms BrokenForms(Breakage breakage, int role) {
    if (breakage == Breakage::kUnknownId) {
        return UnknownIds(role);
    }
    Forms forms;
    for (const Model& model : Models(role)) {
        AdderOf(breakage)(model, forms);
    }
    // A change that changes nothing would be a good message.
    forms.erase(std::remove_if(forms.begin(), forms.end(),
                               [](const Form& form) {
                                   const Bytes& bytes = form.request.bytes;
                                   return PlenxWire::DecodeAs(
                                              *PlenxWire::FindMessage(form.request.id),
                                              bytes.data(), bytes.size())
                                       .Ok();
                               }),
                forms.end());
    return forms;
}

Forms TextForms(Text text, int role) {
    Forms forms;
    for (const Model& model : Models(role)) {
        for (std::size_t i = 0; i < model.arguments.size(); ++i) {
            const ArgumentShape& shape = model.shape.arguments[i];
            if (shape.type != ArgumentType::kString ||
                (text == Text::kEmpty && IsNeverEmpty(shape.name))) {
                continue;
            }
            Arguments arguments = model.arguments;
            arguments[i] = TextIn(text, std::get<std::string>(arguments[i]));
            forms.push_back(model.As(PlenxWire::Encode(arguments),
                                     "with a " + std::string(shape.name) + " " + NameOf(text)));
        }
    }
    // Requests that name a group come before DeleteGroup, while the group is there.
    std::stable_partition(forms.begin(), forms.end(), [](const Form& form) {
        return form.request.id != PlenxWire::kDeleteGroup;
    });
    return forms;
}

}  // namespace PlenxJudge
