/// @file
/// The whole interface of plenxsdk.dll, which runs a distributed file system on this PC.
///
/// There is one singleton, PLENXManager, and one observer class, PLENXServiceObserver, which the
/// host implements. A host registers its observer, calls Init once, then Start, and learns the
/// outcome through the observer.
///
/// **How it works.** Every operation that changes something checks its arguments, queues a job and
/// returns at once. One private worker runs the jobs one at a time, in the order of the calls. The
/// outcome of a job comes back through the observers. The library never repeats a job that has
/// failed, and a host cannot withdraw a job that it has queued. Two of these operations can wait,
/// because they also call the companion library: Init and Destroy.
///
/// **Threads.** A host may call every operation of PLENXManager from any thread at any time. The
/// library calls observers on its worker and on threads of the RPC runtime, never on two threads at
/// once, and never on a thread of the host. PLENXServiceObserver says what an observer may do.
///
/// **What 0 means.** The call was accepted: its job is queued, or, before Init, the job was dropped
/// with a line in the log. 0 never means that the work succeeded.
///
/// **When the outcome comes.** The outcomes of jobs come in the order of the calls. What a service
/// reports by itself comes in between, in no fixed order: it may overtake the outcome of the call
/// that caused it. Each operation says which outcome it has. Where it names none, a failure shows
/// in the log only.
///
/// **Deadlines.** A job has no time limit: it waits for its service, and all later jobs wait behind
/// it. A request that the service never answers therefore blocks every later job, a Stop included.
/// So the host must set a deadline of its own for each outcome. When the deadline passes, the host
/// should end the service's process. It finds the process through the Service Control Manager: open
/// the service by its name ("PlenxPcSvc" or "PlenxPhoneSvc"), take dwProcessId from
/// QueryServiceStatusEx, and call TerminateProcess. The request then fails, its job reports the
/// failure, the next jobs run, and a new Start starts the service again.
///
/// **Strings.** A std::string holds UTF-8. The library copies the strings and data of a call before
/// the call returns. A string that an observer receives is valid during that notification only. The
/// library does not check group names, device ids and messages. They may be of any length (a
/// request of 2 GiB or more fails as a whole) and may contain a NUL, and they reach the service
/// unchanged. What a service sends need not be valid UTF-8. Init is stricter about its two folders.
///
/// **Life.** The instance exists as soon as the DLL is loaded. Init keeps the DLL loaded until the
/// process ends; FreeLibrary then has no effect. A host has nothing to close or release.
///
/// **The end of the process.** When the process ends in an orderly way (main returns, or somebody
/// calls exit or ExitProcess), the library stops and uninstalls the PC and phone services and
/// removes the working folder. It does so while it is being detached, on the thread that ends the
/// process. A service that accepts the stop but then makes no progress for 2 s is ended by force. A
/// service that refuses the stop because it is still starting is left as it is. If a service is
/// already stopping, the library first waits for it, for as long as the service's own wait hint
/// says, and each checkpoint that the service reports starts that time again; a service that is
/// still stopping afterwards is left as it is. So the hints and checkpoints of the services limit
/// how long the end of the process takes, and nothing else does.
///
/// Queued jobs do not run any more, and a running one is cut off. The library calls no observer
/// once the system has ended the other threads. Until then, for example while static objects of the
/// program are being destroyed, it still does, so unregister observers before main returns.
/// Once the other threads are gone, every operation does nothing: it takes no lock and returns 0
/// (26 for an empty required string), an empty string, or nothing, and GetOfficeDir answers as
/// before Init. So static objects in the host's own DLLs may still call the library. The driver and
/// the office service stay registered.
///
/// After a crash or TerminateProcess everything stays as it was. The next Init takes over what it
/// finds. A service that still hangs in its stop cannot start until its process is ended.
///
/// **Exceptions.** No operation throws because of its arguments. std::system_error, std::bad_alloc
/// and whatever the companion library throws may pass through. What goes wrong inside a job never
/// reaches the caller.
///
/// **Toolchain.** C++ classes and std::string cross the border of the DLL. The same compiler family
/// must build the host and the library, and both must share one C++ runtime. MinGW's is shipped as
/// DLLs beside this one; Microsoft's redistributable installs that of Visual C++.

