/// @file
/// The plain C interface of plenxsdk, which runs a distributed file system on this PC. It serves
/// every host that is not built by the compiler of plenxsdk.dll. Link plenxsdk_c.lib (Visual C++)
/// or libplenxsdk_c.dll.a (MinGW), or load plenxsdk_c.dll at run time. This is a whole host:
///
/// @code
///     #include <plenxsdk/plenx.h>
///     #include <stdio.h>
///
///     int main(void) {
///         int started = 0;
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
///             int outcome =
///                 event->kind == PLENX_EVENT_STATUS && event->type == PLENX_STATUS_START;
///             started = outcome && event->value == 1;
///             plenx_event_free(event);
///             if (outcome) break;
///         }
///         if (result != 0) printf("%s\n", plenx_result_text(result));
///         printf("%s\n", started ? "The service runs." : "The service does not run.");
///         plenx_queue_close(queue);
///         return started ? 0 : 1;
///     }
/// @endcode
///
/// **How it works.** Every operation that changes something checks its arguments, queues a job and
/// returns at once. One private worker runs the jobs one at a time, in the order of the calls. The
/// outcome of a job arrives later as a notification. So 0 from an operation means that the library
/// took the call; it never means that the work succeeded. The library never repeats a job that has
/// failed, and a host cannot withdraw a job that it has queued. A job has no time limit, so a host
/// must set deadlines of its own. Two of these operations can wait, because they also call the
/// companion library: plenx_init and plenx_destroy.
///
/// **Notifications** reach the host in one of two ways. A *queue* holds them until plenx_queue_next
/// takes them, on any thread of the host. Choose a queue in a language whose functions must not be
/// called on foreign threads, such as Go, Node or Python. An *observer* is a set of functions that
/// the library calls on its own threads; it suits C and C++. A host may have several of each. Open
/// them before plenx_init, or the host misses early notifications.
///
/// **Threads.** A host may call every function on any thread at any time. Notifications never
/// overlap: while a function of an observer runs, every later notification waits, and so do the
/// services that wait for an answer. A queue never makes the library wait.
///
/// **Inside a function of an observer**, plenx_init, plenx_destroy, plenx_get_office_dir,
/// plenx_observe, plenx_unobserve, plenx_queue_open and plenx_queue_close return PLENX_E_DEADLOCK,
/// and plenx_queue_next never waits. Every other call is allowed. The library recognises only the
/// thread on which it calls the observer: if the function waits there for another thread that makes
/// one of these calls, it waits for ever. Do not wait there for the outcome of a job either: the
/// outcome is a notification too, and cannot come.
///
/// **Text** is UTF-8. A host passes it as a pointer and a length in bytes, and it may hold a NUL.
/// With PLENX_SIZE_TO_NUL as the length, the text ends at its first NUL; PLENX_TEXT("...") writes
/// both arguments. A null pointer with length 0 is the empty text. A null pointer with any other
/// length gives PLENX_E_ARGUMENT, and so does a length above 2^31 - 1. The library copies every
/// text before the call returns.
///
/// A function that gives a text copies it into the caller's buffer and adds a NUL. `length` does
/// not count that NUL, so `capacity` must be greater than `length`. If the buffer is too short, the
/// call returns PLENX_E_BUFFER, leaves the buffer as it is, and sets `length`; call again with a
/// larger buffer. To ask for the length alone, give a null buffer with capacity 0. The text that a
/// service sends need not be valid UTF-8.
///
/// **Memory.** Whoever allocates a block frees it. The library hands out one kind of block, the
/// plenx_event, and plenx_event_free takes it back.
///
/// **Results.** 0 is success, 26 is PLENX_INVALID_PARAMETER, and the numbers below 0 are the
/// failures of this layer. plenx_result_text has a sentence for each. plenx_last_error says more,
/// for example which argument was wrong. When a call fails, it sets the handle or event that it
/// would have given to null, and leaves every other output as it was. There are two exceptions:
/// PLENX_E_BUFFER sets `length` and `code`, and PLENX_E_ENDING leaves all outputs as they were. The
/// library never throws.
///
/// **Handles** (plenx_queue, plenx_subscription) are not addresses. A handle that was closed, was
/// never opened or is of the other kind gives PLENX_E_HANDLE on every thread, until the process
/// ends. Inside an observer, plenx_queue_close and plenx_unobserve return PLENX_E_DEADLOCK before
/// they look at the handle. The library never uses the value of a handle again.
///
/// **Versions.** plenx_open compares this header with the DLL. Structs only grow, at their end; the
/// member `size` says how much of a struct is there.
///
/// **Life and end.** After the first plenx_init, plenx_observe or plenx_queue_open, both DLLs stay
/// loaded until the process ends. When the process ends in an orderly way, the library stops and
/// uninstalls the PC and phone services and removes the working folder, whatever the host's threads
/// were doing; plenx_manager.h has the details.
///
/// Once the system has ended the other threads (for example while a DLL is being detached), no
/// function takes a lock, allocates or destroys anything. plenx_destroy, plenx_unobserve,
/// plenx_queue_cancel and plenx_queue_close then return 0, plenx_event_free does nothing, plenx_abi
/// and plenx_result_text answer as always, plenx_queue_wait_handle returns null, and all other
/// functions return PLENX_E_ENDING. Until then the library still calls observers, so call
/// plenx_unobserve before main returns.
///
/// **Trust.** Any local process can cause every one of these notifications. Treat what they say as
/// hints: ask plenx_get_int64 whether a service runs.

