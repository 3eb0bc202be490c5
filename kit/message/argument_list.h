// The arguments of one message, given by name in any order.

#ifndef PLENXKIT_MESSAGE_ARGUMENT_LIST_H
#define PLENXKIT_MESSAGE_ARGUMENT_LIST_H

#include <optional>
#include <string>
#include <vector>

#include "message/subject.h"

namespace PlenxMessage {

class ArgumentList {
public:
    /// @throws UsageError when the subject's arguments are not known.
    explicit ArgumentList(const Subject& subject);

    /// The type that the argument must have.
    /// @throws UsageError when the message has no such argument, or has it already.
    PlenxWire::ArgumentType Expect(const std::string& name) const;

    void Set(const std::string& name, PlenxWire::Argument value);

    /// Fills in the arguments that may be left out, and encodes the message.
    /// @throws UsageError when an argument is missing or does not fit the others.
    Message Built() const;

private:
    std::size_t IndexOf(const std::string& name) const;
    std::optional<PlenxWire::Argument> Default(std::size_t index) const;

    Subject subject_;
    std::vector<std::optional<PlenxWire::Argument>> values_;
};

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_ARGUMENT_LIST_H
