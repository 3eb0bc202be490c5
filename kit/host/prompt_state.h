// The prompt shows the starts and stops whose outcome has not been notified yet.
//
// It learns from the printed reports. Two threads must not use it at once.

#ifndef PLENXKIT_HOST_PROMPT_STATE_H
#define PLENXKIT_HOST_PROMPT_STATE_H

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "host/report.h"

namespace PlenxHost {

class PromptState {
public:
    void Saw(const CommandReport& report);
    void Saw(const NotificationReport& report);

    /// "plenx> ", "plenx (start pc home)> " or "plenx (2 pending)> ".
    std::string Prompt() const;

private:
    // The service, the group and the kind of status.
    using Outcome = std::tuple<std::int64_t, std::string, std::int64_t>;

    void Await(const Outcome& outcome) { Change(outcome, 1); }
    void Change(const Outcome& outcome, int by);

    bool initialised_ = false;
    // A count below 0 means that the outcome came before the command's own report.
    std::map<Outcome, int> awaited_;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_PROMPT_STATE_H
