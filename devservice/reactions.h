// The reactions of a real peer to the library's requests. Each request that was taken leads to the
// notifications in the table of reactions.cpp, so that a host sees all of 9 to 18.

#ifndef PLENXSERVICE_REACTIONS_H
#define PLENXSERVICE_REACTIONS_H

#include <cstdint>
#include <string>

#include "notification.h"
#include "peer_state.h"

namespace PlenxService {

/// The state is that after the request; the data folder is that of this service.
Notifications ReactionsTo(std::int32_t request, const PlenxWire::Arguments& arguments,
                          const PeerState& state, const std::wstring& dataFolder);

}  // namespace PlenxService

#endif  // PLENXSERVICE_REACTIONS_H
