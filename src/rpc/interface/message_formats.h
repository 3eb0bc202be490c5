/* The formats of the message procedure, in both transfer syntaxes. They do not contain the identity
 * of an interface, so one constant copy serves both interfaces and both roles. */

#ifndef PLENXSDK_RPC_INTERFACE_MESSAGE_FORMATS_H
#define PLENXSDK_RPC_INTERFACE_MESSAGE_FORMATS_H

#include <windows.h>

#include <rpc.h>
#include <rpcndr.h>

#include <ndr64types.h>

/* The arguments take 8 bytes each on the stack of the call. The handle is implicit and takes no
 * place. */
enum {
    PLENX_STACK_MSG_TYPE = 0,
    PLENX_STACK_MSG_SIZE = 8,
    PLENX_STACK_MSG = 16,
    PLENX_STACK_RESP_SIZE = 24,
    PLENX_STACK_RESP = 32,
    PLENX_STACK_RESULT = 40,
    PLENX_STACK_SIZE = 48,
};

/* The pad keeps the format strings where the interpreter expects them. */
enum { PLENX_NDR20_TYPE_STRING_SIZE = 39, PLENX_NDR20_PROC_STRING_SIZE = 63 };

typedef struct PlenxNdr20TypeString {
    short pad;
    unsigned char format[PLENX_NDR20_TYPE_STRING_SIZE];
} PlenxNdr20TypeString;

typedef struct PlenxNdr20ProcString {
    short pad;
    unsigned char format[PLENX_NDR20_PROC_STRING_SIZE];
} PlenxNdr20ProcString;

extern const PlenxNdr20TypeString plenxNdr20TypeString;
extern const PlenxNdr20ProcString plenxNdr20ProcString;

/* The places in the procedure string at which the procedures begin. */
extern const unsigned short plenxNdr20ProcOffsets[1];

/* The format of each procedure. */
extern const FormatInfoRef plenxNdr64ProcTable[1];

#endif
