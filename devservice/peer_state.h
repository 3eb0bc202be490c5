// What a service knows from the requests that it has taken. Only one thread may use it at a time.

#ifndef PLENXSERVICE_PEER_STATE_H
#define PLENXSERVICE_PEER_STATE_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>

#include "wire/message.h"

namespace PlenxService {

struct PeerState {
    std::map<std::string, std::string> groups;                     // group name, argument
    std::set<std::tuple<std::string, std::string, bool>> devices;  // group, device, is remote
    std::map<std::int32_t, std::string> strings;
    std::map<std::int32_t, std::int64_t> numbers;
    std::string name;

    /// Takes over the content of a well-formed request.
    void Apply(std::int32_t request, const PlenxWire::Arguments& arguments);

    /// Returns one line that describes the state.
    std::string Summary() const;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_PEER_STATE_H
