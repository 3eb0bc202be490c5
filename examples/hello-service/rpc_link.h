/* Both directions of the link to the library. */

#ifndef HELLO_RPC_LINK_H
#define HELLO_RPC_LINK_H

#include <windows.h>

/* Serves the endpoint; requests come in on threads of the RPC runtime from now on.
 * Returns 0 or an RPC status. */
long Serve(const wchar_t* endpoint);

/* Lets no further request in. */
void StopServing(void);

#endif
