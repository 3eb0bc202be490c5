/* One thread sends all notifications, so they arrive in the order in which they were queued, and no
 * request waits for them. */

#ifndef HELLO_SENDER_H
#define HELLO_SENDER_H

#include <stdint.h>

/* Returns 0 or an error of Windows. */
unsigned long StartSending(void);

/* Queues the message and takes ownership of it; it must come from malloc. Returns 0 when there is
 * no memory. */
int SendLater(int32_t id, unsigned char* message, uint32_t size);

/* Gives the queued notifications half a second, then stops. */
void StopSending(void);

#endif
