// Writes results as build servers read them: JUnit's XML.

#ifndef PLENXKIT_JUNIT_H
#define PLENXKIT_JUNIT_H

#include <string>
#include <vector>

namespace PlenxKit {

struct JunitCase {
    std::string name;
    double seconds = 0;
    std::string failure = {};  ///< empty when it passed
    std::string remark = {};   ///< more about a pass; it may be empty
    std::string details = {};  ///< more about a failure, in any number of lines
    std::string skipped = {};  ///< why it was not tried; empty when it was
};

/// One suite with its cases, in their order. A character that XML does not allow becomes a question
/// mark.
std::string JunitOf(const std::string& suite, const std::vector<JunitCase>& cases);

}  // namespace PlenxKit

#endif  // PLENXKIT_JUNIT_H
