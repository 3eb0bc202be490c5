#include "wire/inspect.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace PlenxWire {
namespace {

constexpr std::uint64_t kHeaderSize = DescriptorOffset(0);

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

bool IsTypeTag(std::uint32_t tag) {
    return tag >= static_cast<std::uint32_t>(ArgumentType::kInt32) &&
           tag <= static_cast<std::uint32_t>(ArgumentType::kInt8Array);
}

class Inspector {
public:
    Inspector(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    Layout Run() {
        const std::optional<std::uint32_t> count = ReadHeader();
        if (!count) {
            return std::move(layout_);
        }
        for (std::uint64_t i = 0; i < *count; ++i) {
            layout_.fields.push_back(ReadField(i));
        }
        if (!misplaced_ && end_ != size_) {
            Add(end_,
                {Number(size_ - end_),
                 " bytes are left over after the last argument, which ends at ", Number(end_)});
        }
        return std::move(layout_);
    }

private:
    // Returns the number of arguments if their table can be read.
    std::optional<std::uint32_t> ReadHeader() {
        if (size_ < kHeaderSize) {
            Add(size_,
                {Number(size_), " bytes are too few: the header alone has ", Number(kHeaderSize)});
            return std::nullopt;
        }
        const std::uint32_t statedSize = Word(0);
        const std::uint32_t count = Word(4);
        layout_.statedSize = statedSize;
        layout_.count = count;
        if (statedSize != size_) {
            Add(0, {"the total size at offset 0 says ", Number(statedSize), ", the buffer has ",
                    Number(size_), " bytes"});
        }
        const std::uint64_t tableEnd = DescriptorOffset(count);
        if (tableEnd >= size_) {
            Add(4, {"the table of ", Number(count), " arguments ends at ", Number(tableEnd),
                    " and leaves no data in ", Number(size_), " bytes"});
            return std::nullopt;
        }
        end_ = tableEnd;
        layout_.fields.reserve(count);  // bounded by the table, which lies in the buffer
        return count;
    }

    Field ReadField(std::uint64_t index) {
        const std::uint64_t descriptor = DescriptorOffset(index);
        Field field;
        field.tag = Word(descriptor);
        field.offset = Word(descriptor + 4);
        field.size = Word(descriptor + 8);
        const bool inside = std::uint64_t{field.offset} + field.size <= size_;
        if (!IsTypeTag(field.tag)) {
            Add(descriptor, {"argument ", Number(index), ": unknown type tag ", Number(field.tag),
                             " at offset ", Number(descriptor)});
        } else {
            const auto type = static_cast<ArgumentType>(field.tag);
            const std::string who = Say({"argument ", Number(index), " (", NameOf(type), "): "});
            CheckPlace(who, descriptor, field, inside);
            if (inside && CheckSize(type, who, descriptor, field.size) && MayTake(field.size)) {
                field.value = ValueOf(type, who, field);
            }
        }
        // A wrong place is reported only once. The next argument may therefore begin at the end
        // that this one states.
        misplaced_ = misplaced_ || field.offset != end_ || !inside;
        end_ = std::uint64_t{field.offset} + field.size;
        return field;
    }

    void CheckPlace(const std::string& who, std::uint64_t descriptor, const Field& field,
                    bool inside) {
        if (field.offset != end_) {
            Add(descriptor + 4, {who, "its offset is ", Number(field.offset),
                                 ", but its data begins at ", Number(end_)});
        } else if (!inside) {
            Add(descriptor + 8, {who, Number(field.size), " bytes at offset ", Number(field.offset),
                                 " do not end within ", Number(size_)});
        }
    }

    bool CheckSize(ArgumentType type, const std::string& who, std::uint64_t descriptor,
                   std::uint32_t size) {
        if (type == ArgumentType::kString && size == 0) {
            Add(descriptor + 8, {who, "size 0 where at least its NUL must be"});
            return false;
        }
        const std::uint32_t needed = type == ArgumentType::kInt32   ? 4
                                     : type == ArgumentType::kInt64 ? 8
                                                                    : size;
        if (size != needed) {
            Add(descriptor + 8, {who, "size ", Number(size), " where it must be ", Number(needed)});
        }
        return size == needed;
    }

    // Arguments that overlap must not make a short message fill the memory.
    bool MayTake(std::uint32_t size) {
        taken_ += size;
        return taken_ <= size_;
    }

    std::optional<Argument> ValueOf(ArgumentType type, const std::string& who, const Field& field) {
        const std::uint8_t* const begin = data_ + field.offset;
        const std::uint8_t* const end = begin + field.size;
        switch (type) {
        case ArgumentType::kInt32:
            return static_cast<std::int32_t>(Word(field.offset));
        case ArgumentType::kInt64:
            return static_cast<std::int64_t>(std::uint64_t{Word(field.offset)} |
                                             std::uint64_t{Word(std::uint64_t{field.offset} + 4)}
                                                 << 32);
        case ArgumentType::kString:
            if (*(end - 1) != 0) {
                const std::uint64_t last = std::uint64_t{field.offset} + field.size - 1;
                Add(last, {who, "its last byte, at offset ", Number(last), ", is ",
                           Number(*(end - 1)), " where a NUL must be"});
                return std::nullopt;
            }
            return std::string(begin, end - 1);
        case ArgumentType::kInt8Array:
            return Bytes(begin, end);
        }
        return std::nullopt;
    }

    // The offset must have been checked against size_.
    std::uint32_t Word(std::uint64_t offset) const {
        std::uint32_t word = 0;
        for (unsigned i = 0; i < 4; ++i) {
            word |= std::uint32_t{data_[offset + i]} << (8 * i);
        }
        return word;
    }

    void Add(std::uint64_t offset, std::initializer_list<std::string_view> parts) {
        layout_.problems.push_back({offset, Say(parts)});
    }

    const std::uint8_t* const data_;
    const std::uint64_t size_;
    std::uint64_t end_ = 0;  // where the next argument's data must begin
    bool misplaced_ = false;
    std::uint64_t taken_ = 0;  // bytes of data that were copied into values
    Layout layout_;
};

// Wrong types show in the descriptor, wrong values in the data, and a wrong count in the header.
std::uint64_t PlaceOf(const ShapeProblem& problem, const Layout& layout) {
    if (!problem.argument) {
        return 4;
    }
    return problem.ofType ? DescriptorOffset(*problem.argument)
                          : layout.fields[*problem.argument].offset;
}

}  // namespace

Layout Inspect(const std::uint8_t* data, std::size_t size) {
    return Inspector(data, size).Run();
}

Arguments ValuesOf(const Layout& layout) {
    Arguments values;
    for (const Field& field : layout.fields) {
        if (field.value) {
            values.push_back(*field.value);
        }
    }
    return values;
}

Layout InspectAs(const MessageShape& shape, const std::uint8_t* data, std::size_t size) {
    Layout layout = Inspect(data, size);
    if (!layout.problems.empty()) {
        return layout;
    }
    for (ShapeProblem& problem : ShapeProblems(shape, ValuesOf(layout))) {
        layout.problems.push_back({PlaceOf(problem, layout), std::move(problem.text)});
    }
    return layout;
}

}  // namespace PlenxWire
