#include "hostile/expectation.h"

#include <cstring>
#include <utility>

#include "wire/catalog.h"

namespace PlenxTest {
namespace {

constexpr std::int32_t kReadFailed = 20;
constexpr std::int32_t kInvalid = 16;

/// Takes the arguments of a message apart and looks at each on its own.
class Message {
public:
    Message(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {
        if (size >= 8) {
            count_ = Word(4);
        }
        if (size < 8 || 8 + 12 * count_ >= size) {
            count_ = 0;
        }
    }

    std::optional<std::int32_t> Int32(std::size_t index) const {
        const auto data = Data(index, 2);
        if (!data || data->second != 4) {
            return std::nullopt;
        }
        return static_cast<std::int32_t>(Word(data->first));
    }
    std::optional<std::string> String(std::size_t index) const {
        const auto data = Data(index, 4);
        if (!data || data->second == 0) {
            return std::nullopt;
        }
        return std::string(data_ + data->first, data_ + data->first + data->second - 1);
    }
    bool HasArrayOf(std::int32_t length, std::size_t index) const {
        const auto data = Data(index, 5);
        return data && data->second == static_cast<std::uint64_t>(length);
    }

private:
    std::uint64_t Word(std::uint64_t at) const {
        std::uint32_t word = 0;
        std::memcpy(&word, data_ + at, sizeof(word));
        return word;
    }
    // Returns where the argument's data begins and how many elements it has.
    std::optional<std::pair<std::uint64_t, std::uint64_t>> Data(std::size_t index,
                                                                std::uint64_t tag) const {
        if (index >= count_ || Word(8 + 12 * index) != tag) {
            return std::nullopt;
        }
        const std::uint64_t offset = Word(12 + 12 * index);
        const std::uint64_t length = Word(16 + 12 * index);
        if (offset + length > size_) {
            return std::nullopt;
        }
        return std::make_pair(offset, length);
    }

    const std::uint8_t* data_;
    const std::uint64_t size_;
    std::uint64_t count_ = 0;
};

Expected Refused(std::int32_t result) {
    Expected expected;
    expected.result = result;
    return expected;
}

Expected Taken(std::string heard, std::int32_t reply = 0) {
    Expected expected;
    expected.reply = reply;
    expected.heard = std::move(heard);
    return expected;
}

std::string Unsigned(std::int32_t number) {
    return std::to_string(static_cast<std::uint32_t>(number));
}

// Returns a text such as "1, name", or nothing when the group has no number.
std::optional<std::string> SplitGroup(const std::string& group) {
    const std::size_t underscore = group.rfind('_');
    if (underscore == std::string::npos || underscore + 1 == group.size()) {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    for (std::size_t i = underscore + 1; i != group.size(); ++i) {
        if (group[i] < '0' || group[i] > '9' || number > 0x7fffffff) {
            return std::nullopt;
        }
        number = number * 10 + static_cast<std::uint64_t>(group[i] - '0');
    }
    if (number > 0x7fffffff) {
        return std::nullopt;
    }
    return std::to_string(number) + ", " + Shown(group.substr(0, underscore));
}

Expected OfGroup(const char* name, const Message& message) {
    const auto group = message.String(0);
    if (!group) {
        return Refused(kReadFailed);
    }
    const auto split = SplitGroup(*group);
    return split ? Taken(name + ("(" + *split + ")")) : Refused(kInvalid);
}

Expected OfLinkQuery(const Message& message) {
    const auto group = message.String(0);
    const auto type = message.Int32(1);
    if (!group || !type) {
        return Refused(kReadFailed);
    }
    const auto split = SplitGroup(*group);
    return split ? Taken("QueryLinkStatus(" + *split + ", " + Unsigned(*type) + ")",
                         LinkStatusFor(static_cast<std::uint32_t>(*type)))
                 : Refused(kInvalid);
}

Expected OfStatus(const Message& message) {
    const auto group = message.String(0);
    const auto kind = message.Int32(1);
    const auto value = message.Int32(2);
    if (!group || !kind || !value) {
        return Refused(kReadFailed);
    }
    const auto split = SplitGroup(*group);
    return split ? Taken("NotifyStatus(" + *split + ", " + Unsigned(*kind) +
                         (*value != 0 ? ", 1)" : ", 0)"))
                 : Refused(kInvalid);
}

Expected OfLocalMessage(const Message& message) {
    const auto type = message.Int32(0);
    const auto length = message.Int32(1);
    const auto text = message.String(2);
    if (!type || !length || !text) {
        return Refused(kReadFailed);
    }
    return Taken("SendLocalMessage(" + std::to_string(*type) + ", " + Unsigned(*length) + ", " +
                 Shown(*text) + ")");
}

Expected OfError(const Message& message) {
    const auto code = message.Int32(0);
    return code ? Taken("NotifyError(" + std::to_string(*code) + ")") : Refused(kReadFailed);
}

Expected OfDiskName(const Message& message) {
    const auto name = message.String(0);
    return name ? Taken("NotifyDiskName(" + Shown(*name) + ")") : Refused(kReadFailed);
}

Expected OfPath(const Message& message) {
    const auto length = message.Int32(0);
    return length && *length > 0 && message.HasArrayOf(*length, 1) ? Taken("")
                                                                   : Refused(kReadFailed);
}

}  // namespace

std::string Shown(const std::string& text) {
    constexpr std::size_t kMost = 100;
    if (text.size() <= kMost) {
        return text;
    }
    std::uint64_t hash = 14695981039346656037u;
    for (const char character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 1099511628211u;
    }
    return std::to_string(text.size()) + " bytes, hash " + std::to_string(hash);
}

std::int32_t LinkStatusFor(std::uint32_t linkType) {
    return static_cast<std::int32_t>(linkType * 31 + 7);
}

Expected ExpectedOf(std::int32_t id, const std::uint8_t* bytes, std::size_t size) {
    const Message message(bytes, size);
    switch (id) {
    case PlenxWire::kSendLocalMessage:
        return OfLocalMessage(message);
    case PlenxWire::kConnectNotify:
        return OfGroup("NotifyConnect", message);
    case PlenxWire::kDisconnectNotify:
        return OfGroup("NotifyDisconnect", message);
    case PlenxWire::kReconnectNotify:
        return OfGroup("NotifyReconnect", message);
    case PlenxWire::kLinkTypeQuery:
        return OfLinkQuery(message);
    case PlenxWire::kStatusNotify:
        return OfStatus(message);
    case PlenxWire::kErrorNotify:
        return OfError(message);
    case PlenxWire::kDiskNameNotify:
        return OfDiskName(message);
    case PlenxWire::kUpdateWindowsExplore:
        return OfPath(message);
    default:  // including the flush of a drive, which never fails
        return Taken("");
    }
}

std::optional<std::int32_t> NumberInReply(const std::uint8_t* reply, std::size_t size) {
    return Message(reply, size).Int32(0);
}

}  // namespace PlenxTest
