/// @file
/// The whole interface of plenxsdk.dll, which runs a distributed file system on this PC.
///
/// There is one singleton, PLENXManager, and one observer class, PLENXServiceObserver, that the
/// host implements. A host registers its observer, calls Init once, then Start, and hears the
/// outcome through the observer.
///
/// **How it works.** Every operation that changes something checks its arguments, queues a job and
/// returns at once. One private worker runs the jobs one at a time, in the order of the calls. The
/// outcome of a job comes back through the observers. A job that has failed is not tried again, and
/// one that is queued cannot be taken back.
///
/// **Threads.** All operations of PLENXManager may be called from any thread at any time. Observers
/// are called on the worker and on threads of the RPC runtime, never two at once, and never on a
/// thread of the host. PLENXServiceObserver says what an observer may do.
///
/// **What 0 means.** 0 means that the call was taken: its job is queued, or, before Init, dropped
/// with a line in the log. It never means that the work succeeded.
///
/// **When the outcome comes.** Outcomes of jobs come in the order of the calls. There is no upper
/// limit to the time: a job waits for the service, and later jobs wait behind it, so a host sets
/// deadlines of its own. What a service reports by itself comes in between, in no fixed order: it
/// may overtake the outcome of the call that caused it. Each operation says which outcome its job
/// has; where it names none, a failure shows in the log only.
///
/// **Strings.** A std::string holds UTF-8. Strings and data that the host passes are copied before
/// the call returns; what an observer gets is valid during the notification only. Group names,
/// device ids and messages are not checked, have no limit of their own (a request of 2 GiB fails as
/// a whole), may hold a NUL, and reach the service as they are. What a service sends is the
/// service's own and need not be valid UTF-8. The install and data folders of Init are stricter.
///
/// **Life.** The instance exists from the moment the DLL is loaded. Init keeps the DLL loaded until
/// the process ends; FreeLibrary then has no effect. There is nothing to close or release.
///
/// **The end of the process.** When the process ends in an orderly way (main returns, exit,
/// ExitProcess), the PC and phone services are stopped and uninstalled and the working folder is
/// removed, on the thread that ends the process. A service that accepts the stop and then makes no
/// progress for 2 s is ended by force. A service that refuses the stop, because it is still
/// starting or hangs in a stop, is left alone. The driver and the office service stay registered.
///
/// Queued jobs do not run any more, a running job is cut off, and no observer is called any more.
/// All this holds from the moment at which the system has ended the other threads. Before that, for
/// example while static objects of the host are destroyed, observers are still called, so
/// unregister them before main returns.
///
/// After a crash or TerminateProcess everything stays as it is. The next Init takes over what was
/// left; a service that still hangs in its stop cannot be started until its process is ended.
///
/// **Exceptions.** No operation throws because of its arguments. std::system_error, std::bad_alloc
/// and exceptions of the companion library may pass through. An error inside a job never reaches
/// the caller.
///
/// **Toolchain.** C++ classes and std::string cross the DLL's border. Host and library must be
/// built by the same compiler family and share one C++ runtime, which is why that runtime is
/// shipped as a DLL beside this one.

#ifndef PLENXSDK_PLENX_MANAGER_H
#define PLENXSDK_PLENX_MANAGER_H

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

/// The service that an operation addresses. Any other 32-bit value is accepted by every
/// operation; it is logged and otherwise ignored, but a Stop of it may still bring the
/// signal of type 3 (see kStatusStop).
enum ServiceType : std::uint32_t {
    kOfficeService = 0,   ///< Driven through the companion library.
    kPcService = 1,       ///< The Windows service "PlenxPcSvc".
    kPhoneService = 2,    ///< The Windows service "PlenxPhoneSvc".
    kCombinedService = 3  ///< Start, Stop, RemoteDeviceOnline and the two offline
                          ///< operations: PC, then office. SetConfig: PC, then phone.
                          ///< LocalDeviceOnline: the office only; see there.
};