#ifndef PLENXSDK_PLENX_H
#define PLENXSDK_PLENX_H

#include <stddef.h>
#include <stdint.h>

/// The calling convention of all functions, those of an observer included. 64-bit Windows has only
/// this one.
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

/// As a length, this means that the text ends at its first NUL.
#define PLENX_SIZE_TO_NUL ((size_t)-1)
/// Writes a text as the two arguments pointer and length. The text is a literal or any other text
/// that ends at its first NUL.
#define PLENX_TEXT(text) (text), PLENX_SIZE_TO_NUL

/// The office service, which the companion library runs. These four numbers name the service that
/// an operation addresses. Every operation accepts any other number too, logs it and otherwise
/// ignores it; but a plenx_stop with such a number may still cause the status PLENX_STATUS_STOP of
/// service 3.
#define PLENX_OFFICE 0u
/// The Windows service "PlenxPcSvc".
#define PLENX_PC 1u
/// The Windows service "PlenxPhoneSvc".
#define PLENX_PHONE 2u
/// This number means several services. In most operations they are the PC service, then the office
/// service. In plenx_set_int64 and plenx_set_string they are the PC service and the phone service.
/// plenx_local_device_online and plenx_get_int64 say what the number means there.
#define PLENX_COMBINED 3u

/// The key of an integer setting, which is 0 by default.
#define PLENX_KEY_INTEGER_0 0u
/// The key of the locale, a text, which is "en_US" by default.
#define PLENX_KEY_LOCALE 1u
/// The key of another integer setting, which is 0 by default.
#define PLENX_KEY_INTEGER_2 2u
/// A question for plenx_get_int64, not a setting. The answer is 1 while the service is not running,
/// else 0.
#define PLENX_KEY_NOT_RUNNING 5u

/// A start has ended; value says whether it succeeded.
#define PLENX_STATUS_START 0
/// A stop has ended. For the office service, value says whether it succeeded; for the PC and phone
/// services it is always 0.
///
/// With service 3 and value 1, this status is a signal of its own: everything is stopped. The
/// library keeps two marks for it, one for the office and one for the PC. A start of the office
/// service sets the office mark and a start of service 3 sets both, whether or not the start
/// succeeds; a stop of the same number clears what that start sets. Every stop, of any number, ends
/// with the signal if no mark is set by then. A start of the PC or phone service alone sets no
/// mark, so the signal does not say whether one of them still runs.
#define PLENX_STATUS_STOP 1
/// For the office service: a remote device came online, and value says whether that succeeded. For
/// the PC and phone services: a device could not be brought online; value is 0.
#define PLENX_STATUS_ONLINE 2
/// For the office service: the local device went offline, and value says whether that succeeded.
/// For the PC and phone services: a device could not be taken offline; value is 0.
#define PLENX_STATUS_OFFLINE 3

