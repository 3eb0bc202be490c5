#include "host/colours.h"

namespace PlenxHost {
namespace {

// These are some of the 16 colours that every terminal has. Its user may have chosen them for the
// background, so black and white are not among them.
const char* CodeOf(Role role) {
    switch (role) {
    case Role::kFaint:
        return "90";
    case Role::kCommand:
        return "1";
    case Role::kNotification:
        return "36";
    case Role::kGood:
        return "32";
    case Role::kWarning:
        return "33";
    case Role::kBad:
        return "1;31";
    case Role::kHeading:
        return "1";
    }
    return "0";
}

}  // namespace

Colours DecideColours(ColourWish wish, bool isTerminal, const char* noColor) {
    switch (wish) {
    case ColourWish::kAlways:
        return Colours::kSome;
    case ColourWish::kNever:
        return Colours::kNone;
    case ColourWish::kAuto:
        break;
    }
    const bool refused = noColor != nullptr && *noColor != '\0';
    return isTerminal && !refused ? Colours::kSome : Colours::kNone;
}

std::string Paint(Colours colours, Role role, const std::string& text) {
    if (colours == Colours::kNone || text.empty()) {
        return text;
    }
    return std::string("\x1b[") + CodeOf(role) + "m" + text + "\x1b[0m";
}

}  // namespace PlenxHost
