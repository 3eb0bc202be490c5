#include "message/notes.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>

namespace PlenxMessage {
namespace {

using PlenxWire::Bytes;

constexpr std::string_view kGroupName = "grpName";  // only notifications spell it this way
constexpr std::string_view kTextLength = "msgLen";  // the argument behind it is the text

// The library splits the name at the last "_", and an int32 must hold the number behind it.
bool NamesAService(std::string_view groupName) {
    const std::size_t underscore = groupName.rfind('_');
    if (underscore == std::string_view::npos) {
        return false;
    }
    std::uint32_t number = 0;
    const char* const end = groupName.data() + groupName.size();
    const auto [last, error] = std::from_chars(groupName.data() + underscore + 1, end, number);
    return error == std::errc() && last == end &&
           number <= std::uint32_t{std::numeric_limits<std::int32_t>::max()};
}

bool EndsWithNul(const Bytes& path) {
    return path.size() >= 2 && path[path.size() - 1] == 0 && path[path.size() - 2] == 0;
}

std::string NoteOnGroup(const std::string& groupName) {
    return NamesAService(groupName) ? ""
                                    : "the library refuses it with 16: it must end in \"_\" and a "
                                      "number up to 2147483647";
}

std::string NoteOnPath(const Bytes& path) {
    if (path.size() % 2 != 0) {
        return "UTF-16 has an even number of bytes; the library takes this odd number and adds "
               "zeros";
    }
    return EndsWithNul(path) ? "" : "it has no NUL at its end, so the library adds one";
}

std::string NoteOnTextLength(std::int32_t length, const std::string& text) {
    return length >= 0 && static_cast<std::size_t>(length) == text.size()
               ? ""
               : "the text has " + std::to_string(text.size()) +
                     " bytes; the two are never compared";
}

std::string NoteOn(const PlenxWire::MessageShape& shape, const PlenxWire::Arguments& values,
                   std::size_t index) {
    const PlenxWire::Argument& value = values[index];
    if (shape.arguments[index].name == kGroupName) {
        return NoteOnGroup(std::get<std::string>(value));
    }
    if (shape.arguments[index].name == kTextLength) {
        return NoteOnTextLength(std::get<std::int32_t>(value),
                                std::get<std::string>(values[index + 1]));
    }
    const Bytes* const path = std::get_if<Bytes>(&value);
    return path && shape.id == PlenxWire::kUpdateWindowsExplore ? NoteOnPath(*path) : "";
}

}  // namespace

std::vector<std::string> NotesOn(const Message& message, const PlenxWire::Layout& layout) {
    const PlenxWire::MessageShape* const shape = message.subject.shape;
    std::vector<std::string> notes;
    if (!shape || !layout.problems.empty()) {
        return notes;
    }
    const PlenxWire::Arguments values = PlenxWire::ValuesOf(layout);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string note = NoteOn(*shape, values, i);
        if (!note.empty()) {
            notes.push_back(std::string(shape->arguments[i].name) + ": " + note);
        }
    }
    return notes;
}

}  // namespace PlenxMessage
