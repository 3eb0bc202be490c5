// What the servers of the test do: the message type tells them. The same answers stand behind
// both interfaces and both kinds of stubs.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_SERVER_ROUTINES_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_SERVER_ROUTINES_H

#include <cstdint>
#include <cstring>

#include "rpc_interface/calls.h"

namespace PlenxTest {

enum MessageType : long {
    kEcho,              // replies with the message
    kReplyOfSize,       // replies with as many bytes as the message's number says
    kNullReply,         // size 0 and no block
    kResult,            // the message's number as the result, no block
    kResultWithReply,   // the message's number as the result, 3 bytes as the reply
    kSizeWithoutBlock,  // the message's number as the size, no block
    kRaise,             // raises the message's number
    kFault,             // writes to where nothing is
    kEndProcess,        // ends the server's process
    kCallManagerBack,   // calls the manager on the endpoint that the message names, echoes that
    kEntryState,        // replies with 1 when size and block were 0 and null on entry, or 0
    kBlocksOut,         // replies with the number of blocks that are out in the server
};

inline Bytes Number(std::uint32_t number) {
    Bytes bytes(sizeof(number));
    std::memcpy(bytes.data(), &number, sizeof(number));
    return bytes;
}

inline std::uint32_t NumberIn(const Bytes& bytes) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data(), bytes.size() < sizeof(number) ? 0 : sizeof(number));
    return number;
}

/// Bytes that show a shift, a cut and a swap.
inline Bytes Pattern(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
    }
    return bytes;
}

/// Writes to where nothing is: an access violation of this process.
inline void Fault() {
    static volatile char* volatile nowhere = reinterpret_cast<volatile char*>(16);
    *nowhere = 1;
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_SERVER_ROUTINES_H
