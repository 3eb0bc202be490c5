/// @file
/// Run a distributed file system on this PC: the plain C interface of plenxsdk, for every host that
/// is not built by the compiler of plenxsdk.dll. Link plenxsdk_c.lib (Visual C++) or
/// libplenxsdk_c.dll.a (MinGW), or load plenxsdk_c.dll at run time. A whole host:
///
/// @code
///     #include <plenxsdk/plenx.h>
///     #include <stdio.h>
///
///     int main(void) {
///         plenx_queue* queue = NULL;
///         const plenx_event* event = NULL;
///         plenx_result result = plenx_open(PLENX_ABI);
///         if (result == 0) result = plenx_queue_open(1000, &queue);
///         if (result == 0)
///             result = plenx_init(PLENX_TEXT("C:\\Plenx\\App"), PLENX_TEXT("C:\\Plenx\\Data"),
///                                 PLENX_TEXT(""), 0);
///         if (result == 0)
///             result = plenx_start(PLENX_PC, PLENX_TEXT("home"), PLENX_TEXT("argument"));
///         while (result == 0) {
///             result = plenx_queue_next(queue, 60000, &event);
///             if (event == NULL) break;
///             printf("kind %u, service %u: %s\n", (unsigned)event->kind, (unsigned)event->service,
///                    event->text);
///             int started = event->kind == PLENX_EVENT_STATUS && event->type ==
///             PLENX_STATUS_START; plenx_event_free(event); if (started) break;
///         }
///         printf("%s\n", plenx_result_text(result));
///         plenx_queue_close(queue);
///         return result == 0 ? 0 : 1;
///     }
/// @endcode
///
/// **How it works.** Every operation that changes something checks its arguments, queues a job and
/// returns at once. One private worker runs the jobs one at a time, in the order of the calls. What
/// came of a job arrives later as a notification. 0 from an operation therefore means that the call
/// was taken, never that the work succeeded. A job that has failed is not tried again, and one that
/// is queued cannot be taken back. There is no upper limit to the time that a job takes, so a host
/// sets deadlines of its own.
///
/// **Notifications** come in one of two ways. A *queue* holds them until plenx_queue_next takes
/// them, on any thread of the host's own; take this way from a language whose functions must not be
/// called on foreign threads (Go, Node, Python). An *observer* is a set of functions that the
/// library calls on its own threads, for C and C++. A host may have several of both. Open them
/// before plenx_init, or early notifications are missed.
///
/// **Threads.** Every function may be called on any thread at any time. Notifications never
/// overlap: while one observer's function runs, every later notification waits, and so do the
/// services that wait for an answer. Queues never make the library wait.
///
/// **Inside a function of an observer** plenx_init, plenx_destroy, plenx_get_office_dir,
/// plenx_observe, plenx_unobserve, plenx_queue_open and plenx_queue_close give PLENX_E_DEADLOCK,
/// and plenx_queue_next never waits. Only the calling thread is known: a function that waits for
/// another thread which makes one of these calls still waits for ever. Every other call is allowed.
/// Do not wait there for the outcome of a job: it is a notification too and cannot come.
///
/// **Text** is UTF-8, given by pointer and length in bytes, and may hold a NUL. PLENX_SIZE_TO_NUL
/// as the length stands for all up to the first NUL; PLENX_TEXT("...") writes both arguments. A
/// null pointer with length 0 is the empty text; with any other length it is PLENX_E_ARGUMENT, and
/// so is a length above 2^31 - 1. The library copies every text before the call returns. Text that
/// comes out is copied into the caller's buffer and ended by a NUL. `length` does not count that
/// NUL, and `capacity` must exceed it. A buffer that is too short gives PLENX_E_BUFFER, is left as
/// it is, and `length` tells what is there; call again with a larger one. To ask for the length
/// alone, give a null buffer with capacity 0. What services send is their own and need not be valid
/// UTF-8.
///
/// **Memory.** Whoever allocates frees. The library gives out one kind of block, the plenx_event,
/// which plenx_event_free takes back.
///
/// **Results.** 0 is success, 26 is PLENX_INVALID_PARAMETER, and below 0 are the failures of this
/// layer. plenx_result_text has a sentence for each, and plenx_last_error says which argument or
/// what else it was. On failure a handle or an event that should have come out is null, and every
/// other value that should have come out is as it was. Nothing is ever thrown.
///
/// **Handles** (plenx_queue, plenx_subscription) are not addresses. A handle that was closed, was
/// never opened or is of the other kind gives PLENX_E_HANDLE, at any time and on any thread; no
/// handle is ever used again.
///
/// **Versions.** plenx_open compares this header with the DLL. Structs only grow, at their end; the
/// member `size` says how much of one is there.
///
/// **Life and end.** After the first plenx_init, plenx_observe or plenx_queue_open both DLLs stay
/// loaded until the process ends. When the process ends in an orderly way, the PC and phone
/// services are stopped and uninstalled and the working folder is removed, whatever threads were
/// at; see plenx_manager.h for the details. From then on (in a DLL's detach, say) no function takes
/// a lock, allocates or destroys anything: plenx_destroy, plenx_unobserve, plenx_queue_cancel and
/// plenx_queue_close give 0, plenx_event_free does nothing, plenx_abi and plenx_result_text answer
/// as always, plenx_queue_wait_handle gives null, and all others give PLENX_E_ENDING. Until then
/// functions of an observer are still called: call plenx_unobserve before main returns.
///
/// **Trust.** Any local process can cause every one of the notifications. Treat what they say as
/// hints: ask plenx_get_int64 whether a service runs.

