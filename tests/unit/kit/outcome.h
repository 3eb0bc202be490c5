// Runs the program inside the test, as its command line would.

#ifndef TESTS_UNIT_KIT_OUTCOME_H
#define TESTS_UNIT_KIT_OUTCOME_H

#include <sstream>
#include <string>
#include <vector>

#include "command_line.h"

namespace PlenxKit {

struct Outcome {
    int code;
    std::string out;
    std::string err;
};

inline Outcome OutcomeOf(const std::vector<std::string>& arguments, const std::string& input = "") {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    const int code = Run(arguments, {in, out, err, StandardStreams()});
    return {code, out.str(), err.str()};
}

}  // namespace PlenxKit

#endif  // TESTS_UNIT_KIT_OUTCOME_H
