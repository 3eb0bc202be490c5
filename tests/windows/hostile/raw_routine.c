#include "hostile/raw_routine.h"

void __RPC_STUB PlenxRawRoutine(PRPC_MESSAGE message) {
    const unsigned long fault = PlenxAnswerRaw(message);
    if (fault != 0) {
        RpcRaiseException((RPC_STATUS)fault);
    }
}