#ifndef PLENXSDK_PLENX_H
#define PLENXSDK_PLENX_H

#include <stddef.h>
#include <stdint.h>

/// How functions are called, those of an observer too. 64-bit Windows knows one way only.
#if defined(_WIN32)
#define PLENX_CALL __cdecl
#else
#define PLENX_CALL
#endif

#if defined(_WIN32) && !defined(PLENXSDK_C_BUILD)
#define PLENX_API __declspec(dllimport)
#else
#define PLENX_API
#endif

/// The version of this header. It rises with every addition.
#define PLENX_ABI 1u

/// As a length: the text ends at its first NUL.
#define PLENX_SIZE_TO_NUL ((size_t)-1)
/// A literal, or any text that ends at its first NUL, as the two arguments pointer and length.
#define PLENX_TEXT(text) (text), PLENX_SIZE_TO_NUL

/// The service that an operation addresses. Any other number is accepted by every operation; it is
/// logged and otherwise ignored, but a stop of it may still bring the status of service 3.
#define PLENX_OFFICE 0u
/// The Windows service "PlenxPcSvc".
#define PLENX_PC 1u
/// The Windows service "PlenxPhoneSvc".
#define PLENX_PHONE 2u
/// Several at once: PC, then office; for settings PC, then phone. The local device online: office.
#define PLENX_COMBINED 3u

/// The key of an integer setting, 0 by default.
#define PLENX_KEY_INTEGER_0 0u
/// The key of the locale, a text, "en_US" by default.
#define PLENX_KEY_LOCALE 1u
/// The key of another integer setting, 0 by default.
#define PLENX_KEY_INTEGER_2 2u
/// Read only, with plenx_get_int64: 1 while the service is not running, else 0.
#define PLENX_KEY_NOT_RUNNING 5u

/// The status of a start: value tells whether it succeeded.
#define PLENX_STATUS_START 0
/// The status of a stop. Office: value tells whether it succeeded. PC and phone: value is always 0.
/// Service 3 with value 1: no mark of a start is left. It follows each stop unless a start of the
/// office service, or of service 3, still stands. It does not tell whether a PC or phone service
/// still runs.
#define PLENX_STATUS_STOP 1
/// Office: a remote device came online, with its outcome. PC and phone: a device could not be
/// brought online; value is 0.
#define PLENX_STATUS_ONLINE 2
/// Office: the local device went offline, with its outcome. PC and phone: a device could not be
/// taken offline; value is 0.
#define PLENX_STATUS_OFFLINE 3

/// What a call came to: 0, 26, or one of the PLENX_E below 0.
typedef int32_t plenx_result;