#ifndef PLENXSDK_PLENX_MANAGER_H
#define PLENXSDK_PLENX_MANAGER_H

#if defined(_MSC_VER) && !defined(PLENXSDK_BUILT_BY_VISUAL_CPP)
#error \
    "plenxsdk.dll of this package was built by MinGW-w64, and a class of it does not fit Visual C++: include plenxsdk/plenx.h or plenxsdk/plenx.hpp and link plenxsdk_c.lib"
#endif

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#if !defined(_WIN32)
#define PLENXSDK_API __attribute__((visibility("default")))
#elif defined(PLENXSDK_BUILD)
#define PLENXSDK_API __declspec(dllexport)
#else
#define PLENXSDK_API __declspec(dllimport)
#endif

class DistributedFileManager;

namespace DistributedFs {

class PLENXManagerInner;
class RpcManager;
class ThreadPool;
template <class T>
class ModuleObject;

/// The service that an operation addresses. Every operation accepts any other 32-bit value as well,
/// logs it and otherwise ignores it; but even a Stop of such a value may be followed by the signal
/// that is described at kStatusStop.
enum ServiceType : std::uint32_t {
    kOfficeService = 0,   ///< The office service, which the companion library runs.
    kPcService = 1,       ///< The Windows service "PlenxPcSvc".
    kPhoneService = 2,    ///< The Windows service "PlenxPhoneSvc".
    kCombinedService = 3  ///< It means different services in different operations. In Start, Stop,
                          ///< RemoteDeviceOnline and the two offline operations: the PC service,
                          ///< then the office service. In LocalDeviceOnline: the office service
                          ///< only; see there. In SetConfig: the PC service and the phone
                          ///< service. In GetInt64Config: the driver.
};

/// The key of a configuration value. The library hands keys to the services without interpreting
/// them. These keys are in use.
enum ConfigType : std::uint32_t {
    kIntegerConfig0 = 0,          ///< An integer setting, 0 by default. It cannot be read back:
                                  ///< GetInt64Config returns 0 whatever was set.
    kLocaleConfig = 1,            ///< A string setting, "en_US" by default. It cannot be read back.
    kIntegerConfig2 = 2,          ///< An integer setting, 0 by default. It cannot be read back:
                                  ///< GetInt64Config returns 0 whatever was set.
    kServiceNotRunningConfig = 5  ///< Not a setting but a question, for GetInt64Config only: 1
                                  ///< while the service is not running, else 0.
};

/// Why a device goes offline. The library passes any 32-bit value on to the service unchanged.
enum TriggerType : std::int32_t {
    kDefaultTrigger = 0  ///< No particular reason.
};

/// The type of a message between the host and the services. The library passes any 32-bit value on
/// unchanged, in both directions.
enum PLENXMessageType : std::int32_t {
    kDefaultMessage = 0  ///< No particular type.
};

/// The kinds of status that the library itself reports through NotifyStatus. The services may send
/// these kinds too, and others.
enum StatusKind : std::uint32_t {
    kStatusStart = 0,         ///< A start has ended; value says whether it succeeded.
    kStatusStop = 1,          ///< A stop has ended. For the office service, value says whether it
                              ///< succeeded; for the PC and phone services it is always false.
                              ///<
                              ///< With service type 3 and value true, this kind is a signal of its
                              ///< own: "everything is stopped". The library keeps two marks for
                              ///< it, one for the office and one for the PC. A Start of type 0 sets
                              ///< the office mark and a Start of type 3 sets both, whether or not
                              ///< the start succeeds. A Stop of type 0 clears the office mark and a
                              ///< Stop of type 3 clears both. Every Stop, of any type, ends with
                              ///< the signal if no mark is set by then. A Start of type 1 or 2 sets
                              ///< no mark, so the signal does not say whether a PC or phone service
                              ///< still runs.
    kStatusDeviceOnline = 2,  ///< For the office service: a remote device came online, and value
                              ///< says whether that succeeded. For the PC and phone services: a
                              ///< device could not be brought online; value is false.
    kStatusDeviceOffline = 3  ///< For the office service: the local device went offline, and value
                              ///< says whether that succeeded. For the PC and phone services: a
                              ///< device could not be taken offline; value is false.
};

/// The results of the PLENXManager operations that return an int.
enum PLENXResult : int {
    kAccepted = 0,          ///< The job is queued, or was dropped before Init (which is only
                            ///< logged). It does not mean that the work succeeded.
    kInvalidParameter = 26  ///< A required string is empty; nothing was queued.
};

/// Through this class the host hears from the services and from the library.
///
/// The host derives from this class and registers an object of it. The library never owns or
/// deletes the object. Keep it alive until UnregisterPLENXServiceObserver has returned: from then
/// on no call to it is running and none will come.
///
/// **Where and when.** Calls come on the library's worker and on threads of the RPC runtime. Each
/// notification goes to one observer after the other, in an order that the host cannot choose.
/// Notifications never overlap: while one runs, every other one waits. A slow observer therefore
/// delays all outcomes, and the services that wait for their answer. Copy what you need, hand it to
/// a thread of your own, and return.
///
/// **What an observer may call.** From inside a notification, do not call
/// RegisterPLENXServiceObserver, UnregisterPLENXServiceObserver, GetOfficeDir, Init or Destroy, and
/// do not wait for another thread that is calling one of them. They would wait for ever, for a lock
/// that is held while the notification runs. So an observer can never unregister itself from inside
/// a notification, and must not call exit there if a static object of the program unregisters one.
/// Every other operation is allowed, and those that queue a job return at once. But do not wait
/// there for the outcome of a job: the outcome is a notification too, and cannot come.
///
/// **Results.** Each notification returns 0 when the observer has handled it. The library logs any
/// other value as an error code; it has no other effect, and the other observers are called all the
/// same.
///
/// **Exceptions.** Do not throw. An exception skips the observers that follow. On a thread of the
/// RPC runtime, the service gets an error as the result of its call. On the worker, the rest of the
/// job is lost.
///
/// **Trust.** Any local process that reaches the endpoint "Manager" can cause every one of these
/// notifications, including those that the library itself raises. Treat what they say as hints: ask
/// GetInt64Config whether a service runs.
class PLENXServiceObserver {
public:
    virtual ~PLENXServiceObserver() = default;

