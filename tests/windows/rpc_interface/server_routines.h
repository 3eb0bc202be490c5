// The message type tells the servers of the test what to do. Both interfaces and both kinds of
// stubs give the same answers.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_SERVER_ROUTINES_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_SERVER_ROUTINES_H

#include <cstdint>
#include <cstring>

#include "rpc_interface/calls.h"

namespace PlenxTest {

enum MessageType : long {
    kEcho,              // replies with the message
    kReplyOfSize,       // replies with as many bytes as the message's number says
    kNullReply,         // gives size 0 and no block
    kResult,            // returns the message's number, without a block
    kResultWithReply,   // returns the message's number, with a reply of 3 bytes
    kSizeWithoutBlock,  // gives the message's number as the size, without a block
    kRaise,             // raises the message's number
    kFault,             // writes to an invalid address
    kEndProcess,        // ends the server's process
    kCallManagerBack,   // calls the manager on the endpoint in the message, then echoes
    kEntryState,        // replies with 1 when size and block were 0 and null on entry, or 0
    kBlocksOut,         // replies with the number of blocks that are out in the server
    kSyntax,            // replies with the transfer syntax of the call
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

/// Returns bytes in which a shift, a cut or a swap shows.
inline Bytes Pattern(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
    }
    return bytes;
}

/// Causes an access violation in this process.
inline void Fault() {
    static volatile char* volatile nowhere = reinterpret_cast<volatile char*>(16);
    *nowhere = 1;
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_SERVER_ROUTINES_H