/// The result of a call: 0, 26, or one of the PLENX_E numbers, which are below 0.
typedef int32_t plenx_result;

/// The call was taken. For an operation that queues a job, this does not mean that the work
/// succeeded.
#define PLENX_OK 0
/// A text that must not be empty is empty. The library queued nothing.
#define PLENX_INVALID_PARAMETER 26
/// An argument cannot be used; plenx_last_error says which one. The call did nothing.
#define PLENX_E_ARGUMENT (-1)
/// The caller's buffer is too short. The caller can call again with a larger one; nothing is lost.
#define PLENX_E_BUFFER (-2)
/// There is not enough memory.
#define PLENX_E_MEMORY (-3)
/// The header of the host is newer than the DLL. Ship the DLLs of the package that the header came
/// in.
#define PLENX_E_ABI (-4)
/// The handle was closed, was never opened, or is of the other kind.
#define PLENX_E_HANDLE (-5)
/// The queue was cancelled.
#define PLENX_E_CANCELLED (-6)
/// The call was made inside a function of an observer, where it would wait for ever.
#define PLENX_E_DEADLOCK (-7)
/// The process is ending; the call did nothing.
#define PLENX_E_ENDING (-8)
/// Something else went wrong; plenx_last_error says what it was.
#define PLENX_E_FAILED (-9)