    /// A service has a message for this device.
    /// @param msgType  A number of the service's own.
    /// @param msgLen   A number of the service's own. Never use it as the length of message; use
    ///                 message.size().
    /// @param message  Any bytes.
    /// @return 0 when handled.
    virtual int SendLocalMessage(PLENXMessageType msgType, unsigned int msgLen,
                                 const std::string& message) = 0;
    /// A group of a service has been connected.
    /// @param svcType  The service, by the number that it put into the group's name; not checked.
    /// @param first    The group's name, as the host gave it to Start.
    /// @return 0 when handled.
    virtual int NotifyConnect(ServiceType svcType, const std::string& first) = 0;
    /// A group of a service has lost its connection.
    /// @param svcType  As for NotifyConnect.
    /// @param first    The group's name.
    /// @return 0 when handled.
    virtual int NotifyDisconnect(ServiceType svcType, const std::string& first) = 0;
    /// A group of a service has been connected again.
    /// @param svcType  As for NotifyConnect.
    /// @param first    The group's name.
    /// @return 0 when handled.
    virtual int NotifyReconnect(ServiceType svcType, const std::string& first) = 0;
    /// A service asks for the status of a link of a group, and waits for the answer.
    /// @param svcType     As for NotifyConnect.
    /// @param first       The group's name.
    /// @param linkType    The number of the link, which is the service's own.
    /// @param linkStatus  It holds 0, or what an observer before this one has written. The service
    ///                    gets the value that the last observer leaves in it, whatever the
    ///                    observers return.
    /// @return 0 when handled.
    virtual int QueryLinkStatus(ServiceType svcType, const std::string& first,
                                unsigned int linkType, std::int32_t& linkStatus) = 0;
    /// Something started, stopped, came online or went offline. This is the outcome of a job, or
    /// something that a service reports by itself.
    /// @param svcType   The service. It is 3 with kind 1 and value true (see kStatusStop), and with
    ///                  kind 2 and value false after a LocalDeviceOnline of type 3.
    /// @param first     The group's name, as the host gave it to the operation.
    /// @param sttsType  A StatusKind, or a kind of the service's own.
    /// @param value     Its meaning depends on the kind; see StatusKind.
    /// @return 0 when handled.
    virtual int NotifyStatus(ServiceType svcType, const std::string& first, unsigned int sttsType,
                             bool value) = 0;
    /// A service reports an error of its own. The library itself never calls this.
    /// @param errCode  A code of the service's own, not one of the library's.
    /// @return 0 when handled.
    virtual int NotifyError(int errCode) = 0;
    /// A service reports the name under which its disk is mounted.
    /// @param diskName  The bytes are the service's own; they need not be valid UTF-8.
    /// @return 0 when handled.
    virtual int NotifyDiskName(const std::string& diskName) = 0;
};

/// The library. There is one instance per process, and the host asks it for everything.
///
/// Operations that return an int return a PLENXResult unless they say otherwise. Before Init, every
/// operation that queues a job checks its arguments, logs the call, drops it and returns 0.
/// SetConfig before Init has no effect and writes no line.
///
/// In the operations on groups and devices, svcType names the service, first is the name of a group
/// and second is the id of a device. (In Start, second is an argument for the group.) A service
/// sees the group's name followed by '_' and the service's number, for example `home_1`.
class PLENXManager {
public:
    /// The one instance of the process. A host may use it as soon as the DLL is loaded.
    /// @return Always the same object; never delete it.
    PLENXSDK_API static PLENXManager& GetInstance();