/// The call was taken; of an operation that queues a job, not that the work succeeded.
#define PLENX_OK 0
/// A text that must not be empty is empty. Nothing was queued.
#define PLENX_INVALID_PARAMETER 26
/// An argument cannot be used; plenx_last_error says which. Nothing was done.
#define PLENX_E_ARGUMENT (-1)
/// The caller's buffer is too short. Nothing is lost: call again with a larger one.
#define PLENX_E_BUFFER (-2)
/// There is not enough memory.
#define PLENX_E_MEMORY (-3)
/// The header of the host is newer than the DLL. Ship the DLL of the header's package.
#define PLENX_E_ABI (-4)
/// The handle was closed, was never opened, or is of the other kind.
#define PLENX_E_HANDLE (-5)
/// The queue was cancelled.
#define PLENX_E_CANCELLED (-6)
/// The call would wait for ever: it was made inside a function of an observer.
#define PLENX_E_DEADLOCK (-7)
/// The process is ending; nothing was done.
#define PLENX_E_ENDING (-8)
/// Something else went wrong; plenx_last_error has the words.
#define PLENX_E_FAILED (-9)

#ifdef __cplusplus
extern "C" {
#endif

/// The version of the DLL. It needs nothing and cannot fail.
/// @return PLENX_ABI as it stood in the DLL's own header.
PLENX_API uint32_t PLENX_CALL plenx_abi(void);

/// Compares the header that the host was built with and the DLL. It opens nothing, and no other
/// call needs it; a host calls it first, so that a DLL that is too old is told in words.
/// @param header_abi  PLENX_ABI.
/// @return 0, or PLENX_E_ABI when the header is newer than the DLL.
PLENX_API plenx_result PLENX_CALL plenx_open(uint32_t header_abi);

/// What the last failure of this layer on the calling thread was, in words: a sentence that begins
/// with the function's name. It stays until the next failure on this thread; a call that succeeds,
/// and this one itself, leave it as it is. Languages that move between threads lose it; use
/// plenx_result_text there.
/// @param text      The buffer; null only with capacity 0.
/// @param capacity  Its size in bytes.
/// @param length    The bytes of the sentence without the NUL. May be null.
/// @return 0, PLENX_E_BUFFER, or PLENX_E_ARGUMENT. Empty when nothing has failed on this thread.
PLENX_API plenx_result PLENX_CALL plenx_last_error(char* text, size_t capacity, size_t* length);

/// A sentence for a result. The text is constant and need not be freed; any thread may ask.
/// @param result  Any number.
/// @return Never null; a sentence of its own for numbers that are no result.
PLENX_API const char* PLENX_CALL plenx_result_text(plenx_result result);

/// Makes the library ready: makes the companion object on the caller's thread, then queues the
/// service side (driver files, working folder, services, driver, icon files, RPC endpoint). It does
/// not wait for any of that, and no notification tells that it is done. Operations may be called at
/// once; they wait behind it. Once the service side is there, a later call finds everything done.
/// The process must be allowed to control services (elevated). Do not call it from DllMain.
/// @param install      Install folder, without a trailing backslash or a NUL: it holds
///                     plenxservice.exe, dokan1.sys, dokan1.dll, dokanfuse1.dll and the icon
///                     folders under `res\plenx\icon`. It and its "upgrade" folder must be writable
///                     by administrators only, and its path should be ASCII and free of blanks.
/// @param install_len  Its bytes.
/// @param data         Data folder that exists, without a trailing backslash or a NUL, not empty.
///                     Its sub-folder "plenx", and "plenx0" to "plenx99" as needed, are DELETED
///                     with all that is in them.
/// @param data_len     Its bytes.
/// @param third        Goes to the companion library only.
/// @param third_len    Its bytes.
/// @param flag         Goes to the companion library only: 0 or not.
/// @return 0, PLENX_E_DEADLOCK inside an observer, PLENX_E_FAILED when the worker cannot be made.
PLENX_API plenx_result PLENX_CALL plenx_init(const char* install, size_t install_len,
                                             const char* data, size_t data_len, const char* third,
                                             size_t third_len, int32_t flag);

/// Asks the companion library to uninstall its packages, on the caller's thread, and queues the
/// initialisation once more. It releases nothing: the library keeps working, and a host need not
/// call it before it ends.
/// @return 0, or PLENX_E_DEADLOCK inside an observer.
PLENX_API plenx_result PLENX_CALL plenx_destroy(void);

/// Reads an integer setting on the caller's thread. Only PLENX_KEY_NOT_RUNNING has an answer of its
/// own: 1 while the service is not running, else 0; service 3 asks about the driver. A service that
/// is starting or stopping counts as running; one that cannot be asked does not. It waits while the
/// first plenx_init is at work, but not for its beginning: right after plenx_init, and before it,
/// the answer is 0.
/// @param service  PLENX_PC, PLENX_PHONE or PLENX_COMBINED.
/// @param key      PLENX_KEY_NOT_RUNNING; 0 comes out for every other one.
/// @param value    The setting.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_get_int64(uint32_t service, uint32_t key, int64_t* value);

/// String settings cannot be read back: what comes out is always empty. It waits while the first
/// plenx_init is at work.
/// @param service   PLENX_PC, PLENX_PHONE or PLENX_COMBINED.
/// @param key       Makes no difference.
/// @param text      The buffer; null only with capacity 0.
/// @param capacity  Its size in bytes; 1 is enough.
/// @param length    The bytes of the text without the NUL. May be null.
/// @return 0, or PLENX_E_BUFFER.
PLENX_API plenx_result PLENX_CALL plenx_get_string(uint32_t service, uint32_t key, char* text,
                                                   size_t capacity, size_t* length);

/// Queues a change of an integer setting. The service hears of it at its next start, one that is
/// called after this included. Before plenx_init it is lost silently. The value stays until the
/// process ends.
/// @param service  PLENX_PC or PLENX_PHONE, or both (PLENX_COMBINED).
/// @param key      Keys that the service does not have are ignored.
/// @param value    Handed to the service as it is.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_set_int64(uint32_t service, uint32_t key, int64_t value);

/// Queues a change of a string setting, in the same way as plenx_set_int64.
/// @param service    PLENX_PC or PLENX_PHONE, or both (PLENX_COMBINED).
/// @param key        Keys that the service does not have are ignored.
/// @param value      Handed to the service as it is.
/// @param value_len  Its bytes.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_set_string(uint32_t service, uint32_t key,
                                                   const char* value, size_t value_len);

