/* The two messages that this service has to look into or to build; see the page on the wire
 * protocol for the others. */

#ifndef HELLO_MESSAGE_H
#define HELLO_MESSAGE_H

#include <stdint.h>

enum { CREATE_GROUP = 0, CONNECT_NOTIFY = 10 };

enum { REPLY_SIZE = 24 };

/* Writes a reply of one int32. */
void WriteReply(unsigned char reply[REPLY_SIZE], int32_t result);

/* A message whose only argument is a text; the caller frees it. Null: no memory. */
unsigned char* NewTextMessage(const char* text, uint32_t length, uint32_t* size);

/* Finds the text that is argument 0. Returns 0 when the message has none. */
int FindFirstText(const unsigned char* message, uint32_t size, const char** text, uint32_t* length);

#endif