    /// Makes the library ready. It creates the companion object on the caller's thread and queues a
    /// job that makes the service side: driver files, working folder, services, driver, icon files
    /// and RPC endpoint. It does not wait for that job. A later Init waits while the office service
    /// is being started, stopped or told of a device. Do not call it from DllMain.
    ///
    /// No notification says that the job is done. A host may call other operations at once: they
    /// wait behind the job in the queue. GetInt64Config waits while the job is running, but it does
    /// not wait for the job to begin: right after Init it may return 0 at once.
    ///
    /// The process must have the right to control services (it must be elevated), both folders must
    /// be valid UTF-8, and the data folder must exist. If something fails, the part that it
    /// concerns is missing: the service side, the driver, the icons or the endpoint. Without the
    /// service side every Start of type 1 or 2 fails; without the driver or the endpoint it can
    /// still succeed.
    ///
    /// The log reports most failures, but not these: a folder that is not valid UTF-8, an empty
    /// data folder, a NUL in a folder, an icon file that is opened but cannot be written (as on a
    /// full disk), and a lack of memory or of threads. With a NUL in the install folder, the driver
    /// upgrade ends with code 24. With a NUL in the data folder, the choice of a working folder
    /// ends with code 31. In both cases there is no service side, and no line says why. A NUL in
    /// the install folder also keeps the icon files from being opened; five lines do report that.
    ///
    /// A host cannot correct a bad folder by calling Init again. The companion object keeps the
    /// folders of the first Init until the process ends. The service side keeps those of the first
    /// Init whose two folders are valid UTF-8; the job of a later Init finds everything done, even
    /// if something has failed. It tries again only what lacked memory or a thread.
    ///
    /// @param first   The install folder. Its path must not be empty, must not end with a backslash
    ///                and must not contain a NUL. It holds plenxservice.exe, dokan1.sys,
    ///                dokan1.dll, dokanfuse1.dll and the icon folders under
    ///                `res\plenx\icon`. Only administrators may have write access to it and to its
    ///                "upgrade" folder. Its path should be ASCII and free of blanks, because
    ///                service paths are registered unquoted.
    /// @param second  The data folder. Its path must not be empty, must not end with a backslash
    ///                and must not contain a NUL. The sub-folder "plenx" is DELETED with everything
    ///                in it, and so are "plenx0" to "plenx99" as far as they are needed.
    /// @param third   A string for the companion library only.
    /// @param flag    A flag for the companion library only.
    PLENXSDK_API void Init(const std::string& first, const std::string& second, std::string third,
                           bool flag);