/// Queues the start of a service and the creation of a group in it. The outcome comes as
/// PLENX_STATUS_START; for PLENX_COMBINED there are two, of the PC and of the office service. A
/// service that runs already gets its settings and the group. The job waits until the service
/// reports running, and then until it answers.
///
/// Before plenx_init every operation that queues is checked, logged, dropped, and answered with 0.
/// @param service       PLENX_OFFICE to PLENX_COMBINED.
/// @param group         The group's name, not empty.
/// @param group_len     Its bytes.
/// @param argument      Not empty; handed to the service as it is. The office service does not get
///                      it.
/// @param argument_len  Its bytes.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_start(uint32_t service, const char* group, size_t group_len,
                                              const char* argument, size_t argument_len);

/// Queues the deletion of the group and the stop of its service, whatever other groups the service
/// has. The outcome comes as PLENX_STATUS_STOP. A service that makes no progress for 2 s is ended.
/// @param service    PLENX_OFFICE to PLENX_COMBINED.
/// @param group      The group's name, not empty.
/// @param group_len  Its bytes.
/// @return 0, or PLENX_INVALID_PARAMETER when the group is empty.
PLENX_API plenx_result PLENX_CALL plenx_stop(uint32_t service, const char* group, size_t group_len);

/// Queues the news that the local device is online. With PLENX_COMBINED only the office service
/// hears of it and the rest fails: call it for PLENX_PC as well. A failure at the PC or phone
/// service comes as PLENX_STATUS_ONLINE; success brings no notification, and the office service
/// none at all.
/// @param service     PLENX_OFFICE to PLENX_COMBINED.
/// @param group       The group's name, not empty.
/// @param group_len   Its bytes.
/// @param device      The device's id, not empty.
/// @param device_len  Its bytes.
/// @param data        Any bytes; null only with size 0. The office service gets at most 16 of them.
/// @param size        At most 2^31 - 1.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_local_device_online(uint32_t service, const char* group,
                                                            size_t group_len, const char* device,
                                                            size_t device_len, const void* data,
                                                            uint64_t size);

