/* Judges the requests that come in, and builds the two messages that this service sends. The page
 * about the wire protocol describes all messages. */

#ifndef HELLO_MESSAGE_H
#define HELLO_MESSAGE_H

#include <stdint.h>

enum { CREATE_GROUP = 0, CONNECT_NOTIFY = 10 };

/* Codes of this service's own. */
enum { TAKEN = 0, BROKEN_MESSAGE = 1001, UNKNOWN_REQUEST = 1002, NO_MEMORY = 1003 };

enum { REPLY_SIZE = 24 };

/* Returns TAKEN, UNKNOWN_REQUEST or BROKEN_MESSAGE. Never looks outside the message. */
int32_t Judge(int32_t id, const unsigned char* message, uint32_t size);

/* Returns argument 0 of a message that was judged good and begins with a text. */
void FirstText(const unsigned char* message, const char** text, uint32_t* length);

/* Writes a reply of one int32. */
void WriteReply(unsigned char reply[REPLY_SIZE], int32_t result);

/* Makes a message whose only argument is a text; the caller frees it. Returns null when there is no
 * memory. */
unsigned char* NewTextMessage(const char* text, uint32_t length, uint32_t* size);

#endif
