#include "message.h"

#include <stdlib.h>
#include <string.h>

enum { HEADER_SIZE = 8, DESCRIPTOR_SIZE = 12 };
enum { TYPE_INT32 = 2, TYPE_INT64 = 3, TYPE_STRING = 4, TYPE_INT8_ARRAY = 5 };

/* The arguments of each request: i is an int32, 2 an int32 that is always 2, l an int64, s a
 * string, and a an array whose size is the int32 before it. */
static const struct {
    int32_t id;
    const char* arguments;
} kRequests[] = {
    {CREATE_GROUP, "s2s"},
    {1, "s"},
    {2, "ssiia"},
    {3, "ssii"},
    {4, "s"},
    {5, "iis"},
    {7, "is"},
    {8, "il"},
    {19, "l"},
};

typedef struct Argument {
    uint32_t type;
    uint32_t offset;
    uint32_t size;
} Argument;

/* memcpy, because nothing in a message is aligned. */
static void PutWord(unsigned char* message, uint32_t offset, uint32_t value) {
    memcpy(message + offset, &value, sizeof value);
}

static uint32_t WordAt(const unsigned char* message, uint32_t offset) {
    uint32_t value;
    memcpy(&value, message + offset, sizeof value);
    return value;
}

static Argument ArgumentAt(const unsigned char* message, uint32_t index) {
    const uint32_t descriptor = HEADER_SIZE + DESCRIPTOR_SIZE * index;
    Argument argument;
    argument.type = WordAt(message, descriptor);
    argument.offset = WordAt(message, descriptor + 4);
    argument.size = WordAt(message, descriptor + 8);
    return argument;
}

/* The argument must lie within the message. */
static int IsOfKind(char kind, const unsigned char* message, Argument argument) {
    const int isInt32 = argument.type == TYPE_INT32 && argument.size == sizeof(int32_t);
    switch (kind) {
    case 'i':
        return isInt32;
    case '2':
        return isInt32 && WordAt(message, argument.offset) == 2;
    case 'l':
        return argument.type == TYPE_INT64 && argument.size == sizeof(int64_t);
    case 's':
        return argument.type == TYPE_STRING && argument.size > 0 &&
               message[argument.offset + argument.size - 1] == 0;
    case 'a': /* the data of the int32 ends where this one's begins */
        return argument.type == TYPE_INT8_ARRAY &&
               argument.size == WordAt(message, argument.offset - sizeof(int32_t));
    default:
        return 0;
    }
}

static int IsWellFormed(const char* kinds, const unsigned char* message, uint32_t size) {
    const uint32_t count = (uint32_t)strlen(kinds);
    uint32_t end = HEADER_SIZE + DESCRIPTOR_SIZE * count;
    uint32_t i;
    if (size <= end || WordAt(message, 0) != size || WordAt(message, 4) != count) {
        return 0;
    }
    for (i = 0; i < count; ++i) {
        const Argument argument = ArgumentAt(message, i);
        if (argument.offset != end || argument.size > size - end ||
            !IsOfKind(kinds[i], message, argument)) {
            return 0;
        }
        end += argument.size;
    }
    return end == size;
}

int32_t Judge(int32_t id, const unsigned char* message, uint32_t size) {
    size_t i;
    for (i = 0; i < sizeof kRequests / sizeof *kRequests; ++i) {
        if (kRequests[i].id == id) {
            return IsWellFormed(kRequests[i].arguments, message, size) ? TAKEN : BROKEN_MESSAGE;
        }
    }
    return UNKNOWN_REQUEST;
}

void FirstText(const unsigned char* message, const char** text, uint32_t* length) {
    const Argument argument = ArgumentAt(message, 0);
    *text = (const char*)message + argument.offset;
    *length = argument.size - 1;
}

/* Writes the header and the table of a message with one argument. Returns the place of its data. */
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