/// Queues the news that a remote device is online. The office service's outcome comes as
/// PLENX_STATUS_ONLINE, of the PC and phone services only a failure.
/// @param service     PLENX_OFFICE to PLENX_COMBINED.
/// @param group       The group's name, not empty.
/// @param group_len   Its bytes.
/// @param device      The device's id, not empty.
/// @param device_len  Its bytes.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_remote_device_online(uint32_t service, const char* group,
                                                             size_t group_len, const char* device,
                                                             size_t device_len);

/// Queues the news that the local device goes offline, and why. The office service's outcome comes
/// as PLENX_STATUS_OFFLINE, of the PC and phone services only a failure.
/// @param service     PLENX_OFFICE to PLENX_COMBINED.
/// @param group       The group's name, not empty.
/// @param group_len   Its bytes.
/// @param device      The device's id, not empty.
/// @param device_len  Its bytes.
/// @param trigger     The reason, 0 for none in particular; the PC or phone service gets it as it
/// is.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_local_device_offline(uint32_t service, const char* group,
                                                             size_t group_len, const char* device,
                                                             size_t device_len, int32_t trigger);

/// Queues the news that a remote device goes offline, and why. A failure at the PC or phone service
/// comes as PLENX_STATUS_OFFLINE; of the office service nothing comes.
/// @param service     PLENX_OFFICE to PLENX_COMBINED.
/// @param group       The group's name, not empty.
/// @param group_len   Its bytes.
/// @param device      The device's id, not empty.
/// @param device_len  Its bytes.
/// @param trigger     The reason, 0 for none in particular; the PC or phone service gets it as it
/// is.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_remote_device_offline(uint32_t service, const char* group,
                                                              size_t group_len, const char* device,
                                                              size_t device_len, int32_t trigger);

/// Queues the device's new name for the PC service. No notification tells the outcome.
/// @param name      Not empty.
/// @param name_len  Its bytes.
/// @return 0, or PLENX_INVALID_PARAMETER when the name is empty.
PLENX_API plenx_result PLENX_CALL plenx_device_name_changed(const char* name, size_t name_len);

/// Queues a message from a remote device for the PC service. No notification tells the outcome.
/// @param type         Handed on as it is.
/// @param msg_len      Handed on as it is, never compared with message_len.
/// @param message      Any bytes; may be empty.
/// @param message_len  Their number.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_recv_remote_message(int32_t type, uint32_t msg_len,
                                                            const char* message,
                                                            size_t message_len);

/// Asks the companion library, on the caller's thread, for the folder of a device of a group. It
/// waits while the office service is being started, stopped or told of a device.
/// @param group         The group's name.
/// @param group_len     Its bytes.
/// @param device        The device's id.
/// @param device_len    Its bytes.
/// @param relative      A relative name.
/// @param relative_len  Its bytes.
/// @param text          Gets the folder, a backslash, and the relative name, whatever the code. It
/// may
///                      be the buffer that holds `relative`. Null only with capacity 0.
/// @param capacity      The size of the buffer in bytes.
/// @param length        The bytes of the text without the NUL. May be null.
/// @param code          The companion library's own code, no plenx_result; 0 before plenx_init.
/// @return 0, PLENX_E_BUFFER (length and code are set; the next call asks again), or
/// PLENX_E_DEADLOCK
///         inside an observer.
PLENX_API plenx_result PLENX_CALL plenx_get_office_dir(const char* group, size_t group_len,
                                                       const char* device, size_t device_len,
                                                       const char* relative, size_t relative_len,
                                                       char* text, size_t capacity, size_t* length,
                                                       int32_t* code);