    /// Asks the companion library, on the caller's thread, to uninstall its packages, and queues
    /// the job of Init once more, which changes nothing if Init succeeded. It waits while the
    /// office service is being started, stopped or told of a device. It releases nothing, and the
    /// library keeps working. A host need not call it before it ends.
    PLENXSDK_API void Destroy();

    /// Tells, on the caller's thread, whether a service is running: this is the only question that
    /// has an answer. Settings cannot be read back. A service that is starting or stopping counts
    /// as running; one that cannot be asked does not. The call waits while the job of the first
    /// Init is running.
    /// @param svcType  1 for the PC service, 2 for the phone service, 3 for the driver.
    /// @param cfgType  kServiceNotRunningConfig (5).
    /// @return For key 5, 1 while the service is not running, else 0. It is also 0 as long as the
    ///         job of Init has not made the service side: before Init, and right after it when the
    ///         worker has not begun yet. So 0 means "running" only after that. For every other key
    ///         and for an invalid service type it is 0.
    PLENXSDK_API std::int64_t GetInt64Config(ServiceType svcType, ConfigType cfgType);

    /// Always returns the empty string, because string settings cannot be read back. It waits while
    /// the job of the first Init is running.
    /// @param svcType  1 to 3. Any other value is logged as an error, and the call does not wait.
    /// @param cfgType  It makes no difference.
    /// @return Always the empty string.
    PLENXSDK_API std::string GetStringConfig(ServiceType svcType, ConfigType cfgType);

    /// Queues a change of a string setting. The service receives the value at its next Start, and
    /// at every later one. A Start that is called after this call counts as the next one. The value
    /// stays until the process ends.
    /// @param svcType   1 for the PC service, 2 for the phone service, 3 for both. The office
    ///                  service has no settings.
    /// @param cfgType   A key that the service does not have is ignored.
    /// @param cfgValue  Goes to the service unchanged.
    PLENXSDK_API void SetConfig(ServiceType svcType, ConfigType cfgType, std::string cfgValue);
    /// Queues a change of an integer setting, in the same way.
    /// @param svcType   1 for the PC service, 2 for the phone service, 3 for both. The office
    ///                  service has no settings.
    /// @param cfgType   A key that the service does not have is ignored.
    /// @param cfgValue  Goes to the service unchanged.
    PLENXSDK_API void SetConfig(ServiceType svcType, ConfigType cfgType, std::int64_t cfgValue);

    /// Queues the start of a service and the creation of a group in it. The outcome comes as
    /// NotifyStatus with kind 0. With type 3 there are two outcomes: that of the PC service, then
    /// that of the office service. A service that is already running is not started again; it
    /// receives its settings and the group.
    ///
    /// The job waits until the service reports that it is running, for as long as the service asks
    /// for, and then until it answers a ping. The pauses between the pings add up to 5 s at most;
    /// the time that a ping itself takes has no limit.
    /// @param svcType  0 to 3; 3 means the PC service, then the office service.
    /// @param first    The name of the group, not empty.
    /// @param second   An argument for the group, not empty. It goes to the service unchanged; the
    ///                 office service does not receive it.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int Start(ServiceType svcType, const std::string& first,
                           const std::string& second);

