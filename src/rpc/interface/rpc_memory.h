/* These two allocate and release every block that the RPC runtime takes from us or hands to us. Any
 * thread may call them. */

#ifndef PLENXSDK_RPC_INTERFACE_RPC_MEMORY_H
#define PLENXSDK_RPC_INTERFACE_RPC_MEMORY_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Returns null when there is no memory, and never throws. */
void* MIDL_user_allocate(size_t size);

/* The block may be null. */
void MIDL_user_free(void* block);

#ifdef __cplusplus
}
#endif

#endif