/// A service sends a message to this device: type and msg_len are the sender's own numbers, text
/// holds the bytes. Never use msg_len as the length of the text.
#define PLENX_EVENT_MESSAGE 9u
/// A group of a service is connected: service, text is the group's name.
#define PLENX_EVENT_CONNECT 10u
/// A group of a service has lost its connection: service, text is the group's name.
#define PLENX_EVENT_DISCONNECT 11u
/// A group of a service is connected again: service, text is the group's name.
#define PLENX_EVENT_RECONNECT 12u
/// A service has asked for the status of a link: service, type is the link, text is the group's
/// name, value is the answer as it stood after this queue (see plenx_queue_set_link_status).
#define PLENX_EVENT_LINK_QUERY 13u
/// Something started, stopped, came online or went offline, the outcome of a job or by itself:
/// service, type is a PLENX_STATUS or a kind of the service's own, value is 0 or 1, text is the
/// group's name.
#define PLENX_EVENT_STATUS 14u
/// A service reports an error of its own: value is its code.
#define PLENX_EVENT_ERROR 15u
/// A service tells the name under which its disk is mounted: text. Any bytes.
#define PLENX_EVENT_DISK_NAME 16u

/// A queue of notifications.
typedef struct plenx_queue plenx_queue;

/// One notification. What a kind does not have is 0, or the empty text.
typedef struct plenx_event {
    uint32_t size;       ///< Of this struct in the DLL; members behind it are not there.
    uint32_t kind;       ///< A PLENX_EVENT; later DLLs may have further kinds.
    uint32_t service;    ///< By the number that the service put into the group's name; not checked.
    int32_t type;        ///< See the kinds.
    uint32_t msg_len;    ///< See PLENX_EVENT_MESSAGE.
    int32_t value;       ///< See the kinds.
    uint64_t lost;       ///< Notifications that were dropped directly before this one.
    const char* text;    ///< Never null, and a NUL follows it; it lives as long as the event.
    size_t text_length;  ///< Its bytes, without that NUL.
} plenx_event;

/// Opens a queue. From now on it takes every notification, until it is cancelled or closed. It
/// holds at most `capacity` events, and at most 64 MiB of their text, one larger event excepted.
/// When it is full, the oldest event is dropped and counted in `lost` of the one that follows it;
/// so is a notification for which there is no memory.
///
/// The first call of this or of plenx_observe waits for a notification that is being delivered.
/// @param capacity  In events, not 0. No memory is taken in advance.
/// @param queue     The handle; close it with plenx_queue_close.
/// @return 0, PLENX_E_DEADLOCK inside an observer, or PLENX_E_MEMORY.
PLENX_API plenx_result PLENX_CALL plenx_queue_open(uint32_t capacity, plenx_queue** queue);

/// Takes the oldest event, or waits for one. Any number of threads may wait; each event goes to one
/// of them.
/// @param queue         The queue.
/// @param milliseconds  How long to wait: 0 not at all, UINT32_MAX for ever. Inside an observer it
///                      does not wait.
/// @param event         The event, the caller's own until plenx_event_free, even when the queue is
///                      closed before. Null when there is none.
/// @return 0 also when nothing came in time, with a null event. PLENX_E_CANCELLED when the queue
/// was
///         cancelled, whatever it holds. PLENX_E_HANDLE when it was closed, while waiting too.
PLENX_API plenx_result PLENX_CALL plenx_queue_next(plenx_queue* queue, uint32_t milliseconds,
                                                   const plenx_event** event);

/// Gives an event back.
/// @param event  From plenx_queue_next, once; null is allowed.
PLENX_API void PLENX_CALL plenx_event_free(const plenx_event* event);

/// A Windows event (a HANDLE) to wait for beside others: it is set while the queue holds something,
/// and for ever once it is cancelled. Call plenx_queue_next with 0 milliseconds until the event is
/// null, then wait again. Never reset or close it.
/// @param queue  The queue, which owns the handle and closes it when it is closed.
/// @return Always the same handle; null on failure, and where the system is not Windows.
PLENX_API void* PLENX_CALL plenx_queue_wait_handle(plenx_queue* queue);

/// Sets the answer that this queue gives when a service asks for the status of a link. Without one
/// it leaves the answer alone: 0, or what was written before by a queue or observer that was opened
/// earlier. The one that was opened last wins. An answer stays until it is set again or the queue
/// is closed.
/// @param queue      The queue.
/// @param service    The service that asks.
/// @param group      The group's name.
/// @param group_len  Its bytes.
/// @param link       Which link; the service's own number.
/// @param status     The answer.
/// @return 0, or PLENX_E_MEMORY.
PLENX_API plenx_result PLENX_CALL plenx_queue_set_link_status(plenx_queue* queue, uint32_t service,
                                                              const char* group, size_t group_len,
                                                              uint32_t link, int32_t status);

