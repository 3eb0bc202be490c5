/* The result of one guarded call of a message procedure. Both interfaces have the same procedure
 * and therefore the same reply. */

#ifndef PLENXSDK_RPC_INTERFACE_MESSAGE_REPLY_H
#define PLENXSDK_RPC_INTERFACE_MESSAGE_REPLY_H

/* When raised is set, result and size are 0 and block is null. */
typedef struct PlenxMessageReply {
    int raised;                  /* non-zero: an exception came instead of an answer */
    unsigned long exceptionCode; /* the code of that exception, any 32-bit value */
    long result;                 /* the procedure's result */
    long size;            /* as the peer states it: may be negative, or wrong when block is null */
    unsigned char* block; /* release it with MIDL_user_free unless it is null, whatever result is */
} PlenxMessageReply;

#endif
