/* What one guarded call of a message procedure brought back. Both interfaces have the same
 * procedure and therefore the same reply. */

#ifndef PLENXSDK_RPC_INTERFACE_MESSAGE_REPLY_H
#define PLENXSDK_RPC_INTERFACE_MESSAGE_REPLY_H

/* When raised is set, result and size are 0 and block is null. */
typedef struct PlenxMessageReply {
    int raised;                  /* non-zero: an exception came instead of an answer */
    unsigned long exceptionCode; /* of that exception, any 32-bit value */
    long result;                 /* of the procedure */
    long size;            /* as the peer states it: may be negative, or lie when block is null */
    unsigned char* block; /* to be released with MIDL_user_free when not null, whatever result is */
} PlenxMessageReply;

#endif
