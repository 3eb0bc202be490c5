#include "rpc_interface/format_model.h"

#include <utility>

namespace PlenxTest {
namespace {

void Require(bool condition, const char* what) {
    if (!condition) {
        throw FormatError(what);
    }
}

class Marshaller {
public:
    Marshaller(const WireRules& rules, const Stack& stack) : rules_(rules), stack_(stack) {}

    void Put(const Parameter& parameter) {
        const Argument& argument = At(parameter.offset, parameter.shape);
        switch (parameter.shape) {
        case Shape::kLong:
        case Shape::kErrorStatus:
        case Shape::kLongPointer:
            PutNumber(static_cast<std::uint32_t>(argument.number), 4);
            break;
        case Shape::kArray:
            PutArray(parameter, argument);
            break;
        case Shape::kArrayPointerPointer:
            // The outer pointer is a ref pointer, which is not on the wire.
            PutNumber(argument.bytes ? kReferentId : 0, rules_.id);
            if (argument.bytes) {
                PutArray(parameter, argument);
            }
            break;
        }
    }

    std::vector<std::uint8_t> Take() { return std::move(wire_); }

private:
    static constexpr std::uint64_t kReferentId = 0x20000;

    const Argument& At(std::uint32_t offset, Shape shape) const {
        const auto found = stack_.find(offset);
        Require(found != stack_.end(), "nothing stands at the offset");
        Require(found->second.shape == shape, "something else stands at the offset");
        return found->second;
    }

    void PutArray(const Parameter& parameter, const Argument& array) {
        const Argument& size = At(parameter.sizeOffset,
                                  parameter.sizeBehindPointer ? Shape::kLongPointer : Shape::kLong);
        Require(array.bytes && array.bytes->size() == static_cast<std::size_t>(size.number),
                "the array is not as long as its size says");
        PutNumber(array.bytes->size(), rules_.count);
        wire_.insert(wire_.end(), array.bytes->begin(), array.bytes->end());
    }

    // Appends the number, aligned to its own width.
    void PutNumber(std::uint64_t number, std::size_t width) {
        wire_.resize((wire_.size() + width - 1) / width * width);
        for (std::size_t i = 0; i < width; ++i) {
            wire_.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
        }
    }

    const WireRules& rules_;
    const Stack& stack_;
    std::vector<std::uint8_t> wire_;
};

std::string DirectionText(const Parameter& parameter) {
    if (parameter.result) {
        return "return ";
    }
    return std::string(parameter.in ? "in " : "") + (parameter.out ? "out " : "");
}

std::string TypeText(const Parameter& parameter) {
    const std::string size = std::string(parameter.sizeBehindPointer ? "*@" : "@") +
                             std::to_string(parameter.sizeOffset);
    switch (parameter.shape) {
    case Shape::kLong:
        return "long";
    case Shape::kErrorStatus:
        return "error_status_t";
    case Shape::kLongPointer:
        return "long*";
    case Shape::kArray:
        return "byte[" + size + "]";
    case Shape::kArrayPointerPointer:
        return "byte**[" + size + "]";
    }
    return "?";
}

}  // namespace

std::string Signature(const Procedure& procedure) {
    std::string text;
    for (const Parameter& parameter : procedure.parameters) {
        text += DirectionText(parameter) + TypeText(parameter) + " @" +
                std::to_string(parameter.offset) + "; ";
    }
    return text + "stack " + std::to_string(procedure.stackSize);
}

std::vector<std::uint8_t> Marshal(const Procedure& procedure, const WireRules& rules,
                                  Direction direction, const Stack& stack) {
    Marshaller marshaller(rules, stack);
    for (const Parameter& parameter : procedure.parameters) {
        if (direction == Direction::kRequest ? parameter.in : parameter.out) {
            marshaller.Put(parameter);
        }
    }
    return marshaller.Take();
}

}  // namespace PlenxTest
