/* One thread sends all notifications: they arrive in the order in which they were queued, and no
 * request waits for them. */

#ifndef HELLO_SENDER_H
#define HELLO_SENDER_H

#include <stdint.h>

/* Returns 0 or an error of Windows. */
unsigned long StartSending(void);

/* Takes the message, which malloc has made. Returns 0 when there is no memory. */
int SendLater(int32_t id, unsigned char* message, uint32_t size);

/* What is queued still has half a second. */
void StopSending(void);

#endif
