#include <unistd.h>

#include <iostream>

#include "standard_streams.h"

namespace PlenxKit {

StandardStreams::StandardStreams()
    : inputIsConsole_(isatty(STDIN_FILENO) != 0),
      outputIsConsole_(isatty(STDOUT_FILENO) != 0),
      outputIsTerminal_(outputIsConsole_),
      errorsAreTerminal_(isatty(STDERR_FILENO) != 0) {}

StandardStreams::~StandardStreams() = default;

bool StandardStreams::ReadLine(std::string& line) const {
    return static_cast<bool>(std::getline(std::cin, line));
}

}  // namespace PlenxKit
