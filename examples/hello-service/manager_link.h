/* Calls the library through its endpoint "Manager". */

#ifndef HELLO_MANAGER_LINK_H
#define HELLO_MANAGER_LINK_H

#include <stdint.h>

/* Sends one notification over a fresh binding. Returns 0, or the reason why it did not get through.
 * Only one thread may call this, because the stub has only one binding handle. */
unsigned long CallManager(int32_t id, unsigned char* message, uint32_t size);

/* Returns whether that code says that the host is not listening yet. */
int IsNobodyThere(unsigned long code);

#endif
