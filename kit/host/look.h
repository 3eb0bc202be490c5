// The look of a command's output: for people, with colours or without, or for programs.

#ifndef PLENXKIT_HOST_LOOK_H
#define PLENXKIT_HOST_LOOK_H

#include <memory>

#include "host/colours.h"
#include "host/line_format.h"

namespace PlenxHost {

struct Look {
    bool json = false;
    ColourWish colour = ColourWish::kAuto;
};

/// Asks the environment for NO_COLOR.
Colours ColoursOf(const Look& look, bool isTerminal);
std::unique_ptr<LineFormat> FormatOf(const Look& look, bool isTerminal);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_LOOK_H