    /// Queues the deletion of a group and the stop of its service, whatever other groups the
    /// service has. The outcome comes as NotifyStatus with kind 1, whose value is always false for
    /// the PC and phone services. The signal that everything is stopped may follow; see
    /// kStatusStop. A service that accepts the stop but then makes no progress for 2 s is ended by
    /// force.
    /// @param svcType  0 to 3; 3 means the PC service, then the office service.
    /// @param first    The name of the group, not empty.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int Stop(ServiceType svcType, const std::string& first);

    /// Queues the news that the local device is online. If the PC or phone service does not take
    /// it, NotifyStatus comes with kind 2 and value false; if it does, no notification comes. For
    /// the office service no notification ever comes.
    ///
    /// With type 3 only the office service hears of the device, and NotifyStatus(3, first, 2,
    /// false) comes for the rest. Call this operation for kPcService as well.
    /// @param svcType  0 to 3.
    /// @param first    The name of the group, not empty.
    /// @param second   The id of the device, not empty.
    /// @param size     The length of data in bytes; only its low 32 bits count. The office service
    ///                 receives 16 bytes at most. If those bits give 2^31 or more, the request to
    ///                 the PC or phone service fails and the office service receives no bytes.
    /// @param data     The library copies it before the call returns. Null means no bytes.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int LocalDeviceOnline(ServiceType svcType, const std::string& first,
                                       const std::string& second, std::uint64_t size,
                                       const unsigned char* data);

    /// Queues the news that a remote device is online. The outcome for the office service comes as
    /// NotifyStatus with kind 2. For the PC and phone services only a failure is reported, with the
    /// same kind and value false.
    /// @param svcType  0 to 3; 3 means the PC service, then the office service.
    /// @param first    The name of the group, not empty.
    /// @param second   The id of the device, not empty.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int RemoteDeviceOnline(ServiceType svcType, const std::string& first,
                                        const std::string& second);

    /// Queues the news that the local device goes offline, and why. The outcome for the office
    /// service comes as NotifyStatus with kind 3. For the PC and phone services only a failure is
    /// reported, with the same kind and value false.
    /// @param svcType  0 to 3; 3 means the PC service, then the office service.
    /// @param first    The name of the group, not empty.
    /// @param second   The id of the device, not empty.
    /// @param trigger  Why. It goes to the PC or phone service unchanged.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int LocalDeviceOffline(ServiceType svcType, const std::string& first,
                                        const std::string& second, TriggerType trigger);

    /// Queues the news that a remote device goes offline, and why. A failure of the PC or phone
    /// service comes as NotifyStatus with kind 3 and value false; for the office service no
    /// notification comes.
    /// @param svcType  0 to 3; 3 means the PC service, then the office service.
    /// @param first    The name of the group, not empty.
    /// @param second   The id of the device, not empty.
    /// @param trigger  Why. It goes to the PC or phone service unchanged.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int RemoteDeviceOffline(ServiceType svcType, const std::string& first,
                                         const std::string& second, TriggerType trigger);

    /// Queues the news, for the PC service, that this device has a new name. No notification
    /// reports the outcome.
    /// @param name  The new name, not empty.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int DeviceNameChanged(const std::string& name);

    /// Queues a message for the PC service. Despite the operation's name, the host sends here: it
    /// passes on what it has received from a remote device. No notification reports the outcome.
    /// @param msgType  Goes to the service unchanged.
    /// @param msgLen   Goes to the service unchanged. The library never compares it with
    ///                 message.size().
    /// @param message  Any bytes; it may be empty.
    /// @return Always 0.
    PLENXSDK_API int RecvRemoteMessage(PLENXMessageType msgType, unsigned int msgLen,
                                       const std::string& message);

    /// Asks the companion library, on the caller's thread, for the folder of a device of a group.
    /// It waits while the office service is being started, stopped or told of a device.
    /// @param first   The name of the group.
    /// @param second  The id of the device.
    /// @param dir     In: a relative name. Out: the folder, a backslash, and that name, whatever
    ///                the result is.
    /// @return The companion library's code; 0 before Init.
    PLENXSDK_API int GetOfficeDir(const std::string& first, const std::string& second,
                                  std::string& dir);

    /// Adds an observer, unless it is registered already. It waits for a notification that is being
    /// delivered. Register before Init, or the observer misses early notifications: the library
    /// keeps none for later.
    /// @param observer  The library does not own it. Null is ignored.
    PLENXSDK_API void RegisterPLENXServiceObserver(PLENXServiceObserver* observer);

    /// Removes an observer; an unknown one is no error. It waits for a notification that is being
    /// delivered: once it has returned, the observer may be deleted.
    /// @param observer  As it was registered.
    PLENXSDK_API void UnregisterPLENXServiceObserver(PLENXServiceObserver* observer);

    PLENXManager(const PLENXManager&) = delete;
    PLENXManager& operator=(const PLENXManager&) = delete;

