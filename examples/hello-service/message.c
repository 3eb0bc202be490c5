#include "message.h"

#include <stdlib.h>
#include <string.h>

enum { HEADER_SIZE = 8, DESCRIPTOR_SIZE = 12 };
enum { TYPE_INT32 = 2, TYPE_STRING = 4 };

/* Nothing in a message is aligned. */
static void PutWord(unsigned char* message, uint32_t offset, uint32_t value) {
    memcpy(message + offset, &value, sizeof value);
}

static uint32_t WordAt(const unsigned char* message, uint32_t offset) {
    uint32_t value;
    memcpy(&value, message + offset, sizeof value);
    return value;
}

/* Header and table of a message of one argument; its data goes behind them. */
static unsigned char* BeginMessage(unsigned char* message, uint32_t type, uint32_t dataSize) {
    PutWord(message, 0, HEADER_SIZE + DESCRIPTOR_SIZE + dataSize);
    PutWord(message, 4, 1);
    PutWord(message, 8, type);
    PutWord(message, 12, HEADER_SIZE + DESCRIPTOR_SIZE);
    PutWord(message, 16, dataSize);
    return message + HEADER_SIZE + DESCRIPTOR_SIZE;
}

void WriteReply(unsigned char reply[REPLY_SIZE], int32_t result) {
    memcpy(BeginMessage(reply, TYPE_INT32, sizeof result), &result, sizeof result);
}

unsigned char* NewTextMessage(const char* text, uint32_t length, uint32_t* size) {
    unsigned char* message;
    unsigned char* data;
    *size = HEADER_SIZE + DESCRIPTOR_SIZE + length + 1;
    message = malloc(*size);
    if (message) {
        data = BeginMessage(message, TYPE_STRING, length + 1);
        memcpy(data, text, length);
        data[length] = 0;
    }
    return message;
}

int FindFirstText(const unsigned char* message, uint32_t size, const char** text,
                  uint32_t* length) {
    uint32_t count;
    uint32_t offset;
    uint32_t dataSize;
    if (size <= HEADER_SIZE || WordAt(message, 0) != size) {
        return 0;
    }
    count = WordAt(message, 4);
    if (count == 0 || count > (size - HEADER_SIZE - 1) / DESCRIPTOR_SIZE ||
        WordAt(message, 8) != TYPE_STRING) {
        return 0;
    }
    offset = WordAt(message, 12);
    dataSize = WordAt(message, 16);
    if (offset != HEADER_SIZE + DESCRIPTOR_SIZE * count || dataSize == 0 ||
        dataSize > size - offset || message[offset + dataSize - 1] != 0) {
        return 0;
    }
    *text = (const char*)message + offset;
    *length = dataSize - 1;
    return 1;
}