/// The key of a configuration value. The library hands keys on to the services
/// without interpreting them; these are the keys in use.
enum ConfigType : std::uint32_t {
    kIntegerConfig0 = 0,          ///< Integer setting, 0 by default.
    kLocaleConfig = 1,            ///< String setting, "en_US" by default.
    kIntegerConfig2 = 2,          ///< Integer setting, 0 by default.
    kServiceNotRunningConfig = 5  ///< Only GetInt64Config reads it: 1 while the service
                                  ///< is not running, else 0.
};

/// The reason why a device goes offline. Any 32-bit value goes to the service unchanged.
enum TriggerType : std::int32_t {
    kDefaultTrigger = 0  ///< No particular reason.
};

/// The type of a message exchanged with the services. Any 32-bit value is passed on
/// unchanged in both directions.
enum PLENXMessageType : std::int32_t {
    kDefaultMessage = 0  ///< No particular type.
};

/// The status kinds that the library itself raises through NotifyStatus. The
/// services may send these kinds too, and further ones.
enum StatusKind : std::uint32_t {
    kStatusStart = 0,         ///< A start has ended; value says whether it succeeded.
    kStatusStop = 1,          ///< A stop has ended. Office: value says whether it
                              ///< succeeded. PC and phone: value is always false.
                              ///< Service type 3 with value true: no mark of a start
                              ///< is left. It follows each stop, of any type, unless
                              ///< a start of type 0 stands that no stop of type 0 or
                              ///< 3 has followed, or a start of type 3 that no stop
                              ///< of type 3 has followed. It does not tell whether a
                              ///< PC or phone service still runs.
    kStatusDeviceOnline = 2,  ///< Office: a remote device came online, with its
                              ///< outcome. PC and phone: a device could not be
                              ///< brought online; value is false.
    kStatusDeviceOffline = 3  ///< Office: the local device went offline, with its
                              ///< outcome. PC and phone: a device could not be
                              ///< taken offline; value is false.
};

/// Results of the PLENXManager operations that return an int.
enum PLENXResult : int {
    kAccepted = 0,          ///< Queued, or dropped before Init (logged only). It does
                            ///< not mean that the work succeeded.
    kInvalidParameter = 26  ///< A required string is empty; nothing was queued.
};

/// Receives the notifications of the services and of the library.
///
/// The host derives from this class and registers the object; the library never
/// owns or deletes it. Keep it alive until UnregisterPLENXServiceObserver has
/// returned; after that no call to it is running or will come.
///
/// **Where and when.** Calls come on the library's worker and on threads of the RPC runtime, to one
/// observer after the other, in an order that a host cannot choose. They never overlap: while one
/// notification runs, every other one waits. A slow observer therefore delays all outcomes, and the
/// services that wait for their answer. Copy the values that you need, hand them to a thread of
/// your own, and return.
///
/// **What an observer may call.** From inside a notification do not call
/// RegisterPLENXServiceObserver, UnregisterPLENXServiceObserver, GetOfficeDir, Init or Destroy, and
/// do not wait for another thread that is calling one of them. They would wait for ever for a lock
/// that is held while the notification runs. So an observer can never unregister itself from inside
/// a notification. Every other operation is allowed; those that queue a job return at once. But do
/// not wait there for the outcome of a job, because that is a notification too and cannot come.
///
/// **Results.** Each notification returns 0 when the observer has handled it. The library logs any
/// other value as an error code, which has no other effect; it calls the other observers all the
/// same.
///
/// **Exceptions.** Do not throw. An exception skips the observers that follow. On an RPC thread the
/// service gets an error as the result of its call; on the worker the rest of the job is lost.
///
/// **Trust.** Any local process that reaches the endpoint "Manager" can cause every one of these
/// notifications, even those that the library itself raises. Treat them as hints, and ask
/// GetInt64Config whether a service runs.
class PLENXServiceObserver {
public:
    virtual ~PLENXServiceObserver() = default;

