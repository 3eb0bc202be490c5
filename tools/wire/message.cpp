#include "wire/message.h"

#include <limits>
#include <stdexcept>
#include <string_view>

namespace PlenxWire {
namespace {

constexpr std::uint64_t kHeaderSize = 8;
constexpr std::uint64_t kDescriptorSize = 12;
constexpr std::uint64_t kLargestMessage = std::numeric_limits<std::int32_t>::max();

std::uint64_t TableEnd(std::uint64_t count) {
    return kHeaderSize + kDescriptorSize * count;
}

template <class Number>
void AppendNumber(Bytes& out, Number number) {
    const auto bits = static_cast<std::uint64_t>(number);
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        out.push_back(static_cast<std::uint8_t>(bits >> (8 * i)));
    }
}

struct DataAppender {
    Bytes& out;

    void operator()(std::int32_t value) const { AppendNumber(out, value); }
    void operator()(std::int64_t value) const { AppendNumber(out, value); }
    void operator()(const std::string& value) const {
        out.insert(out.end(), value.begin(), value.end());
        out.push_back(0);
    }
    void operator()(const Bytes& value) const { out.insert(out.end(), value.begin(), value.end()); }
};

struct DataSize {
    std::uint64_t operator()(std::int32_t) const { return 4; }
    std::uint64_t operator()(std::int64_t) const { return 8; }
    std::uint64_t operator()(const std::string& value) const { return value.size() + 1; }
    std::uint64_t operator()(const Bytes& value) const { return value.size(); }
};

// Words in plain text, with the numbers in decimal.
std::string Say(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text.append(part);
    }
    return text;
}

std::string Number(std::uint64_t value) {
    return std::to_string(value);
}

class Decoder {
public:
    Decoder(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    Decoded Run() {
        if (ReadHeader()) {
            for (std::uint64_t i = 0; i < count_ && result_.Ok(); ++i) {
                ReadArgument(i);
            }
        }
        if (result_.Ok() && cursor_ != size_) {
            Fail({Number(size_ - cursor_), " bytes are left over after the last argument, which ",
                  "ends at ", Number(cursor_)});
        }
        if (!result_.Ok()) {
            result_.arguments.clear();
        }
        return std::move(result_);
    }

private:
    bool ReadHeader() {
        if (size_ < kHeaderSize) {
            return Fail({Number(size_), " bytes are no message: the header alone has ",
                         Number(kHeaderSize)});
        }
        if (const std::uint64_t stated = Word(0); stated != size_) {
            return Fail({"the total size at offset 0 says ", Number(stated), ", the buffer has ",
                         Number(size_), " bytes"});
        }
        count_ = Word(4);
        cursor_ = TableEnd(count_);
        if (cursor_ >= size_) {
            return Fail({"the table of ", Number(count_), " arguments ends at ", Number(cursor_),
                         " and leaves no data in ", Number(size_), " bytes"});
        }
        result_.arguments.reserve(count_);  // bounded: the table lies within the buffer
        return true;
    }

    void ReadArgument(std::uint64_t index) {
        const std::uint64_t descriptor = TableEnd(index);
        const std::uint64_t tag = Word(descriptor);
        const std::uint64_t offset = Word(descriptor + 4);
        const std::uint64_t size = Word(descriptor + 8);

        if (tag < static_cast<std::uint64_t>(ArgumentType::kInt32) ||
            tag > static_cast<std::uint64_t>(ArgumentType::kInt8Array)) {
            Fail({"argument ", Number(index), ": unknown type tag ", Number(tag), " at offset ",
                  Number(descriptor)});
            return;
        }
        const auto type = static_cast<ArgumentType>(tag);
        const std::string who = Say({"argument ", Number(index), " (", NameOf(type), "): "});
        if (offset != cursor_) {
            Fail({who, "its data is said to begin at ", Number(offset), ", it begins at ",
                  Number(cursor_)});
        } else if (size > size_ - offset) {
            Fail({who, Number(size), " bytes at offset ", Number(offset), " do not end within ",
                  Number(size_)});
        } else if (CheckSize(type, who, size)) {
            TakeData(type, who, size);
            cursor_ += size;
        }
    }

    bool CheckSize(ArgumentType type, const std::string& who, std::uint64_t size) {
        if (type == ArgumentType::kInt32 && size != 4) {
            return Fail({who, "size ", Number(size), " where it must be 4"});
        }
        if (type == ArgumentType::kInt64 && size != 8) {
            return Fail({who, "size ", Number(size), " where it must be 8"});
        }
        if (type == ArgumentType::kString && size == 0) {
            return Fail({who, "size 0 where at least its NUL must be"});
        }
        return true;
    }

    void TakeData(ArgumentType type, const std::string& who, std::uint64_t size) {
        const std::uint8_t* const begin = data_ + cursor_;
        const std::uint8_t* const end = begin + size;
        switch (type) {
        case ArgumentType::kInt32:
            result_.arguments.emplace_back(static_cast<std::int32_t>(Word(cursor_)));
            break;
        case ArgumentType::kInt64:
            result_.arguments.emplace_back(static_cast<std::int64_t>(
                std::uint64_t{Word(cursor_)} | std::uint64_t{Word(cursor_ + 4)} << 32));
            break;
        case ArgumentType::kString:
            if (*(end - 1) != 0) {
                Fail({who, "its last byte, at offset ", Number(cursor_ + size - 1), ", is ",
                      Number(*(end - 1)), " where a NUL must be"});
                return;
            }
            result_.arguments.emplace_back(std::string(begin, end - 1));
            break;
        case ArgumentType::kInt8Array:
            result_.arguments.emplace_back(Bytes(begin, end));
            break;
        }
    }

    // Only for offsets that have been checked against size_.
    std::uint32_t Word(std::uint64_t offset) const {
        std::uint32_t word = 0;
        for (unsigned i = 0; i < 4; ++i) {
            word |= std::uint32_t{data_[offset + i]} << (8 * i);
        }
        return word;
    }

    bool Fail(std::initializer_list<std::string_view> parts) {
        result_.error = Say(parts);
        return false;
    }

    const std::uint8_t* const data_;
    const std::uint64_t size_;
    std::uint64_t count_ = 0;
    std::uint64_t cursor_ = 0;  // where the next argument's data must begin
    Decoded result_;
};

}  // namespace

