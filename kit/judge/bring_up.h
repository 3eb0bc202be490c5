// Brings up the program under judgement. It exists on Windows only.

#ifndef PLENXKIT_JUDGE_BRING_UP_H
#define PLENXKIT_JUDGE_BRING_UP_H

#include <chrono>
#include <memory>
#include <string>

#include "ending.h"
#include "judge/program.h"
#include "support/interruption.h"

namespace PlenxJudge {

using PlenxKit::Refusal;

struct Way {
    enum class Kind { kEndpoint, kService, kConsole };

    Kind kind = Kind::kEndpoint;
    std::string target;  // the endpoint, the program or the command
    int role = 1;
    std::string work;  // a folder; empty for the usual one
    std::chrono::milliseconds patience{5000};

    /// "PLENXPCService".
    std::string Endpoint() const;
};

/// Prepares everything, but starts the program only when a check needs it. From then on Ctrl-C and
/// the like raise the interruption. It must live as long as the process. @throws Refusal
std::unique_ptr<Program> BringUp(const Way& way, PlenxSupport::Interruption& interruption);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_BRING_UP_H