    /// A service sends a message to this device.
    /// @param msgType  The sender's own number.
    /// @param msgLen   The sender's own number. Never use it as the length of message; use
    ///                 message.size().
    /// @param message  Any bytes.
    /// @return 0 when handled.
    virtual int SendLocalMessage(PLENXMessageType msgType, unsigned int msgLen,
                                 const std::string& message) = 0;
    /// A group of a service is connected.
    /// @param svcType  The number that the service put into the group's name; it is not checked.
    /// @param first    The group's name, as it was given to Start.
    /// @return 0 when handled.
    virtual int NotifyConnect(ServiceType svcType, const std::string& first) = 0;
    /// A group of a service has lost its connection.
    /// @param svcType  As for NotifyConnect.
    /// @param first    The group's name.
    /// @return 0 when handled.
    virtual int NotifyDisconnect(ServiceType svcType, const std::string& first) = 0;
    /// A group of a service is connected again.
    /// @param svcType  As for NotifyConnect.
    /// @param first    The group's name.
    /// @return 0 when handled.
    virtual int NotifyReconnect(ServiceType svcType, const std::string& first) = 0;
    /// A service asks for the status of a link of a group, and waits for the answer.
    /// @param svcType     As for NotifyConnect.
    /// @param first       The group's name.
    /// @param linkType    The service's own number for the link.
    /// @param linkStatus  Holds 0, or the value that an earlier observer has written. The value
    /// that
    ///                    the last observer leaves goes back to the service, whatever this returns.
    /// @return 0 when handled.
    virtual int QueryLinkStatus(ServiceType svcType, const std::string& first,
                                unsigned int linkType, std::int32_t& linkStatus) = 0;
    /// Something started, stopped, came online or went offline: the outcome of a job, or what a
    /// service reports by itself.
    /// @param svcType   The service; 3 with kind 1 and true (see kStatusStop), or with kind 2 and
    ///                  false after LocalDeviceOnline of type 3.
    /// @param first     The group's name, as it was given to the operation.
    /// @param sttsType  A StatusKind, or a kind of the service's own.
    /// @param value     Has the meaning that StatusKind gives for the kind.
    /// @return 0 when handled.
    virtual int NotifyStatus(ServiceType svcType, const std::string& first, unsigned int sttsType,
                             bool value) = 0;
    /// A service reports an error of its own. The library itself never calls this.
    /// @param errCode  The service's own code, which is not one of the library's.
    /// @return 0 when handled.
    virtual int NotifyError(int errCode) = 0;
    /// A service tells the name under which its disk is mounted.
    /// @param diskName  The bytes are the service's own; they need not be valid UTF-8.
    /// @return 0 when handled.
    virtual int NotifyDiskName(const std::string& diskName) = 0;
};

/// The library: one instance per process, from which the host asks everything.
///
/// Operations that return an int return a PLENXResult unless they say otherwise.
/// Before Init every queueing operation is checked, logged, dropped, and answered
/// with 0; configuration set before Init is lost silently.
///
/// In all operations on groups and devices, svcType is the service, first is the name of the group,
/// and second is the id of the device. A service sees the group's name followed by '_' and its own
/// number, for example `home_1`.
class PLENXManager {
public:
    /// The process-wide instance. It may be used as soon as the DLL is loaded.
    /// @return Always the same object; never delete it.
    PLENXSDK_API static PLENXManager& GetInstance();

