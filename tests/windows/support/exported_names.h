// The names under which plenxsdk.dll exports the operations of PLENXManager, and imports some of
// its companions. Each family of compilers writes the signature of an operation into its name in a
// way of its own.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_EXPORTED_NAMES_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_EXPORTED_NAMES_H

namespace PlenxTest::ExportedNames {

// PLENX_EXPORTED(operation, MinGW's signature, Visual C++'s signature)
#ifdef _MSC_VER
#define PLENX_STRING "V?$basic_string@DU?$char_traits@D@std@@V?$allocator@D@2@@std@@"
#define PLENX_EXPORTED(operation, mingw, visualCpp) \
    "?" operation "@PLENXManager@DistributedFs@@" visualCpp
#else
#define PLENX_STRING "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
#define PLENX_EXPORTED(operation, mingw, visualCpp) "_ZN13DistributedFs12PLENXManager" mingw
#endif

inline constexpr char kGetInstance[] =
    PLENX_EXPORTED("GetInstance", "11GetInstanceEv", "SAAEAV12@XZ");
inline constexpr char kInit[] =
    PLENX_EXPORTED("Init", "4InitERK" PLENX_STRING "S8_S6_b", "QEAAXAEB" PLENX_STRING "0V34@_N@Z");
inline constexpr char kDestroy[] = PLENX_EXPORTED("Destroy", "7DestroyEv", "QEAAXXZ");
inline constexpr char kGetInt64Config[] =
    PLENX_EXPORTED("GetInt64Config", "14GetInt64ConfigENS_11ServiceTypeENS_10ConfigTypeE",
                   "QEAA_JW4ServiceType@2@W4ConfigType@2@@Z");
inline constexpr char kGetStringConfig[] =
    PLENX_EXPORTED("GetStringConfig", "15GetStringConfigB5cxx11ENS_11ServiceTypeENS_10ConfigTypeE",
                   "QEAA?A" PLENX_STRING "W4ServiceType@2@W4ConfigType@2@@Z");
inline constexpr char kSetStringConfig[] =
    PLENX_EXPORTED("SetConfig", "9SetConfigENS_11ServiceTypeENS_10ConfigTypeE" PLENX_STRING,
                   "QEAAXW4ServiceType@2@W4ConfigType@2@" PLENX_STRING "@Z");
inline constexpr char kSetInt64Config[] =
    PLENX_EXPORTED("SetConfig", "9SetConfigENS_11ServiceTypeENS_10ConfigTypeEx",
                   "QEAAXW4ServiceType@2@W4ConfigType@2@_J@Z");
inline constexpr char kStart[] =
    PLENX_EXPORTED("Start", "5StartENS_11ServiceTypeERK" PLENX_STRING "S9_",
                   "QEAAHW4ServiceType@2@AEB" PLENX_STRING "1@Z");
inline constexpr char kStop[] = PLENX_EXPORTED("Stop", "4StopENS_11ServiceTypeERK" PLENX_STRING,
                                               "QEAAHW4ServiceType@2@AEB" PLENX_STRING "@Z");
inline constexpr char kLocalDeviceOnline[] = PLENX_EXPORTED(
    "LocalDeviceOnline", "17LocalDeviceOnlineENS_11ServiceTypeERK" PLENX_STRING "S9_yPKh",
    "QEAAHW4ServiceType@2@AEB" PLENX_STRING "1_KPEBE@Z");
inline constexpr char kRemoteDeviceOnline[] = PLENX_EXPORTED(
    "RemoteDeviceOnline", "18RemoteDeviceOnlineENS_11ServiceTypeERK" PLENX_STRING "S9_",
    "QEAAHW4ServiceType@2@AEB" PLENX_STRING "1@Z");
inline constexpr char kLocalDeviceOffline[] =
    PLENX_EXPORTED("LocalDeviceOffline",
                   "18LocalDeviceOfflineENS_11ServiceTypeERK" PLENX_STRING "S9_NS_11TriggerTypeE",
                   "QEAAHW4ServiceType@2@AEB" PLENX_STRING "1W4TriggerType@2@@Z");
inline constexpr char kRemoteDeviceOffline[] =
    PLENX_EXPORTED("RemoteDeviceOffline",
                   "19RemoteDeviceOfflineENS_11ServiceTypeERK" PLENX_STRING "S9_NS_11TriggerTypeE",
                   "QEAAHW4ServiceType@2@AEB" PLENX_STRING "1W4TriggerType@2@@Z");
inline constexpr char kDeviceNameChanged[] = PLENX_EXPORTED(
    "DeviceNameChanged", "17DeviceNameChangedERK" PLENX_STRING, "QEAAHAEB" PLENX_STRING "@Z");
inline constexpr char kRecvRemoteMessage[] = PLENX_EXPORTED(
    "RecvRemoteMessage", "17RecvRemoteMessageENS_16PLENXMessageTypeEjRK" PLENX_STRING,
    "QEAAHW4PLENXMessageType@2@IAEB" PLENX_STRING "@Z");
inline constexpr char kGetOfficeDir[] =
    PLENX_EXPORTED("GetOfficeDir", "12GetOfficeDirERK" PLENX_STRING "S8_RS6_",
                   "QEAAHAEB" PLENX_STRING "0AEAV34@@Z");
inline constexpr char kRegisterObserver[] = PLENX_EXPORTED(
    "RegisterPLENXServiceObserver", "28RegisterPLENXServiceObserverEPNS_20PLENXServiceObserverE",
    "QEAAXPEAVPLENXServiceObserver@2@@Z");
inline constexpr char kUnregisterObserver[] =
    PLENX_EXPORTED("UnregisterPLENXServiceObserver",
                   "30UnregisterPLENXServiceObserverEPNS_20PLENXServiceObserverE",
                   "QEAAXPEAVPLENXServiceObserver@2@@Z");

#undef PLENX_EXPORTED
#undef PLENX_STRING

// The library imports these from its companions.
#ifdef _MSC_VER
inline constexpr char kLog[] =
    "?Log@OvLogger@@QEAAXW4LOG_MESSAGE_LEVEL@@AEBV?$basic_ostringstream@_WU?$char_traits@_W@std@@"
    "V?$allocator@_W@2@@std@@@Z";
inline constexpr char kStartOfFileManager[] = "?Start@DistributedFileManager@@QEAAHXZ";
#else
inline constexpr char kLog[] =
    "_ZN8OvLogger3LogE17LOG_MESSAGE_LEVELRKNSt7__cxx1119basic_ostringstreamIwSt11char_traitsIwE"
    "SaIwEEE";
inline constexpr char kStartOfFileManager[] = "_ZN22DistributedFileManager5StartEv";
#endif

}  // namespace PlenxTest::ExportedNames

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_EXPORTED_NAMES_H