#ifdef __cplusplus
extern "C" {
#endif

/// Tells the version of the DLL. It can be called at any time and cannot fail.
/// @return The PLENX_ABI of the header that the DLL was built with.
PLENX_API uint32_t PLENX_CALL plenx_abi(void);

/// Compares the header that the host was built with and the DLL. It opens nothing, and no other
/// call needs it. A host calls it first, so that it learns in words when the DLL is too old.
/// @param header_abi  PLENX_ABI.
/// @return 0, or PLENX_E_ABI when the header is newer than the DLL.
PLENX_API plenx_result PLENX_CALL plenx_open(uint32_t header_abi);

/// Gives the last failure of this layer on the calling thread as a sentence, which begins with the
/// function's name. The sentence stays until the next failure on this thread. Neither a call that
/// succeeds nor this function itself changes it. A language that moves its work between threads may
/// not find the sentence again; use plenx_result_text there.
/// @param text      The buffer; null only with capacity 0. It receives the empty text when nothing
///                  has failed on this thread.
/// @param capacity  The size of the buffer in bytes.
/// @param length    Receives the length of the sentence in bytes, without the NUL. It may be null.
/// @return 0, PLENX_E_BUFFER, or PLENX_E_ARGUMENT.
PLENX_API plenx_result PLENX_CALL plenx_last_error(char* text, size_t capacity, size_t* length);

/// Gives a sentence for a result. The text is constant and must not be freed. Any thread may ask.
/// @param result  Any number.
/// @return A sentence, never null; a number that is not a result has a sentence that says so.
PLENX_API const char* PLENX_CALL plenx_result_text(plenx_result result);

/// Makes the library ready. It creates the companion object on the caller's thread and queues a job
/// that makes the service side: driver files, working folder, services, driver, icon files and RPC
/// endpoint. It does not wait for that job, and no notification says that the job is done. A host
/// may call other operations at once: they wait behind the job in the queue. Once the service side
/// exists, a later call changes nothing. Any later call waits while the office service is being
/// started, stopped or told of a device. The process must have the right to control services (it
/// must be elevated). Do not call it from DllMain.
/// @param install      The install folder. Its path must not be empty, must not end with a
///                     backslash and must not contain a NUL. It holds plenxservice.exe, dokan1.sys,
///                     dokan1.dll, dokanfuse1.dll and the icon folders under `res\plenx\icon`. Only
///                     administrators may have write access to it and to its "upgrade" folder. Its
///                     path should be ASCII and free of blanks.
/// @param install_len  The length of the path in bytes.
/// @param data         The data folder, which must exist. Its path must not be empty, must not end
///                     with a backslash and must not contain a NUL. The sub-folder "plenx" is
///                     DELETED with everything in it, and so are "plenx0" to "plenx99" as far as
///                     they are needed.
/// @param data_len     The length of the path in bytes.
/// @param third        A text for the companion library only.
/// @param third_len    The length of that text in bytes.
/// @param flag         A flag for the companion library only: 0 is off, any other number is on.
/// @return 0, PLENX_E_DEADLOCK inside an observer, or PLENX_E_FAILED when the worker cannot be
///         made.
PLENX_API plenx_result PLENX_CALL plenx_init(const char* install, size_t install_len,
                                             const char* data, size_t data_len, const char* third,
                                             size_t third_len, int32_t flag);

/// Asks the companion library, on the caller's thread, to uninstall its packages, and queues the
/// job of plenx_init once more. It waits while the office service is being started, stopped or told
/// of a device. It releases nothing, and the library keeps working. A host need not call it before
/// it ends.
/// @return 0, or PLENX_E_DEADLOCK inside an observer.
PLENX_API plenx_result PLENX_CALL plenx_destroy(void);

/// Tells, on the caller's thread, whether a service is running: PLENX_KEY_NOT_RUNNING is the only
/// key that has an answer, and settings cannot be read back. A service that is starting or stopping
/// counts as running; one that cannot be asked does not. The call waits while the job of the first
/// plenx_init is running, but it does not wait for that job to begin: before plenx_init the answer
/// is 0, and right after it the answer may be 0.
/// @param service  PLENX_PC, PLENX_PHONE, or PLENX_COMBINED, which asks about the driver.
/// @param key      PLENX_KEY_NOT_RUNNING. For every other key the answer is 0.
/// @param value    Receives the answer: 1 while the service is not running, else 0.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_get_int64(uint32_t service, uint32_t key, int64_t* value);

/// Always gives the empty text, because string settings cannot be read back. It waits while the job
/// of the first plenx_init is running.
/// @param service   PLENX_PC, PLENX_PHONE or PLENX_COMBINED.
/// @param key       It makes no difference.
/// @param text      The buffer; null only with capacity 0.
/// @param capacity  The size of the buffer in bytes; 1 is enough.
/// @param length    Receives the length of the text in bytes, without the NUL. It may be null.
/// @return 0, or PLENX_E_BUFFER.
PLENX_API plenx_result PLENX_CALL plenx_get_string(uint32_t service, uint32_t key, char* text,
                                                   size_t capacity, size_t* length);

/// Queues a change of an integer setting. The service receives the value at its next start, and at
/// every later one. A plenx_start that is called after this call counts as the next one. The value
/// stays until the process ends. A change that is made before plenx_init is silently lost.
/// @param service  PLENX_PC, PLENX_PHONE, or PLENX_COMBINED for both.
/// @param key      A key that the service does not have is ignored.
/// @param value    The service gets it unchanged.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_set_int64(uint32_t service, uint32_t key, int64_t value);

/// Queues a change of a string setting, in the same way as plenx_set_int64.
/// @param service    PLENX_PC, PLENX_PHONE, or PLENX_COMBINED for both.
/// @param key        A key that the service does not have is ignored.
/// @param value      The service gets it unchanged.
/// @param value_len  The length of the value in bytes.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_set_string(uint32_t service, uint32_t key,
                                                   const char* value, size_t value_len);

