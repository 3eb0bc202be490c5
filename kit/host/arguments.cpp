#include "host/arguments.h"

#include <algorithm>

#include "host/text.h"

namespace PlenxHost {
namespace {

constexpr std::uint64_t kMostBytes = 1U << 30;
constexpr std::int64_t kDayInMilliseconds = std::int64_t{24} * 60 * 60 * 1000;

std::string Shown(const Word& word) {
    return Quote(word.text, 60);
}

std::uint64_t SizeOf(std::string_view digits, const Word& word) {
    if (const auto size = ToUint64(digits)) {
        return *size;
    }
    throw ScriptError("this is not a size: " + Shown(word));
}

std::string Repeated(const Word& word) {
    const std::string_view rest = std::string_view(word.text).substr(7);
    const std::size_t colon = rest.find(':');
    if (colon == std::string_view::npos) {
        throw ScriptError("write repeat:N:text, not " + Shown(word));
    }
    const std::uint64_t count = SizeOf(rest.substr(0, colon), word);
    const std::string_view piece = rest.substr(colon + 1);
    if (!piece.empty() && count > kMostBytes / piece.size()) {
        throw ScriptError("more than 1 GiB: " + Shown(word));
    }
    std::string text;
    text.reserve(count * piece.size());
    for (std::uint64_t i = 0; i != count && !piece.empty(); ++i) {
        text += piece;
    }
    return text;
}

std::string CountingBytes(const Word& word) {
    const std::uint64_t count = SizeOf(std::string_view(word.text).substr(6), word);
    if (count > kMostBytes) {
        throw ScriptError("more than 1 GiB: " + Shown(word));
    }
    std::string bytes(count, '\0');
    for (std::uint64_t i = 0; i != count; ++i) {
        bytes[i] = static_cast<char>(i & 0xFF);
    }
    return bytes;
}

// The library takes the low 32 bits as a signed number, and reads that many bytes.
std::uint64_t BytesRead(std::uint64_t toldSize) {
    const auto narrowed = static_cast<std::int32_t>(static_cast<std::uint32_t>(toldSize));
    return static_cast<std::uint64_t>(std::max(narrowed, 0));
}

}  // namespace

std::string TextOf(const Word& word) {
    if (word.Has("repeat:")) {
        return Repeated(word);
    }
    if (word.Has("hex:")) {
        if (auto bytes = FromHex(std::string_view(word.text).substr(4))) {
            return *bytes;
        }
        throw ScriptError("these are not pairs of hexadecimal digits: " + Shown(word));
    }
    return word.text;
}

std::uint32_t Bits32Of(const Word& word, const std::string& what) {
    if (const auto bits = ToBits32(word.text)) {
        return *bits;
    }
    throw ScriptError(what + " is a 32-bit number, not " + Shown(word));
}

std::uint32_t ServiceTypeOf(const Word& word) {
    constexpr const char* kNames[] = {"office", "pc", "phone", "all"};
    for (std::uint32_t type = 0; type != std::size(kNames); ++type) {
        if (word.Is(kNames[type])) {
            return type;
        }
    }
    return Bits32Of(word, "a service (office, pc, phone, all)");
}

const Word& Arguments::Take(const std::string& what) {
    if (Empty()) {
        throw ScriptError(what + " is missing");
    }
    return words_[next_++];
}

DistributedFs::ServiceType Arguments::TakeServiceType() {
    return static_cast<DistributedFs::ServiceType>(ServiceTypeOf(Take("service")));
}

DistributedFs::ConfigType Arguments::TakeConfigType() {
    return static_cast<DistributedFs::ConfigType>(Bits32Of(Take("key"), "the key"));
}

std::int32_t Arguments::TakeInt32(const std::string& what) {
    return static_cast<std::int32_t>(Bits32Of(Take(what), what));
}

std::int64_t Arguments::TakeInt64(const std::string& what) {
    const Word& word = Take(what);
    if (const auto number = ToInt64(word.text)) {
        return *number;
    }
    throw ScriptError(what + " is a 64-bit number, not " + Shown(word));
}

int Arguments::TakeMilliseconds() {
    const std::int64_t span = TakeInt64("milliseconds");
    if (span < 0 || span > kDayInMilliseconds) {
        throw ScriptError("milliseconds must be from 0 to 86400000");
    }
    return static_cast<int>(span);
}

bool Arguments::TakeOnOff() {
    const Word& word = Take("on or off");
    if (!word.Is("on") && !word.Is("off")) {
        throw ScriptError("write on or off, not " + Shown(word));
    }
    return word.Is("on");
}

DataBlock Arguments::TakeData() {
    const Word& word = Take("data");
    DataBlock block;
    if (word.Is("null") || word.Has("null:")) {
        block.isNull = true;
        block.size = word.Is("null") ? 0 : SizeOf(std::string_view(word.text).substr(5), word);
    } else {
        block.bytes = word.Has("bytes:") ? CountingBytes(word) : TextOf(word);
        block.size = block.bytes.size();
    }
    if (!Empty()) {
        const Word& told = Take("size");
        block.size = SizeOf(told.text, told);
    }
    if (!block.isNull && BytesRead(block.size) > block.bytes.size()) {
        throw ScriptError("the library would read past the data");
    }
    return block;
}

std::vector<Word> Arguments::TakeUntil(const std::string& keyword) {
    std::vector<Word> taken;
    while (!Empty()) {
        const Word& word = words_[next_++];
        if (word.Is(keyword)) {
            return taken;
        }
        taken.push_back(word);
    }
    throw ScriptError(keyword + " is missing");
}

void Arguments::End() const {
    if (!Empty()) {
        throw ScriptError("unexpected argument: " + Shown(words_[next_]));
    }
}

}  // namespace PlenxHost
