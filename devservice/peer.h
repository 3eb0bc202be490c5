// The service as the library sees it. It answers requests, remembers their content, reacts with
// notifications, and misbehaves as the control file and the scenario say.

#ifndef PLENXSERVICE_PEER_H
#define PLENXSERVICE_PEER_H

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "answers.h"
#include "identity.h"
#include "notification_sender.h"
#include "peer_state.h"
#include "scenario_player.h"
#include "service_log.h"
#include "service_status.h"
#include "support/handle.h"

namespace PlenxService {

class Peer {
public:
    /// The event stop cuts every wait short.
    Peer(const Identity& identity, ServiceStatus& status, ServiceLog& log, ScenarioPlayer& scenario,
         NotificationSender& sender, const PlenxSupport::Handle& stop);

    /// Answers one request. Several threads may call it at once.
    Answer AnswerTo(std::int32_t request, const std::uint8_t* message, std::int32_t size);

    std::string Summary();

private:
    void EndIfTold(std::int32_t request, const Values& told);
    void LeakIfTold(const Values& told);
    void Take(std::int32_t request, const PlenxWire::Arguments& arguments, const Values& told);

    const Identity& identity_;
    ServiceStatus& status_;
    ServiceLog& log_;
    ScenarioPlayer& scenario_;
    NotificationSender& sender_;
    const PlenxSupport::Handle& stop_;

    std::mutex mutex_;
    PeerState state_;
    std::vector<PlenxSupport::Handle> lostHandles_;
    std::vector<std::vector<std::uint8_t>> lostBlocks_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_PEER_H