/// Queues the start of a service and the creation of a group in it. The outcome comes as
/// PLENX_STATUS_START. For PLENX_COMBINED two outcomes come: that of the PC service, then that of
/// the office service. A service that is already running is not started again; it receives its
/// settings and the group. The job waits until the service reports that it is running, and then
/// until it answers.
///
/// Before plenx_init, every operation that queues a job checks its arguments, logs the call, drops
/// it and returns 0. Only plenx_set_int64 and plenx_set_string do not log it.
/// @param service       PLENX_OFFICE to PLENX_COMBINED.
/// @param group         The name of the group, not empty.
/// @param group_len     The length of the name in bytes.
/// @param argument      An argument for the group, not empty. It goes to the service unchanged; the
///                      office service does not receive it.
/// @param argument_len  The length of the argument in bytes.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_start(uint32_t service, const char* group, size_t group_len,
                                              const char* argument, size_t argument_len);

/// Queues the deletion of a group and the stop of its service, whatever other groups the service
/// has. The outcome comes as PLENX_STATUS_STOP. A service that accepts the stop but then makes no
/// progress for 2 s is ended by force.
/// @param service    PLENX_OFFICE to PLENX_COMBINED.
/// @param group      The name of the group, not empty.
/// @param group_len  The length of the name in bytes.
/// @return 0, or PLENX_INVALID_PARAMETER when the name is empty.
PLENX_API plenx_result PLENX_CALL plenx_stop(uint32_t service, const char* group, size_t group_len);

/// Queues the news that the local device is online. If the PC or phone service does not take it,
/// PLENX_STATUS_ONLINE comes with value 0; if it does, no notification comes. For the office
/// service no notification ever comes.
///
/// With PLENX_COMBINED only the office service hears of the device, and PLENX_STATUS_ONLINE comes
/// with service 3 and value 0 for the rest. Call this function for PLENX_PC as well.
/// @param service     PLENX_OFFICE to PLENX_COMBINED.
/// @param group       The name of the group, not empty.
/// @param group_len   The length of the name in bytes.
/// @param device      The id of the device, not empty.
/// @param device_len  The length of the id in bytes.
/// @param data        Any bytes; null only with size 0. The office service receives 16 of them at
///                    most.
/// @param size        The length of data in bytes, 2^31 - 1 at most.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_local_device_online(uint32_t service, const char* group,
                                                            size_t group_len, const char* device,
                                                            size_t device_len, const void* data,
                                                            uint64_t size);

/// Queues the news that a remote device is online. The outcome for the office service comes as
/// PLENX_STATUS_ONLINE. For the PC and phone services only a failure is reported, with the same
/// status and value 0.
/// @param service     PLENX_OFFICE to PLENX_COMBINED.
/// @param group       The name of the group, not empty.
/// @param group_len   The length of the name in bytes.
/// @param device      The id of the device, not empty.
/// @param device_len  The length of the id in bytes.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_remote_device_online(uint32_t service, const char* group,
                                                             size_t group_len, const char* device,
                                                             size_t device_len);

/// Queues the news that the local device goes offline, and why. The outcome for the office service
/// comes as PLENX_STATUS_OFFLINE. For the PC and phone services only a failure is reported, with
/// the same status and value 0.
/// @param service     PLENX_OFFICE to PLENX_COMBINED.
/// @param group       The name of the group, not empty.
/// @param group_len   The length of the name in bytes.
/// @param device      The id of the device, not empty.
/// @param device_len  The length of the id in bytes.
/// @param trigger     The reason, as a number that the PC or phone service gets unchanged; 0 means
///                    no particular reason.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_local_device_offline(uint32_t service, const char* group,
                                                             size_t group_len, const char* device,
                                                             size_t device_len, int32_t trigger);

