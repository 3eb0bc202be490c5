// The RPC link below the stubs. Calls and answers are the bytes that the stubs would marshal, so
// that a test can make them wrong in every way. It speaks NDR 2.0 only.
//
//     request   int32 id, int32 size, uint32 count, count bytes
//     answer    int32 size, uint32 pointer, [uint32 count, count bytes, padding], int32 result

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_RAW_LINK_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_RAW_LINK_H

#include <windows.h>

#include <cstdint>
#include <optional>

#include "wire/message.h"

namespace PlenxTest {

using PlenxWire::Bytes;

/// Returns whether this system compares the size that a caller states with the number of bytes that
/// it sends, and refuses the call if they differ. Otherwise the receiver sees the size, but not the
/// number.
bool RuntimeComparesSizes();

/// An honest request has size == count == message.size().
Bytes RequestBytes(std::int32_t id, std::int32_t size, std::uint32_t count, const Bytes& message);

struct RawAnswer {
    long status = 0;  // the link's status: 0, or the code of an exception
    std::int32_t result = 0;
    std::int32_t size = 0;
    std::optional<Bytes> block;
};

/// Calls the library's endpoint. Any thread may call it.
RawAnswer CallManagerRaw(const Bytes& request);

struct RawReply {
    Bytes bytes;
    unsigned long fault = 0;  // an exception to raise instead
};

Bytes AnswerBytes(std::int32_t size, const std::optional<Bytes>& block, std::int32_t result);

/// Serves the PC service's endpoint until the process ends. Several threads may ask for answers at
/// once. Call it once per process. @return the status of the RPC runtime.
long ServePcServiceRaw(RawReply (*answer)());

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_RAW_LINK_H
