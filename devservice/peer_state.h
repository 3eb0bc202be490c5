// What a service knows from the requests it has taken. Not safe for several threads.

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

    /// Takes over what a well-formed request says.
    void Apply(std::int32_t request, const PlenxWire::Arguments& arguments);

    /// One line.
    std::string Summary() const;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_PEER_STATE_H
