/* The service's RPC endpoint. The runtime calls PlenxAnswerRequest on its own threads, up to ten at
 * once. */

#ifndef PLENXSERVICE_ENDPOINT_H
#define PLENXSERVICE_ENDPOINT_H

#ifdef __cplusplus

#include <string>

namespace PlenxService {

class Peer;

/// Serves the endpoint with the peer until the process ends. Call it once per process.
/// @return 0, or the RPC status of the failure.
long Serve(const std::wstring& endpoint, Peer& peer);

/// Lets no new requests in; those that are running go on.
void StopServing();

}  // namespace PlenxService

extern "C" {
#define PLENXSERVICE_NOEXCEPT noexcept
#else
#define PLENXSERVICE_NOEXCEPT
#endif

/* @return a fault to raise, or 0 when the other results count. */
unsigned long PlenxAnswerRequest(long msgType, long msgSize, const unsigned char* msg,
                                 long* respSize, unsigned char** resp,
                                 long* result) PLENXSERVICE_NOEXCEPT;

#undef PLENXSERVICE_NOEXCEPT

#ifdef __cplusplus
}
#endif

#endif