ArgumentType TypeOf(const Argument& argument) noexcept {
    return static_cast<ArgumentType>(argument.index() +
                                     static_cast<std::size_t>(ArgumentType::kInt32));
}

const char* NameOf(ArgumentType type) noexcept {
    switch (type) {
    case ArgumentType::kInt32:
        return "int32";
    case ArgumentType::kInt64:
        return "int64";
    case ArgumentType::kString:
        return "string";
    case ArgumentType::kInt8Array:
        return "int8 array";
    }
    return "unknown";
}

Bytes Encode(const Arguments& arguments) {
    std::uint64_t total = TableEnd(arguments.size());
    for (const Argument& argument : arguments) {
        total += std::visit(DataSize{}, argument);
    }
    if (total > kLargestMessage) {
        throw std::length_error("a message is larger than an int32 can say");
    }

    Bytes message;
    message.reserve(total);
    AppendNumber(message, static_cast<std::uint32_t>(total));
    AppendNumber(message, static_cast<std::uint32_t>(arguments.size()));
    std::uint64_t offset = TableEnd(arguments.size());
    for (const Argument& argument : arguments) {
        const std::uint64_t size = std::visit(DataSize{}, argument);
        AppendNumber(message, static_cast<std::uint32_t>(TypeOf(argument)));
        AppendNumber(message, static_cast<std::uint32_t>(offset));
        AppendNumber(message, static_cast<std::uint32_t>(size));
        offset += size;
    }
    for (const Argument& argument : arguments) {
        std::visit(DataAppender{message}, argument);
    }
    return message;
}

Decoded Decode(const std::uint8_t* data, std::size_t size) {
    return Decoder(data, size).Run();
}

}  // namespace PlenxWire