private:
    friend class ModuleObject<PLENXManager>;
    friend class PLENXManagerInner;
    friend class RpcManager;

    PLENXManager();
    ~PLENXManager();
    void OnProcessEnd() noexcept;

    // Fan-out. Each passes its arguments to every observer, on the calling thread.
    void SendLocalMessage(PLENXMessageType msgType, unsigned int msgLen,
                          const std::string& message);
    void NotifyConnect(ServiceType svcType, const std::string& first);
    void NotifyDisconnect(ServiceType svcType, const std::string& first);
    void NotifyReconnect(ServiceType svcType, const std::string& first);
    void QueryLinkStatus(ServiceType svcType, const std::string& first, unsigned int linkType,
                         std::int32_t& linkStatus);
    int NotifyStatus(ServiceType svcType, const std::string& first, unsigned int sttsType,
                     bool value);
    void NotifyError(int errCode);
    void NotifyDiskName(const std::string& diskName);

    // Jobs, which run on the worker.
    void StartFunc(ServiceType svcType, const std::string& first, const std::string& second);
    void StopFunc(ServiceType svcType, const std::string& first);
    void LocalDeviceOnlineFunc(ServiceType svcType, const std::string& first,
                               const std::string& second,
                               const std::shared_ptr<const unsigned char[]>& block, int size);
    void RemoteDeviceOnlineFunc(ServiceType svcType, const std::string& first,
                                const std::string& second);
    void LocalDeviceOfflineFunc(ServiceType svcType, const std::string& first,
                                const std::string& second, TriggerType trigger);
    void RemoteDeviceOfflineFunc(ServiceType svcType, const std::string& first,
                                 const std::string& second, TriggerType trigger);
    void DeviceNameChangedFunc(const std::string& name);
    void RecvRemoteMessageFunc(PLENXMessageType msgType, unsigned int msgLen,
                               const std::string& message);

    // The office service's share of the jobs.
    void StartOffice(const std::string& first);
    void StopOffice(const std::string& first);
    void OfficeLocalDeviceOnline(const std::string& first, const std::string& second,
                                 const unsigned char* block, int size);
    void OfficeRemoteDeviceOnline(const std::string& first, const std::string& second);
    void OfficeLocalDeviceOffline(const std::string& first, const std::string& second);
    void OfficeRemoteDeviceOffline(const std::string& first, const std::string& second);
    void MakeFileManager(const std::string& first, const std::string& second,
                         const std::string& third, bool flag);
    void UninstallOffice();
    void MarkStarted(ServiceType svcType);
    void MarkStopped(ServiceType svcType);

    std::vector<PLENXServiceObserver*> observers;  // ascending, each once
    std::mutex observerMutex;                      // held for the whole of every fan-out
    std::uint32_t startedMask = 0;
    std::shared_ptr<ThreadPool> threadPool;
    std::mutex poolMutex;  // guards threadPool, every queueing, and the four arguments of Init
    std::string first;
    std::string second;
    std::string third;
    bool flag = false;
    std::mutex fileManagerMutex;  // before observerMutex; guards fileManager and calls into it
    std::shared_ptr<DistributedFileManager> fileManager;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_PLENX_MANAGER_H
