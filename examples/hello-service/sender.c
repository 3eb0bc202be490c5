#include "sender.h"

#include <windows.h>

#include <stdlib.h>

#include "manager_link.h"

enum { TRIES = 50, BETWEEN_TRIES = 100, LAST_WAIT = 500 };

typedef struct Notification {
    struct Notification* next;
    unsigned char* message;
    uint32_t size;
    int32_t id;
} Notification;

static SRWLOCK lock = SRWLOCK_INIT; /* guards the variables below, except the thread */
static CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
static Notification* first;
static Notification** end = &first;
static int stopping;
static HANDLE thread;

/* Waits for the next notification. Returns null when the service stops and none is left. */
static Notification* NextToSend(void) {
    Notification* next;
    AcquireSRWLockExclusive(&lock);
    while (!first && !stopping) {
        SleepConditionVariableSRW(&changed, &lock, INFINITE, 0);
    }
    next = first;
    if (next) {
        first = next->next;
        end = first ? end : &first;
    }
    ReleaseSRWLockExclusive(&lock);
    return next;
}

static int IsStopping(void) {
    int answer;
    AcquireSRWLockShared(&lock);
    answer = stopping;
    ReleaseSRWLockShared(&lock);
    return answer;
}

/* Tries several times, because the host begins to listen a little after it has started. */
static void Send(const Notification* notification) {
    int tries = TRIES;
    while (
        IsNobodyThere(CallManager(notification->id, notification->message, notification->size)) &&
        --tries > 0 && !IsStopping()) {
        Sleep(BETWEEN_TRIES);
    }
}

static DWORD WINAPI SendAll(void* nothing) {
    Notification* notification;
    (void)nothing;
    while ((notification = NextToSend()) != NULL) {
        Send(notification);
        free(notification->message);
        free(notification);
    }
    return 0;
}

unsigned long StartSending(void) {
    thread = CreateThread(NULL, 0, SendAll, NULL, 0, NULL);
    return thread ? NO_ERROR : GetLastError();
}

int SendLater(int32_t id, unsigned char* message, uint32_t size) {
    Notification* const notification = malloc(sizeof *notification);
    if (!notification) {
        free(message);
        return 0;
    }
    notification->next = NULL;
    notification->message = message;
    notification->size = size;
    notification->id = id;
    AcquireSRWLockExclusive(&lock);
    *end = notification;
    end = &notification->next;
    ReleaseSRWLockExclusive(&lock);
    WakeConditionVariable(&changed);
    return 1;
}

void StopSending(void) {
    AcquireSRWLockExclusive(&lock);
    stopping = 1;
    ReleaseSRWLockExclusive(&lock);
    WakeConditionVariable(&changed);
    WaitForSingleObject(thread, LAST_WAIT);
}
