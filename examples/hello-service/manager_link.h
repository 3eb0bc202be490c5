/* The way to the library: its endpoint "Manager". */

#ifndef HELLO_MANAGER_LINK_H
#define HELLO_MANAGER_LINK_H

#include <stdint.h>

/* One notification, over a fresh binding. Returns 0, or why it did not get through. For one thread
 * only: the stub has one binding handle. */
unsigned long CallManager(int32_t id, unsigned char* message, uint32_t size);

/* Whether that code says that the host does not listen yet. */
int IsNobodyThere(unsigned long code);

#endif
