/* The endpoint that this service serves: the library's requests come in here. */

#ifndef HELLO_SERVICE_LINK_H
#define HELLO_SERVICE_LINK_H

#include <wchar.h>

/* Serves the endpoint; requests come in on threads of the RPC runtime from now on.
 * Returns 0 or an RPC status. */
long Serve(const wchar_t* endpoint);

/* Lets no further request in. */
void StopServing(void);

#endif
