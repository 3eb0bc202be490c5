// The form of a notification that a script expects.
//
//     NotifyStatus pc "my group" start true     arguments in their order
//     NotifyStatus sttsType=100 observer=b      arguments by name
//     NotifyConnect * "my group"                * stands for any value
//     *                                         any notification
//
// Arguments that are not given may have any value. Numbers are compared as 32 bits.

#ifndef PLENXKIT_HOST_PATTERN_H
#define PLENXKIT_HOST_PATTERN_H

#include <string>
#include <vector>

#include "host/notification.h"
#include "host/script_parser.h"

namespace PlenxHost {

class Pattern {
public:
    /// @throws ScriptError
    explicit Pattern(const std::vector<Word>& words);

    bool Matches(const Notification& notification) const;
    /// Whether it is the same notification of the same service, with other arguments.
    bool IsNearMiss(const Notification& notification) const;
    /// Whether it differs from the expected one only in its true or false. Only a pattern that
    /// names every other argument has an opposite.
    bool IsOpposite(const Notification& notification) const;

private:
    std::string name_;           // empty for any notification
    std::vector<Field> wanted_;  // "observer" is compared with the observer's name
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_PATTERN_H