/// Queues the news that a remote device goes offline, and why. A failure of the PC or phone service
/// comes as PLENX_STATUS_OFFLINE with value 0; for the office service no notification comes.
/// @param service     PLENX_OFFICE to PLENX_COMBINED.
/// @param group       The name of the group, not empty.
/// @param group_len   The length of the name in bytes.
/// @param device      The id of the device, not empty.
/// @param device_len  The length of the id in bytes.
/// @param trigger     The reason, as a number that the PC or phone service gets unchanged; 0 means
///                    no particular reason.
/// @return 0, or PLENX_INVALID_PARAMETER when a text is empty.
PLENX_API plenx_result PLENX_CALL plenx_remote_device_offline(uint32_t service, const char* group,
                                                              size_t group_len, const char* device,
                                                              size_t device_len, int32_t trigger);

/// Queues the news, for the PC service, that this device has a new name. No notification reports
/// the outcome.
/// @param name      The new name, not empty.
/// @param name_len  The length of the name in bytes.
/// @return 0, or PLENX_INVALID_PARAMETER when the name is empty.
PLENX_API plenx_result PLENX_CALL plenx_device_name_changed(const char* name, size_t name_len);

/// Queues a message for the PC service. Despite the function's name, the host sends here: it passes
/// on what it has received from a remote device. No notification reports the outcome.
/// @param type         It goes to the service unchanged.
/// @param msg_len      It goes to the service unchanged. The library never compares it with
///                     message_len.
/// @param message      Any bytes; it may be empty.
/// @param message_len  The length of the message in bytes.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_recv_remote_message(int32_t type, uint32_t msg_len,
                                                            const char* message,
                                                            size_t message_len);

/// Asks the companion library, on the caller's thread, for the folder of a device of a group. It
/// waits while the office service is being started, stopped or told of a device.
/// @param group         The name of the group.
/// @param group_len     The length of the name in bytes.
/// @param device        The id of the device.
/// @param device_len    The length of the id in bytes.
/// @param relative      A relative name.
/// @param relative_len  The length of that name in bytes.
/// @param text          The buffer; null only with capacity 0. It receives the folder, a backslash
///                      and the relative name, whatever the code is. It may be the buffer that
///                      holds `relative`.
/// @param capacity      The size of the buffer in bytes.
/// @param length        Receives the length of the text in bytes, without the NUL. It may be null.
/// @param code          Receives the companion library's own code, which is not a plenx_result. It
///                      is 0 before plenx_init. The pointer must not be null.
/// @return 0, PLENX_E_DEADLOCK inside an observer, or PLENX_E_BUFFER, which sets length and code
///         all the same. The next call asks the companion library again.
PLENX_API plenx_result PLENX_CALL plenx_get_office_dir(const char* group, size_t group_len,
                                                       const char* device, size_t device_len,
                                                       const char* relative, size_t relative_len,
                                                       char* text, size_t capacity, size_t* length,
                                                       int32_t* code);

/// A service sends a message to this device. type and msg_len are numbers of the service's own, and
/// text holds the bytes. Never use msg_len as the length of the text.
#define PLENX_EVENT_MESSAGE 9u
/// A group of a service has been connected. service names the service, and text is the name of the
/// group.
#define PLENX_EVENT_CONNECT 10u
/// A group of a service has lost its connection. service and text are as for PLENX_EVENT_CONNECT.
#define PLENX_EVENT_DISCONNECT 11u
/// A group of a service has been connected again. service and text are as for PLENX_EVENT_CONNECT.
#define PLENX_EVENT_RECONNECT 12u
/// A service has asked for the status of a link. service and text are as for PLENX_EVENT_CONNECT,
/// type is the number of the link, and value is the answer as it stood after this queue; see
/// plenx_queue_set_link_status.
#define PLENX_EVENT_LINK_QUERY 13u
/// Something started, stopped, came online or went offline. This is the outcome of a job, or
/// something that a service reports by itself; then service and text are as for
/// PLENX_EVENT_CONNECT. For the outcome of a job, service and text are those that the host gave.
/// service is PLENX_COMBINED when everything has stopped (see PLENX_STATUS_STOP), and when
/// plenx_local_device_online of PLENX_COMBINED has failed. type is a PLENX_STATUS number or a kind
/// of the service's own, and value is 0 or 1.
#define PLENX_EVENT_STATUS 14u
/// A service reports an error of its own; value is its code.
#define PLENX_EVENT_ERROR 15u
/// A service reports the name under which its disk is mounted. text is that name; it may be any
/// bytes.
#define PLENX_EVENT_DISK_NAME 16u

