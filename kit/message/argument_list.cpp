#include "message/argument_list.h"

#include <utility>

#include "message/usage.h"

namespace PlenxMessage {
namespace {

using PlenxWire::Argument;
using PlenxWire::ArgumentShape;
using PlenxWire::ArgumentType;

std::string NamesOf(const PlenxWire::MessageShape& shape) {
    std::string names;
    for (const ArgumentShape& argument : shape.arguments) {
        names += names.empty() ? "" : ", ";
        names += argument.name;
    }
    return names;
}

}  // namespace

ArgumentList::ArgumentList(const Subject& subject) : subject_(subject) {
    if (!subject.shape) {
        throw UsageError(subject.id ? "there is no message " + std::to_string(*subject.id) +
                                          "; \"plenxkit message list\" shows them all"
                                    : std::string("the message to build is not named"));
    }
    values_.resize(subject.shape->arguments.size());
}

ArgumentType ArgumentList::Expect(const std::string& name) const {
    const std::size_t index = IndexOf(name);
    if (values_[index]) {
        throw UsageError(name + " is given twice");
    }
    return subject_.shape->arguments[index].type;
}

void ArgumentList::Set(const std::string& name, Argument value) {
    values_[IndexOf(name)] = std::move(value);
}

Message ArgumentList::Built() const {
    PlenxWire::Arguments arguments;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        std::optional<Argument> value = values_[i] ? values_[i] : Default(i);
        if (!value) {
            const ArgumentShape& missing = subject_.shape->arguments[i];
            throw UsageError(std::string(missing.name) + " (" + PlenxWire::NameOf(missing.type) +
                             ") is missing; " + NameOf(subject_) +
                             " has: " + NamesOf(*subject_.shape));
        }
        arguments.push_back(std::move(*value));
    }
    const std::string error = PlenxWire::CheckShape(*subject_.shape, arguments);
    if (!error.empty()) {
        throw UsageError(error);
    }
    return {subject_, PlenxWire::Encode(arguments)};
}

std::size_t ArgumentList::IndexOf(const std::string& name) const {
    const auto& arguments = subject_.shape->arguments;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i].name == name) {
            return i;
        }
    }
    throw UsageError(NameOf(subject_) + " has no argument \"" + name +
                     "\"; it has: " + NamesOf(*subject_.shape));
}

// The length of an array stands in the argument before it.
std::optional<Argument> ArgumentList::Default(std::size_t index) const {
    const auto& arguments = subject_.shape->arguments;
    if (const auto& always = arguments[index].always) {
        return *always;
    }
    const std::size_t next = index + 1;
    if (next == arguments.size() || arguments[next].type != ArgumentType::kInt8Array) {
        return std::nullopt;
    }
    const auto& array = values_[next];
    if (!array) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(std::get<PlenxWire::Bytes>(*array).size());
}

}  // namespace PlenxMessage
