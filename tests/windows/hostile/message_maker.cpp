#include "hostile/message_maker.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "support/wide_text.h"
#include "wire/catalog.h"

namespace PlenxTest {
namespace {

using PlenxWire::Arguments;

constexpr std::size_t kHugeSize = std::size_t{16} * 1024 * 1024;
constexpr std::int32_t kFirstId = PlenxWire::kSendLocalMessage;
constexpr std::size_t kIds = 10;

// Checks go wrong at these numbers: around 0, around the change of sign, and where 12 * n + 8
// wraps.
constexpr std::uint32_t kWords[] = {
    0,          1,          2,          3,          4,          5,          7,
    8,          20,         24,         99,         0x7fffffff, 0x80000000, 0x80000008,
    0xfffffff0, 0xfffffff8, 0xfffffffc, 0xffffffff, 0x15555555, 0x15555556, 0x2aaaaaab,
};

void Put(Bytes& bytes, std::size_t at, std::uint32_t word) {
    std::memcpy(bytes.data() + at, &word, std::min(sizeof(word), bytes.size() - at));
}

// Damage to the words of the header and of the table hurts most.
std::size_t SomeWord(Random& random, const Bytes& message) {
    const std::size_t words = std::min<std::size_t>(message.size() / 4, 2 + 3 * 5);
    return words == 0 ? 0 : 4 * random.Below(words);
}

void Wound(Random& random, Bytes& message) {
    if (message.empty()) {
        message = random.Bytes(1 + random.Below(40));
        return;
    }
    switch (random.Below(7)) {
    case 0:
        message[random.Below(message.size())] ^= static_cast<std::uint8_t>(1 << random.Below(8));
        break;
    case 1:
        Put(message, SomeWord(random, message), random.OneOf(kWords));
        break;
    case 2:
        Put(message, SomeWord(random, message),
            static_cast<std::uint32_t>(message.size() + random.Below(9)) - 4);
        break;
    case 3:
        message.resize(random.Below(message.size()));
        break;
    case 4: {
        const Bytes more = random.Bytes(1 + random.Below(40));
        message.insert(message.end(), more.begin(), more.end());
        break;
    }
    case 5:
        Put(message, SomeWord(random, message), random.Word());
        break;
    default:
        message[random.Below(message.size())] = static_cast<std::uint8_t>(random.Word());
        break;
    }
}

// Makes a UTF-16 text, mostly with its end.
Bytes PathBytes(Random& random, const std::string& name) {
    std::wstring path = L"C:\\" + PlenxSupport::ToWide(name);
    if (random.Percent(90)) {
        path.push_back(L'\0');
    }
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(path.data());
    Bytes result(bytes, bytes + path.size() * sizeof(wchar_t));
    if (random.Percent(10)) {
        result.pop_back();
    }
    return result;
}

Notification Sealed(std::int32_t id, Bytes message) {
    Notification notification;
    notification.id = id;
    notification.message = std::move(message);
    notification.count = static_cast<std::uint32_t>(notification.message.size());
    notification.statedSize = static_cast<std::int32_t>(notification.message.size());
    return notification;
}

}  // namespace

Notification Honest(std::int32_t id, const Arguments& arguments) {
    return Sealed(id, PlenxWire::Encode(arguments));
}

Bytes Damaged(Random& random, Bytes message) {
    for (std::size_t wounds = 1 + random.Below(4); wounds != 0; --wounds) {
        Wound(random, message);
    }
    return message;
}

Bytes RandomTable(Random& random) {
    const auto count = static_cast<std::uint32_t>(random.Below(6));
    const std::size_t data = 1 + random.Below(60);
    Bytes message = random.Bytes(8 + 12 * count + data);
    const auto size = static_cast<std::uint32_t>(message.size());
    Put(message, 0, random.Percent(50) ? size : random.Word());
    Put(message, 4, random.Percent(80) ? count : random.OneOf(kWords));
    for (std::size_t i = 0; i != count; ++i) {
        Put(message, 8 + 12 * i, static_cast<std::uint32_t>(random.Below(7)));
        Put(message, 12 + 12 * i,
            random.Percent(70) ? static_cast<std::uint32_t>(random.Below(size + 4))
                               : random.OneOf(kWords));
        Put(message, 16 + 12 * i,
            random.Percent(70) ? static_cast<std::uint32_t>(random.Below(12))
                               : random.OneOf(kWords));
    }
    return message;
}

Bytes OfSpecialSize(Random& random) {
    constexpr std::size_t kSizes[] = {0, 1, 7, 8, 24, 65536};
    const std::size_t size = random.OneOf(kSizes);
    switch (random.Below(3)) {
    case 0:
        return Bytes(size, 0);
    case 1:
        return Bytes(size, 0xff);
    default:
        return random.Bytes(size);
    }
}

Bytes Huge(Random& random) {
    if (random.Percent(50)) {
        return PlenxWire::Encode({1, 1, std::string(kHugeSize, 'h')});
    }
    Bytes noise = PlenxWire::Encode({Bytes(kHugeSize, static_cast<std::uint8_t>(random.Word()))});
    Put(noise, 12, 0);
    return noise;
}

NotificationMaker::NotificationMaker(std::uint32_t seed, unsigned caller)
    : random_(seed, caller), caller_(caller), name_("h" + std::to_string(caller) + "n") {}

Notification NotificationMaker::Next() {
    ++made_;
    const std::int32_t id = SomeId();
    Notification notification = Sealed(id, IsHugeOnesTurn() ? Huge(random_) : Message(id));
    if (random_.Percent(6)) {
        Lie(notification);
    }
    return notification;
}

// Only a few callers send such messages: ten at once would test this machine instead.
bool NotificationMaker::IsHugeOnesTurn() const {
    return caller_ < 3 && made_ % 500 == 20;
}

std::int32_t NotificationMaker::SomeId() {
    constexpr std::uint32_t kOthers[] = {0, 6, 8, 19, 20, 100, 0x7fffffff, 0x80000000, 0xffffffff};
    return random_.Percent(92) ? kFirstId + static_cast<std::int32_t>(random_.Below(kIds))
                               : static_cast<std::int32_t>(random_.OneOf(kOthers));
}

Bytes NotificationMaker::Message(std::int32_t id) {
    const std::size_t choice = random_.Below(1000);
    if (choice < 400) {
        return Damaged(random_, PlenxWire::Encode(SomeArguments(id)));
    }
    if (choice < 550) {
        return PlenxWire::Encode(SomeArguments(id));
    }
    if (choice < 650) {  // of another id
        return PlenxWire::Encode(SomeArguments(SomeId()));
    }
    if (choice < 800) {
        return RandomTable(random_);
    }
    if (choice < 920) {
        return random_.Bytes(random_.Below(200));
    }
    return OfSpecialSize(random_);
}

// The size that the receiver is told and the bytes that it is given are two different things.
void NotificationMaker::Lie(Notification& notification) {
    constexpr std::int32_t kNegative[] = {-1, -8, std::numeric_limits<std::int32_t>::min()};
    switch (random_.Below(4)) {
    case 0:
        notification.cut = true;
        break;
    case 1:
        notification.statedSize = random_.OneOf(kNegative);
        break;
    case 2:
        notification.statedSize =
            static_cast<std::int32_t>(random_.Below(notification.message.size() + 1));
        break;
    default:  // fewer bytes than the link itself was promised
        notification.count += 1 + static_cast<std::uint32_t>(random_.Below(1000));
        notification.statedSize = static_cast<std::int32_t>(notification.count);
        break;
    }
}

std::string NotificationMaker::GroupName() {
    const char* const suffixes[] = {"_0",  "_1",  "_2",           "_3",  "_007", "_2147483647",
                                    "",    "_",   "_2147483648",  "_x",  "_-1",  "_ 1",
                                    "_+1", "_1_", "_99999999999", "__1", "_1a",  "_1\x80"};
    const std::string name = name_ + std::to_string(made_);
    if (random_.Percent(10)) {
        return std::string("\xff\0\x80_", 4) + name + "_1";
    }
    return name + (random_.Percent(60) ? "_1" : random_.OneOf(suffixes));
}

Arguments NotificationMaker::SomeArguments(std::int32_t id) {
    const std::string name = name_ + std::to_string(made_);
    const auto number = [this] { return static_cast<std::int32_t>(random_.Word()); };
    switch (id) {
    case PlenxWire::kSendLocalMessage:
        return {number(), number(), std::string(name)};
    case PlenxWire::kLinkTypeQuery:
        return {GroupName(), number()};
    case PlenxWire::kStatusNotify:
        return {GroupName(), number(), static_cast<std::int32_t>(random_.Below(3))};
    case PlenxWire::kErrorNotify:
        return {number()};
    case PlenxWire::kDiskNameNotify:
        return {random_.Percent(80) ? name : std::string()};
    case PlenxWire::kUpdateWindowsExplore: {
        const Bytes path = PathBytes(random_, name);
        return {static_cast<std::int32_t>(path.size()), path};
    }
    case PlenxWire::kExploreFlushNotify: {
        const char* const disks[] = {"P:", "p:", "", "1", "[", "\xc4:", "Z"};
        return {std::string(random_.OneOf(disks)), static_cast<std::int32_t>(random_.Below(4))};
    }
    default:
        return {GroupName()};
    }
}

}  // namespace PlenxTest
