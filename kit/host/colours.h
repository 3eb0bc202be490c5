// Decides whether there are colours, and paints text in them. All functions are pure.

#ifndef PLENXKIT_HOST_COLOURS_H
#define PLENXKIT_HOST_COLOURS_H

#include <string>

namespace PlenxHost {

enum class Colours { kNone, kSome };

/// The user's choice with --color.
enum class ColourWish { kAuto, kAlways, kNever };

/// noColor: the environment variable NO_COLOR, or null. It and the terminal count only where the
/// user asks for nothing else.
Colours DecideColours(ColourWish wish, bool isTerminal, const char* noColor);

enum class Role {
    kFaint,         ///< times and threads
    kCommand,       ///< a command of the host
    kNotification,  ///< a notification of the library
    kGood,          ///< an expectation that held, a good finding
    kWarning,       ///< something worth a look
    kBad,           ///< an expectation that did not hold, an error, a problem
    kHeading,
};

/// The text in the colour of its role.
std::string Paint(Colours colours, Role role, const std::string& text);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_COLOURS_H
