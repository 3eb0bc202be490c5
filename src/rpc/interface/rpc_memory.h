/* The memory of the RPC interfaces: every block that the runtime takes over from us or hands
 * to us is allocated and released here. Usable from any thread. */

#ifndef PLENXSDK_RPC_INTERFACE_RPC_MEMORY_H
#define PLENXSDK_RPC_INTERFACE_RPC_MEMORY_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Null when there is no memory; nothing is thrown. */
void* MIDL_user_allocate(size_t size);

/* Null is allowed. */
void MIDL_user_free(void* block);

#ifdef __cplusplus
}
#endif

#endif
