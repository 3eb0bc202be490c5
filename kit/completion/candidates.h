// What a shell may offer on the command line, from the table of the command line itself.

#ifndef PLENXKIT_COMPLETION_CANDIDATES_H
#define PLENXKIT_COMPLETION_CANDIDATES_H

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace PlenxKit {

/// The options, and the commands or values, that may follow the words; the shell picks those that
/// begin as what is being typed.
std::vector<std::string> Candidates(const CLI::App& program, const std::vector<std::string>& words);

}  // namespace PlenxKit

#endif  // PLENXKIT_COMPLETION_CANDIDATES_H
