// Takes the names of people and of their machine out of what is sent.

#ifndef PLENXKIT_VERIFY_REDACTION_H
#define PLENXKIT_VERIFY_REDACTION_H

#include <string>
#include <vector>

#include "verify/record.h"

namespace PlenxVerify {

struct Secret {
    std::string text;
    std::string replacement;  // "%USERPROFILE%"
    bool isPath = false;      // otherwise it is a name, and counts only as a whole word
};

class Redaction {
public:
    explicit Redaction(std::vector<Secret> secrets);

    std::string Of(const std::string& text) const;
    RunRecord Of(RunRecord run) const;

private:
    std::vector<Secret> secrets_;
};

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_REDACTION_H
