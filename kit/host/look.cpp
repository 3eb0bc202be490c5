#include "host/look.h"

#include <cstdlib>

namespace PlenxHost {

Colours ColoursOf(const Look& look, bool isTerminal) {
    return DecideColours(look.colour, isTerminal, std::getenv("NO_COLOR"));
}

std::unique_ptr<LineFormat> FormatOf(const Look& look, bool isTerminal) {
    return look.json ? MakeJsonFormat() : MakeTextFormat(ColoursOf(look, isTerminal));
}

}  // namespace PlenxHost
