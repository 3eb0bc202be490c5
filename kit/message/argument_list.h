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
    /// @throws UsageError when nothing is known of the subject's arguments.
    explicit ArgumentList(const Subject& subject);

    /// Which type the argument must have.
    /// @throws UsageError when the message has no such argument, or has it already.
    PlenxWire::ArgumentType Expect(const std::string& name) const;

    void Set(const std::string& name, PlenxWire::Argument value);

    /// Fills in what may be left out, and encodes.
    /// @throws UsageError when something is missing or does not fit together.
    Message Built() const;

private:
    std::size_t IndexOf(const std::string& name) const;
    std::optional<PlenxWire::Argument> Default(std::size_t index) const;

    Subject subject_;
    std::vector<std::optional<PlenxWire::Argument>> values_;
};

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_ARGUMENT_LIST_H
