/* A host as Visual C++ would build it: its ABI, C99, nothing of MinGW. It starts a service, hears
 * of it, stops it, and hears of that. With OBSERVES it hears through functions, otherwise through a
 * queue. It ends with 40, or with the number of the step that went wrong.
 *
 *     INSTALL, DATA    the folders for plenx_init */

#include <plenxsdk/plenx.h>

__declspec(dllimport) void __cdecl exit(int code);
__declspec(dllimport) int __cdecl strcmp(const char* left, const char* right);
__declspec(dllimport) unsigned long __stdcall GetEnvironmentVariableA(const char* name, char* value,
                                                                      unsigned long size);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void* handle,
                                                                  unsigned long milliseconds);

static void Require(int holds, int step) {
    if (!holds) {
        exit(step);
    }
}

#ifdef OBSERVES

static volatile long started = -1;
static volatile long stopped = -1;
static volatile long deadlock = 0;

static int32_t PLENX_CALL Status(void* user, uint32_t service, const char* group, size_t group_len,
                                 uint32_t kind, int32_t value) {
    Require(user == (void*)&started, 20);
    if (service == PLENX_PC && group_len == 4 && strcmp(group, "home") == 0) {
        if (kind == PLENX_STATUS_START) {
            deadlock = plenx_destroy();
            started = value;
        } else if (kind == PLENX_STATUS_STOP) {
            stopped = value;
        }
    }
    return 0;
}

static void Hear(plenx_queue* queue, int32_t kind, int32_t value, int step) {
    volatile long* const heard = kind == PLENX_STATUS_START ? &started : &stopped;
    int round;
    const plenx_event* event = NULL;
    for (round = 0; round != 300 && *heard < 0; ++round) {
        Require(plenx_queue_next(queue, 100, &event) == 0, step); /* passes the time */
        plenx_event_free(event);
    }
    Require(*heard == value, step);
}

#else

static void Hear(plenx_queue* queue, int32_t kind, int32_t value, int step) {
    void* const handle = plenx_queue_wait_handle(queue);
    const plenx_event* event = NULL;
    Require(handle != NULL, step);
    for (;;) {
        Require(WaitForSingleObject(handle, 30000) == 0, step);
        Require(plenx_queue_next(queue, 0, &event) == 0 && event != NULL, step);
        if (event->kind == PLENX_EVENT_STATUS && event->service == PLENX_PC &&
            event->type == kind) {
            Require(strcmp(event->text, "home") == 0 && event->value == value, step);
            plenx_event_free(event);
            return;
        }
        plenx_event_free(event);
    }
}

#endif

void Main(void) {
    plenx_queue* queue = NULL;
    int64_t gone = -1;
    char text[128];
    char install[128] = "";
    char data[128] = "";
#ifdef OBSERVES
    plenx_subscription* subscription = NULL;
    plenx_observer observer = {
        sizeof(plenx_observer), (void*)&started, NULL, NULL, NULL, NULL, NULL, Status, NULL, NULL};
    Require(plenx_observe(&observer, &subscription) == 0, 1);
#endif
    Require(plenx_open(PLENX_ABI) == 0, 2);
    Require(plenx_queue_open(1000, &queue) == 0, 3);
    /* Nothing has started the C run time here, so getenv would find nothing. */
    GetEnvironmentVariableA("INSTALL", install, sizeof(install));
    GetEnvironmentVariableA("DATA", data, sizeof(data));
    Require(plenx_init(PLENX_TEXT(install), PLENX_TEXT(data), PLENX_TEXT(""), 0) == 0, 4);
    Require(plenx_start(PLENX_PC, NULL, 4, PLENX_TEXT("argument")) == PLENX_E_ARGUMENT, 5);
    Require(plenx_last_error(text, sizeof(text), NULL) == 0, 6);
    Require(strcmp(text, "plenx_start: group is null, but its length is not 0") == 0, 7);
    Require(plenx_start(PLENX_PC, PLENX_TEXT("home"), PLENX_TEXT("argument")) == 0, 8);
    Hear(queue, PLENX_STATUS_START, 1, 9);
    Require(plenx_get_int64(PLENX_PC, PLENX_KEY_NOT_RUNNING, &gone) == 0 && gone == 0, 10);
    Require(plenx_stop(PLENX_PC, PLENX_TEXT("home")) == 0, 11);
    Hear(queue, PLENX_STATUS_STOP, 0, 12);
    Require(plenx_get_int64(PLENX_PC, PLENX_KEY_NOT_RUNNING, &gone) == 0 && gone == 1, 13);
#ifdef OBSERVES
    Require(deadlock == PLENX_E_DEADLOCK, 14);
    Require(plenx_unobserve(subscription) == 0, 15);
#endif
    Require(plenx_queue_close(queue) == 0, 16);
    exit(40);
}
