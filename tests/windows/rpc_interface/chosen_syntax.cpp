#include "rpc_interface/chosen_syntax.h"

#include <rpcndr.h>

namespace PlenxTest {
namespace {

thread_local Syntax syntaxOfThisCall = kUnknownSyntax;

RPC_DISPATCH_FUNCTION ndr20Entry = nullptr;
RPC_DISPATCH_FUNCTION ndr64Entry = nullptr;

void __RPC_STUB EnterInNdr20(PRPC_MESSAGE message) {
    syntaxOfThisCall = kNdr20;
    ndr20Entry(message);
}

void __RPC_STUB EnterInNdr64(PRPC_MESSAGE message) {
    syntaxOfThisCall = kNdr64;
    ndr64Entry(message);
}

}  // namespace

void WatchSyntaxes(RPC_IF_HANDLE which) {
    const auto* const served = static_cast<const RPC_SERVER_INTERFACE*>(which);
    const auto* const info = static_cast<const MIDL_SERVER_INFO*>(served->InterpreterInfo);
    RPC_DISPATCH_FUNCTION& ndr20 = *info->pSyntaxInfo[0].DispatchTable->DispatchTable;
    RPC_DISPATCH_FUNCTION& ndr64 = *info->pSyntaxInfo[1].DispatchTable->DispatchTable;
    ndr20Entry = ndr20;
    ndr64Entry = ndr64;
    ndr20 = EnterInNdr20;
    ndr64 = EnterInNdr64;
}

Syntax SyntaxOfThisCall() {
    return syntaxOfThisCall;
}

}  // namespace PlenxTest
