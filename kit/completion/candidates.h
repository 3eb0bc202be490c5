// The words that a shell may offer, taken from the declaration of the command line itself.

#ifndef PLENXKIT_COMPLETION_CANDIDATES_H
#define PLENXKIT_COMPLETION_CANDIDATES_H

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace PlenxKit {

/// The options, and the commands or values, that may follow the words; the shell picks those that
/// begin with the typed text.
std::vector<std::string> Candidates(const CLI::App& program, const std::vector<std::string>& words);

}  // namespace PlenxKit

#endif  // PLENXKIT_COMPLETION_CANDIDATES_H