/// Ends all waiting: from now on plenx_queue_next gives PLENX_E_CANCELLED at once, on every thread
/// and for good. Events that the queue holds are dropped. It does not wait, and may be called
/// inside an observer. The handle still wants plenx_queue_close.
/// @param queue  The queue.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_queue_cancel(plenx_queue* queue);

/// Closes the queue and drops what it holds. Threads that wait in plenx_queue_next return with
/// PLENX_E_HANDLE. It waits for nobody.
/// @param queue  The queue.
/// @return 0, or PLENX_E_DEADLOCK inside an observer.
PLENX_API plenx_result PLENX_CALL plenx_queue_close(plenx_queue* queue);

/// The functions of an observer. Null for those that are not wanted.
///
/// Each gets `user` first, and returns 0 when it has handled the notification; of several observers
/// the first other number is logged as an error code and has no further effect. Texts are valid
/// during the call only, and a NUL follows them. Copy what is needed and return soon. Never throw.
typedef struct plenx_observer {
    uint32_t size;  ///< sizeof(plenx_observer).
    void* user;     ///< Anything; handed to every function.
    /// See PLENX_EVENT_MESSAGE.
    int32_t(PLENX_CALL* send_local_message)(void* user, int32_t type, uint32_t msg_len,
                                            const char* message, size_t message_len);
    /// See PLENX_EVENT_CONNECT.
    int32_t(PLENX_CALL* notify_connect)(void* user, uint32_t service, const char* group,
                                        size_t group_len);
    /// See PLENX_EVENT_DISCONNECT.
    int32_t(PLENX_CALL* notify_disconnect)(void* user, uint32_t service, const char* group,
                                           size_t group_len);
    /// See PLENX_EVENT_RECONNECT.
    int32_t(PLENX_CALL* notify_reconnect)(void* user, uint32_t service, const char* group,
                                          size_t group_len);
    /// A service asks for the status of a link and waits for the answer. `status` holds 0, or what
    /// an observer or queue that was opened earlier has written; what the last one leaves in it
    /// goes back to the service, whatever this returns.
    int32_t(PLENX_CALL* query_link_status)(void* user, uint32_t service, const char* group,
                                           size_t group_len, uint32_t link, int32_t* status);
    /// See PLENX_EVENT_STATUS; kind is its type.
    int32_t(PLENX_CALL* notify_status)(void* user, uint32_t service, const char* group,
                                       size_t group_len, uint32_t kind, int32_t value);
    /// See PLENX_EVENT_ERROR.
    int32_t(PLENX_CALL* notify_error)(void* user, int32_t code);
    /// See PLENX_EVENT_DISK_NAME.
    int32_t(PLENX_CALL* notify_disk_name)(void* user, const char* name, size_t name_len);
} plenx_observer;

/// An observer that was registered.
typedef struct plenx_subscription plenx_subscription;

/// Registers an observer; its functions are called from now on, one at a time, on threads of the
/// library. Queues and observers are asked in the order in which they were opened.
///
/// The first call of this or of plenx_queue_open waits for a notification that is being delivered.
/// @param observer      Is copied; `user` and the functions must stay until plenx_unobserve has
///                      returned. Its size must be one that this DLL knows, or else what lies
///                      behind must be 0.
/// @param subscription  The handle; close it with plenx_unobserve.
/// @return 0, PLENX_E_DEADLOCK inside an observer, PLENX_E_ABI when a function is set that the DLL
///         does not know, or PLENX_E_MEMORY.
PLENX_API plenx_result PLENX_CALL plenx_observe(const plenx_observer* observer,
                                                plenx_subscription** subscription);

/// Ends it. If one of the observer's functions is running, this waits until it has returned:
/// afterwards none is running and none will be called.
/// @param subscription  From plenx_observe.
/// @return 0, or PLENX_E_DEADLOCK inside an observer.
PLENX_API plenx_result PLENX_CALL plenx_unobserve(plenx_subscription* subscription);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // PLENXSDK_PLENX_H
