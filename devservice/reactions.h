// How a living peer reacts to what the library tells it: each request that was taken leads to
// the notifications of the one table in reactions.cpp, so that a host sees all of 9 to 18.

#ifndef PLENXSERVICE_REACTIONS_H
#define PLENXSERVICE_REACTIONS_H

#include <cstdint>
#include <string>

#include "notification.h"
#include "peer_state.h"

namespace PlenxService {

/// state: as it is after the request. dataFolder: of this service.
Notifications ReactionsTo(std::int32_t request, const PlenxWire::Arguments& arguments,
                          const PeerState& state, const std::wstring& dataFolder);

}  // namespace PlenxService

#endif  // PLENXSERVICE_REACTIONS_H
