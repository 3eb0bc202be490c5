/* Serves the endpoint at which the library's requests come in. */

#ifndef HELLO_SERVICE_LINK_H
#define HELLO_SERVICE_LINK_H

#include <wchar.h>

/* Serves the endpoint. From now on requests come in on threads of the RPC runtime.
 * Returns 0 or an RPC status. */
long Serve(const wchar_t* endpoint);

/* Lets no more requests in. */
void StopServing(void);

#endif