/// The handle of a queue of notifications.
typedef struct plenx_queue plenx_queue;

/// One notification. A member that its kind does not use is 0 or the empty text.
typedef struct plenx_event {
    uint32_t size;       ///< The size of this struct in the DLL. Do not read beyond it.
    uint32_t kind;       ///< A PLENX_EVENT number. A later DLL may have further kinds.
    uint32_t service;    ///< The number that a service put into the group's name is not checked.
    int32_t type;        ///< Its meaning depends on the kind.
    uint32_t msg_len;    ///< See PLENX_EVENT_MESSAGE.
    int32_t value;       ///< Its meaning depends on the kind.
    uint64_t lost;       ///< How many notifications were dropped directly before this one.
    const char* text;    ///< Never null; a NUL follows it. It lives as long as the event.
    size_t text_length;  ///< The length of text in bytes, without that NUL.
} plenx_event;

/// Opens a queue. The queue takes every notification from now on, until it is cancelled or closed.
/// It holds `capacity` events at most, and 64 MiB of their text at most; one event that is larger
/// than that by itself is held in addition. When the queue is full, it drops its oldest event, and
/// `lost` of the event that follows counts it. A notification for which there is no memory is
/// dropped and counted in the same way.
///
/// The first call of this function or of plenx_observe waits for a notification that is being
/// delivered.
/// @param capacity  How many events the queue holds at most; not 0. The queue reserves no memory
///                  for them.
/// @param queue     Receives the handle; close it with plenx_queue_close.
/// @return 0, PLENX_E_DEADLOCK inside an observer, or PLENX_E_MEMORY.
PLENX_API plenx_result PLENX_CALL plenx_queue_open(uint32_t capacity, plenx_queue** queue);

/// Takes the oldest event, or waits for one. Any number of threads may wait; each event goes to one
/// of them.
/// @param queue         The queue.
/// @param milliseconds  How long to wait: 0 does not wait, and UINT32_MAX waits for ever. Inside an
///                      observer the function never waits.
/// @param event         Receives the event, or null when no event came. The event belongs to the
///                      caller until plenx_event_free, even if the queue is closed earlier.
/// @return 0, even when no event came in time. PLENX_E_CANCELLED when the queue was cancelled.
///         PLENX_E_HANDLE when it was closed, even if that happened while the call was waiting.
PLENX_API plenx_result PLENX_CALL plenx_queue_next(plenx_queue* queue, uint32_t milliseconds,
                                                   const plenx_event** event);

/// Frees an event. Call it once for each event.
/// @param event  An event from plenx_queue_next, or null, which is ignored.
PLENX_API void PLENX_CALL plenx_event_free(const plenx_event* event);

/// Gives a Windows event (a HANDLE) for hosts that wait for several things at once. The event is
/// set while the queue holds a notification, and it stays set once the queue is cancelled. When it
/// is set, call plenx_queue_next with 0 milliseconds until it gives no event, then wait again.
/// Never reset or close the handle.
/// @param queue  The queue. It owns the handle and closes it when it is itself closed.
/// @return The same handle on every call; null on failure, and on a system other than Windows.
PLENX_API void* PLENX_CALL plenx_queue_wait_handle(plenx_queue* queue);