    /// Makes the library ready: makes the companion object on the caller's thread, then
    /// queues the service side (driver files, working folder, services, driver, icon
    /// files, RPC endpoint). Returns before any of that is done. Do not call it from
    /// DllMain.
    ///
    /// No notification says that the job is done. Other operations may be called at once, because
    /// they wait behind it in the queue. GetInt64Config waits while the job is running, but not for
    /// its beginning: right after Init it may give 0 at once.
    ///
    /// Once the service side exists, a later call queues a job that finds everything done. The
    /// process must have the right to control services (elevated), first and second must be valid
    /// UTF-8, and second must be a folder that exists. Most failures of the job are logged, but not
    /// folders that are not valid UTF-8, a NUL in a folder, or an empty data folder. Without the
    /// service side every Start of type 1 or 2 fails; without the driver, the icons or the endpoint
    /// they succeed.
    ///
    /// @param first   Install folder, without a trailing backslash or a NUL: it holds
    ///                plenxservice.exe, dokan1.sys, dokan1.dll, dokanfuse1.dll and the icon
    ///                folders under `res\plenx\icon`. It and its "upgrade" folder must be
    ///                writable by administrators only, and its path should be ASCII and free of
    ///                blanks (service paths are registered unquoted).
    /// @param second  Data folder, without a trailing backslash or a NUL, not empty. Its
    ///                sub-folder "plenx", and "plenx0" to "plenx99" as needed, are DELETED with
    ///                everything in them.
    /// @param third   Goes to the companion library only.
    /// @param flag    Goes to the companion library only.
    PLENXSDK_API void Init(const std::string& first, const std::string& second, std::string third,
                           bool flag);

    /// Asks the companion library to uninstall its packages (on the caller's thread) and queues the
    /// initialisation once more, which finds everything done if Init succeeded. It releases
    /// nothing, and the library keeps working. A host need not call it before it ends.
    PLENXSDK_API void Destroy();

    /// Reads an integer setting on the caller's thread. Only key 5 has an answer of
    /// its own: 1 while the service is not running, else 0 (service type 3 asks
    /// about the driver). A service that is starting or stopping counts as running; one that cannot
    /// be asked does not. Waits while the first Init is at work.
    /// @param svcType  Type 1, 2 or 3.
    /// @param cfgType  Key 5.
    /// @return 0 for every other key, an invalid service type, and for key 5 as long as the job of
    ///         Init has not made the service side: before Init, and right after it, when the worker
    ///         has not begun yet. 0 means "running" only afterwards.
    PLENXSDK_API std::int64_t GetInt64Config(ServiceType svcType, ConfigType cfgType);

    /// String settings cannot be read back, so this has no value to give. It waits while the first
    /// Init is at work.
    /// @param svcType  1 to 3; any other is logged as an error and does not wait.
    /// @param cfgType  Makes no difference.
    /// @return Always the empty string.
    PLENXSDK_API std::string GetStringConfig(ServiceType svcType, ConfigType cfgType);

    /// Queues a change of a string setting. The service gets the value at its next Start, even if
    /// that is called right after this. The value stays until the process ends.
    /// @param svcType   Service 1 or 2, or both (3). The office service has no settings.
    /// @param cfgType   Keys that the service does not have are ignored.
    /// @param cfgValue  Handed to the service as it is.
    PLENXSDK_API void SetConfig(ServiceType svcType, ConfigType cfgType, std::string cfgValue);
    /// Queues a change of an integer setting, in the same way.
    /// @param svcType   Service 1 or 2, or both (3). The office service has no settings.
    /// @param cfgType   Keys that the service does not have are ignored.
    /// @param cfgValue  Handed to the service as it is.
    PLENXSDK_API void SetConfig(ServiceType svcType, ConfigType cfgType, std::int64_t cfgValue);

