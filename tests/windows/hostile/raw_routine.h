/* The server routine of the raw link, in C: a fault that is to be raised must not pass C++
 * frames. */

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_RAW_ROUTINE_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_RAW_ROUTINE_H

#include <windows.h>

#include <rpc.h>
#include <rpcdcep.h>

#ifdef __cplusplus
extern "C" {
#endif

/* For a dispatch table. */
void __RPC_STUB PlenxRawRoutine(PRPC_MESSAGE message);

/* Fills the answer. @return the code of a fault to be raised, or 0. */
unsigned long PlenxAnswerRaw(PRPC_MESSAGE message);

#ifdef __cplusplus
}
#endif

#endif