/// Sets the answer that this queue gives when a service asks for the status of a link. A queue
/// without an answer for that link leaves the value as it is: 0, or the answer of a queue or
/// observer that was opened earlier. If several give an answer, the one that was opened last wins.
/// An answer stays until it is set again or the queue is closed.
/// @param queue      The queue.
/// @param service    The service that asks.
/// @param group      The name of the group.
/// @param group_len  The length of the name in bytes.
/// @param link       The number of the link, which is the service's own.
/// @param status     The answer.
/// @return 0, or PLENX_E_MEMORY.
PLENX_API plenx_result PLENX_CALL plenx_queue_set_link_status(plenx_queue* queue, uint32_t service,
                                                              const char* group, size_t group_len,
                                                              uint32_t link, int32_t status);

/// Ends all waiting: from now on plenx_queue_next returns PLENX_E_CANCELLED at once, on every
/// thread and for good. The queue drops the events that it holds. The function does not wait, and
/// an observer may call it. The host must still close the handle with plenx_queue_close.
/// @param queue  The queue.
/// @return 0.
PLENX_API plenx_result PLENX_CALL plenx_queue_cancel(plenx_queue* queue);

/// Closes the queue and drops the events that it holds. Threads that wait in plenx_queue_next
/// return with PLENX_E_HANDLE. This function does not wait for them.
/// @param queue  The queue.
/// @return 0, or PLENX_E_DEADLOCK inside an observer.
PLENX_API plenx_result PLENX_CALL plenx_queue_close(plenx_queue* queue);

/// The functions of an observer. A function that the host does not want is null.
///
/// The library passes `user` to each function as its first argument. A function returns 0 when it
/// has handled the notification. When observers return other numbers, the library logs the first of
/// them as an error code. The number has no other effect. Texts are valid during the call only, and
/// a NUL follows them. Copy what you need and return soon. Never throw.
typedef struct plenx_observer {
    uint32_t size;  ///< sizeof(plenx_observer).
    void* user;     ///< Any pointer of the host's. Every function receives it.
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
    /// A service asks for the status of a link and waits for the answer. `status` holds 0, or the
    /// answer of a queue or observer that was opened earlier. The service gets the value that the
    /// last one leaves in it, whatever the functions return.
    int32_t(PLENX_CALL* query_link_status)(void* user, uint32_t service, const char* group,
                                           size_t group_len, uint32_t link, int32_t* status);
    /// See PLENX_EVENT_STATUS; kind is the type of that event.
    int32_t(PLENX_CALL* notify_status)(void* user, uint32_t service, const char* group,
                                       size_t group_len, uint32_t kind, int32_t value);
    /// See PLENX_EVENT_ERROR.
    int32_t(PLENX_CALL* notify_error)(void* user, int32_t code);
    /// See PLENX_EVENT_DISK_NAME.
    int32_t(PLENX_CALL* notify_disk_name)(void* user, const char* name, size_t name_len);
} plenx_observer;

/// The handle of an observer that is registered.
typedef struct plenx_subscription plenx_subscription;

/// Registers an observer. From now on the library calls its functions, one at a time, on threads of
/// its own. Each notification reaches queues and observers in the order in which they were opened.
///
/// The first call of this function or of plenx_queue_open waits for a notification that is being
/// delivered.
/// @param observer      The library copies the struct; `user` and the functions must stay valid
///                      until plenx_unobserve has returned. If the struct is larger than the one
///                      that this DLL knows, the part that the DLL does not know must be 0.
/// @param subscription  Receives the handle; close it with plenx_unobserve.
/// @return 0, PLENX_E_DEADLOCK inside an observer, PLENX_E_ABI when a function is set that the DLL
///         does not know, or PLENX_E_MEMORY.
PLENX_API plenx_result PLENX_CALL plenx_observe(const plenx_observer* observer,
                                                plenx_subscription** subscription);

/// Removes an observer and closes its handle. If one of the observer's functions is running, the
/// call waits until that function has returned. Afterwards none of them is running and none will be
/// called.
/// @param subscription  The handle from plenx_observe.
/// @return 0, or PLENX_E_DEADLOCK inside an observer.
PLENX_API plenx_result PLENX_CALL plenx_unobserve(plenx_subscription* subscription);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // PLENXSDK_PLENX_H
