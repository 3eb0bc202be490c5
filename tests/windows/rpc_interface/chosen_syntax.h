// Tells in which transfer syntax a call has reached a server with the library's own tables. The
// runtime has an entry of its own for each syntax.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_CHOSEN_SYNTAX_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_CHOSEN_SYNTAX_H

#include <windows.h>

#include <rpc.h>

#include <cstdint>

namespace PlenxTest {

enum Syntax : std::uint32_t { kUnknownSyntax, kNdr20, kNdr64 };

/// From now on the calls of this interface are watched. It must be the library's own.
void WatchSyntaxes(RPC_IF_HANDLE which);

/// Returns the syntax of the call that this thread serves.
Syntax SyntaxOfThisCall();

inline const char* NameOf(Syntax syntax) {
    return syntax == kNdr64 ? "NDR64" : syntax == kNdr20 ? "NDR 2.0" : "unknown";
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_CHOSEN_SYNTAX_H
