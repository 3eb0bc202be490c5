// Wine's RPC server goes deaf when a client has opened its pipe and is gone before the server
// listens on that pipe: it then never listens again, and later clients wait for ever. Any client
// that ends in the middle of connecting can cause it, so the services of a soak do at times.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_LISTENER_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_LISTENER_H

#include <cstddef>

namespace PlenxSoak {

/// Returns whether a client could connect now. Ask only when no client is connecting. It waits some
/// seconds, because an endpoint may not be served yet.
bool TakesConnections(const wchar_t* endpoint);

/// Removes the dead clients from the pipes of an endpoint that this process serves, and wakes its
/// server. @return how many there were.
std::size_t ReviveListener(const wchar_t* endpoint);

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_LISTENER_H