    /// Queues the start of a service and the creation of a group in it. The outcome
    /// comes as NotifyStatus with kind 0; with kCombinedService there are two, of the PC and of the
    /// office service. A service that runs already is not started again; it gets its settings and
    /// the group.
    ///
    /// The job waits as long as the service asks for until the service reports running. Then it
    /// waits until the service answers a ping: up to about 5 s of pauses, plus the time of the
    /// pings themselves, which has no limit.
    /// @param svcType  Service 0 to 3.
    /// @param first    Group name, not empty.
    /// @param second   Group argument, not empty; handed to the service as it is. The office
    ///                 service does not get it.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int Start(ServiceType svcType, const std::string& first,
                           const std::string& second);

    /// Queues the deletion of the group and the stop of its service, whatever other groups the
    /// service has. The outcome comes as NotifyStatus with kind 1, which for the PC and phone
    /// services always says false. Another notification, of type 3 with value true, follows when no
    /// start of type 0 or 3 is left (see kStatusStop). A service that makes no progress for 2 s
    /// while it stops is ended.
    /// @param svcType  Service 0 to 3.
    /// @param first    Group name, not empty.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int Stop(ServiceType svcType, const std::string& first);

    /// Queues the news that the local device is online. With kCombinedService only the
    /// office service hears of it, and NotifyStatus(3, first, 2, false) reports the rest as failed,
    /// so call it for kPcService as well. A failure at the PC or phone service comes as
    /// NotifyStatus with kind 2. Success brings no notification, and the office service never
    /// brings one.
    /// @param svcType  Service 0 to 3.
    /// @param first    Group name, not empty.
    /// @param second   Device id, not empty.
    /// @param size     Length of data in bytes; only its low 32 bits count. From 2^31 the request
    ///                 to the PC or phone service fails and the office service gets no bytes;
    ///                 otherwise the office service gets at most 16.
    /// @param data     Copied before the call returns; null means no bytes.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int LocalDeviceOnline(ServiceType svcType, const std::string& first,
                                       const std::string& second, std::uint64_t size,
                                       const unsigned char* data);

    /// Queues the news that a remote device is online. The outcome of the office service comes as
    /// NotifyStatus with kind 2, and so does a failure of the PC and phone services.
    /// @param svcType  Service 0 to 3.
    /// @param first    Group name, not empty.
    /// @param second   Device id, not empty.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int RemoteDeviceOnline(ServiceType svcType, const std::string& first,
                                        const std::string& second);

    /// Queues the news that the local device goes offline, and why. The outcome of the office
    /// service comes as NotifyStatus with kind 3, and so does a failure of the PC and phone
    /// services.
    /// @param svcType  Service 0 to 3.
    /// @param first    Group name, not empty.
    /// @param second   Device id, not empty.
    /// @param trigger  Handed to the PC or phone service as it is.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int LocalDeviceOffline(ServiceType svcType, const std::string& first,
                                        const std::string& second, TriggerType trigger);

    /// Queues the news that a remote device goes offline, and why. A failure at the PC or phone
    /// service comes as NotifyStatus with kind 3; the office service brings no notification.
    /// @param svcType  Service 0 to 3.
    /// @param first    Group name, not empty.
    /// @param second   Device id, not empty.
    /// @param trigger  Handed to the PC or phone service as it is.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int RemoteDeviceOffline(ServiceType svcType, const std::string& first,
                                         const std::string& second, TriggerType trigger);

    /// Queues the device's new name for the PC service. No notification tells the outcome.
    /// @param name  Not empty.
    /// @return kAccepted or kInvalidParameter.
    PLENXSDK_API int DeviceNameChanged(const std::string& name);

    /// Queues a message from a remote device for the PC service. No notification tells the outcome.
    /// @param msgType  Handed on as it is.
    /// @param msgLen   Handed on as it is, never compared with message.size().
    /// @param message  Any bytes; may be empty.
    /// @return Always 0.
    PLENXSDK_API int RecvRemoteMessage(PLENXMessageType msgType, unsigned int msgLen,
                                       const std::string& message);

    /// Asks the companion library, on the caller's thread, for the folder of a
    /// device of a group. Waits while the office service is being started, stopped or told of a
    /// device.
    /// @param first   Group name.
    /// @param second  Device id.
    /// @param dir     In: a relative name. Out: the folder, a backslash, and that name, whatever
    ///                the result.
    /// @return The companion library's code; 0 before Init.
    PLENXSDK_API int GetOfficeDir(const std::string& first, const std::string& second,
                                  std::string& dir);

    /// Adds an observer; one that is registered already is not added again. This waits for a
    /// notification that is being delivered. Register before Init, because notifications are not
    /// kept for later.
    /// @param observer  Not owned. Null is ignored.
    PLENXSDK_API void RegisterPLENXServiceObserver(PLENXServiceObserver* observer);

    /// Removes an observer; an unknown one is not an error. This waits for a notification that is
    /// being delivered, so the observer may be deleted once it has returned.
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
