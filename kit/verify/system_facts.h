// Describes the machine for a report, and knows what must not be in one. Windows only.

#ifndef PLENXKIT_VERIFY_SYSTEM_FACTS_H
#define PLENXKIT_VERIFY_SYSTEM_FACTS_H

#include <vector>

#include "verify/record.h"
#include "verify/redaction.h"

namespace PlenxVerify {

Facts FactsOfThisSystem();

/// The folder of the user's profile, the names of the user and of the machine.
std::vector<Secret> SecretsOfThisSystem();

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_SYSTEM_FACTS_H
