// The service as the library sees it: answers requests, keeps what they say, reacts with
// notifications, and misbehaves as the control file and the scenario tell it to.

#ifndef PLENXSERVICE_PEER_H
#define PLENXSERVICE_PEER_H

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "handle.h"
#include "identity.h"
#include "notification_sender.h"
#include "peer_state.h"
#include "scenario_player.h"
#include "service_log.h"
#include "service_status.h"

namespace PlenxService {

/// Codes of its own in the int32 of a reply.
enum AnswerCode : std::int32_t {
    kTaken = 0,
    kBrokenMessage = 1001,
    kUnknownRequest = 1002,
};

struct Answer {
    long result = 0;                        // of the procedure
    long statedSize = 0;                    // may lie
    std::optional<PlenxWire::Bytes> reply;  // none: a null pointer
    unsigned long fault = 0;                // to be raised instead of anything else
};

class Peer {
public:
    /// stop: cuts every wait short.
    Peer(const Identity& identity, ServiceStatus& status, ServiceLog& log, ScenarioPlayer& scenario,
         NotificationSender& sender, const Handle& stop);

    /// One request; any thread, several at once.
    Answer AnswerTo(std::int32_t request, const std::uint8_t* message, std::int32_t size);

    std::string Summary();

private:
    /// @return the code of an honest answer.
    std::int32_t Judge(std::int32_t request, const PlenxWire::Decoded& decoded) const;
    void EndIfTold(std::int32_t request, const Values& told);
    void Take(std::int32_t request, const PlenxWire::Arguments& arguments, const Values& told);

    const Identity& identity_;
    ServiceStatus& status_;
    ServiceLog& log_;
    ScenarioPlayer& scenario_;
    NotificationSender& sender_;
    const Handle& stop_;

    std::mutex mutex_;
    PeerState state_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_PEER_H
