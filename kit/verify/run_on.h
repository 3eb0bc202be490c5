// Runs the command on any machine, so that the tests can give it a machine of their own.

#ifndef PLENXKIT_VERIFY_RUN_ON_H
#define PLENXKIT_VERIFY_RUN_ON_H

#include "verify/command.h"
#include "verify/system.h"

namespace PlenxVerify {

/// @return the exit code. @throws Refusal and UsageError for those that Run reports.
int RunOn(System& system, const Options& options, const PlenxKit::Streams& streams);

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_RUN_ON_H
