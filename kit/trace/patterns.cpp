#include "trace/patterns.h"

#include <iterator>
#include <unordered_map>

namespace PlenxTrace {
namespace {

constexpr Lane kHost = Lane::kHost;
constexpr Lane kFacade = Lane::kFacade;
constexpr Lane kWorker = Lane::kWorker;
constexpr Lane kEngine = Lane::kEngine;
constexpr Lane kServices = Lane::kServices;
constexpr Lane kObservers = Lane::kObservers;
constexpr Lane kNowhere = Lane::kNoLane;

// {svc} is the number of a service, which the page shows as its name. {name} is the name of the
// Windows service. {code} is a result code. The rows of one function are tried in their order.
// clang-format off
constexpr Pattern kLibraryPatterns[] = {
    // Calls of the host.
    {"PLENXManager::RegisterPLENXServiceObserver", "plenx manager register observer invoked", Kind::kCall, kHost, kFacade, "register an observer", "RegisterPLENXServiceObserver"},
    {"PLENXManager::RegisterPLENXServiceObserver", "plenx manager register observer {text}", Kind::kDetail, kFacade, kFacade, "register an observer: {text}"},
    {"PLENXManager::UnregisterPLENXServiceObserver", "plenx manager unregister observer invoked", Kind::kCall, kHost, kFacade, "unregister an observer", "UnregisterPLENXServiceObserver"},
    {"PLENXManager::UnregisterPLENXServiceObserver", "plenx manager unregister observer {text}", Kind::kDetail, kFacade, kFacade, "unregister an observer: {text}"},
    {"PLENXManager::Init", "plenx manager Init", Kind::kCall, kHost, kFacade, "Init", "Init"},
    {"PLENXManager::Init", "plenx manager plenx manager inner init is pushed into thread pool", Kind::kQueued, kFacade, kFacade, "Init is queued", "Init"},
    {"PLENXManager::Destroy", "plenx manager destroy", Kind::kCall, kHost, kFacade, "Destroy", "Destroy"},
    {"PLENXManager::Destroy", "plenx manager plenx manager inner destroy is pushed into thread pool", Kind::kQueued, kFacade, kFacade, "Destroy is queued", "Destroy"},
    {"PLENXManager::Start", "plenx manager start service ({svc}) is pushed into thread pool", Kind::kCall, kHost, kFacade, "Start {svc}", "Start"},
    {"PLENXManager::Start", "plenx manager start invalid parameter", Kind::kRefusal, kHost, kFacade, "Start refused: 26", "Start"},
    {"PLENXManager::Start", "thread pool is released", Kind::kRefusal, kHost, kFacade, "Start before Init", "Start"},
    {"PLENXManager::Stop", "plenx manager stop service ({svc}) is pushed into thread pool", Kind::kCall, kHost, kFacade, "Stop {svc}", "Stop"},
    {"PLENXManager::Stop", "plenx manager stop invalid parameter", Kind::kRefusal, kHost, kFacade, "Stop refused: 26", "Stop"},
    {"PLENXManager::Stop", "thread pool is released", Kind::kRefusal, kHost, kFacade, "Stop before Init", "Stop"},
    {"PLENXManager::LocalDeviceOnline", "plenx manager service ({svc}) local device online is pushed into thread pool", Kind::kCall, kHost, kFacade, "LocalDeviceOnline {svc}", "LocalDeviceOnline"},
    {"PLENXManager::LocalDeviceOnline", "plenx manager local device online invalid parameter", Kind::kRefusal, kHost, kFacade, "LocalDeviceOnline refused: 26", "LocalDeviceOnline"},
    {"PLENXManager::LocalDeviceOnline", "thread pool is released", Kind::kRefusal, kHost, kFacade, "LocalDeviceOnline before Init", "LocalDeviceOnline"},
    {"PLENXManager::RemoteDeviceOnline", "plenx manager service ({svc}) remote device online is pushed into thread pool", Kind::kCall, kHost, kFacade, "RemoteDeviceOnline {svc}", "RemoteDeviceOnline"},
    {"PLENXManager::RemoteDeviceOnline", "plenx manager remote device online invalid parameter", Kind::kRefusal, kHost, kFacade, "RemoteDeviceOnline refused: 26", "RemoteDeviceOnline"},
    {"PLENXManager::RemoteDeviceOnline", "thread pool is released", Kind::kRefusal, kHost, kFacade, "RemoteDeviceOnline before Init", "RemoteDeviceOnline"},
    {"PLENXManager::LocalDeviceOffline", "plenx manager service ({svc}) local device offline is pushed into thread pool", Kind::kCall, kHost, kFacade, "LocalDeviceOffline {svc}", "LocalDeviceOffline"},
    {"PLENXManager::LocalDeviceOffline", "plenx manager local device offline invalid parameter", Kind::kRefusal, kHost, kFacade, "LocalDeviceOffline refused: 26", "LocalDeviceOffline"},
    {"PLENXManager::LocalDeviceOffline", "thread pool is released", Kind::kRefusal, kHost, kFacade, "LocalDeviceOffline before Init", "LocalDeviceOffline"},
    {"PLENXManager::RemoteDeviceOffline", "plenx manager service ({svc}) remote device offline is pushed into thread pool", Kind::kCall, kHost, kFacade, "RemoteDeviceOffline {svc}", "RemoteDeviceOffline"},
    {"PLENXManager::RemoteDeviceOffline", "plenx manager remote device offline invalid parameter", Kind::kRefusal, kHost, kFacade, "RemoteDeviceOffline refused: 26", "RemoteDeviceOffline"},
    {"PLENXManager::RemoteDeviceOffline", "thread pool is released", Kind::kRefusal, kHost, kFacade, "RemoteDeviceOffline before Init", "RemoteDeviceOffline"},
    {"PLENXManager::SetConfig", "plenx manager ({svc}) set string config is pushed into thread pool", Kind::kCall, kHost, kFacade, "SetConfig {svc}, a text", "SetConfig"},
    {"PLENXManager::SetConfig", "plenx manager ({svc}) set int config is pushed into thread pool", Kind::kCall, kHost, kFacade, "SetConfig {svc}, a number", "SetConfig"},
    {"PLENXManager::SetConfig", "plenx manager set string config invalid service type svcType:{svc}", Kind::kRefusal, kHost, kFacade, "SetConfig: there is no {svc}", "SetConfig"},
    {"PLENXManager::SetConfig", "plenx manager set int config invalid service type svcType({svc})", Kind::kRefusal, kHost, kFacade, "SetConfig: there is no {svc}", "SetConfig"},
    {"PLENXManager::GetInt64Config", "plenx manager invalid service type svcType:{svc}", Kind::kRefusal, kHost, kFacade, "GetInt64Config: there is no {svc}", "GetInt64Config"},
    {"PLENXManagerInner::GetInt64Config", "plenx manager get config svcType:{svc} cfgType:{key} cfgValue:{value}", Kind::kCall, kHost, kEngine, "GetInt64Config {svc}: {key} is {value}", "GetInt64Config"},
    {"PLENXManager::GetStringConfig", "plenx manager invalid service type svcType:{svc}", Kind::kRefusal, kHost, kFacade, "GetStringConfig: there is no {svc}", "GetStringConfig"},
    {"PLENXManager::GetOfficeDir", "plenx manager get office dir is invoked", Kind::kCall, kHost, kFacade, "GetOfficeDir", "GetOfficeDir"},
    {"PLENXManager::DeviceNameChanged", "plenx manager device name changed is pushed into thread pool", Kind::kCall, kHost, kFacade, "DeviceNameChanged", "DeviceNameChanged"},
    {"PLENXManager::DeviceNameChanged", "plenx manager device name changed invalid parameter", Kind::kRefusal, kHost, kFacade, "DeviceNameChanged refused: 26", "DeviceNameChanged"},
    {"PLENXManager::DeviceNameChanged", "thread pool is released", Kind::kRefusal, kHost, kFacade, "DeviceNameChanged before Init", "DeviceNameChanged"},
    {"PLENXManager::RecvRemoteMessage", "plenx manager receive remote message is pushed into thread pool", Kind::kCall, kHost, kFacade, "RecvRemoteMessage", "RecvRemoteMessage"},
    {"PLENXManager::RecvRemoteMessage", "thread pool is released", Kind::kRefusal, kHost, kFacade, "RecvRemoteMessage before Init", "RecvRemoteMessage"},

    // The worker takes them from the queue. For Init and the settings, the facade's job writes no
    // line, so the engine's first line stands for it.
    {"PLENXManagerInner::Init", "service manager initialization", Kind::kJob, kFacade, kEngine, "Init runs: the services", "Init"},
    // Nothing depends on the icons: an installation without their folders works like any other.
    {"PLENXManagerInner::CreateFileIcon", "open file{text} error", Kind::kStep, kEngine, kEngine, "a folder stays without its icon: {text}", "", Mark::kUsual},
    {"PLENXManagerInner::Init", "rpc listen thread initialization", Kind::kStep, kEngine, kEngine, "listen for notifications"},
    {"PLENXManager::StartFunc", "plenx manager start service svcType({svc}) is invoked", Kind::kJob, kFacade, kWorker, "Start {svc} runs", "Start"},
    {"PLENXManager::StartFunc", "plenx manager start service invalid service type svcType({svc})", Kind::kStep, kWorker, kWorker, "Start: there is no {svc}"},
    {"PLENXManager::StopFunc", "plenx manager stop service svcType({svc}) is invoked", Kind::kJob, kFacade, kWorker, "Stop {svc} runs", "Stop"},
    {"PLENXManager::StopFunc", "plenx manager stop service invalid service type svcType({svc})", Kind::kStep, kWorker, kWorker, "Stop: there is no {svc}"},
    {"PLENXManager::LocalDeviceOnlineFunc", "plenx manager local device online svcType({svc}) is invoked", Kind::kJob, kFacade, kWorker, "LocalDeviceOnline {svc} runs", "LocalDeviceOnline"},
    {"PLENXManager::LocalDeviceOnlineFunc", "plenx manager invalid service type svcType({svc})", Kind::kStep, kWorker, kWorker, "LocalDeviceOnline: there is no {svc}"},
    {"PLENXManager::RemoteDeviceOnlineFunc", "plenx manager remote device online svcType({svc}) is invoked", Kind::kJob, kFacade, kWorker, "RemoteDeviceOnline {svc} runs", "RemoteDeviceOnline"},
    {"PLENXManager::RemoteDeviceOnlineFunc", "plenx manager remote device online invalid service type svcType({svc})", Kind::kStep, kWorker, kWorker, "RemoteDeviceOnline: there is no {svc}"},
    {"PLENXManager::LocalDeviceOfflineFunc", "plenx manager local device offline svcType({svc}) is invoked", Kind::kJob, kFacade, kWorker, "LocalDeviceOffline {svc} runs", "LocalDeviceOffline"},
    {"PLENXManager::LocalDeviceOfflineFunc", "plenx manager local device offline invalid service type svcType:{svc}", Kind::kStep, kWorker, kWorker, "LocalDeviceOffline: there is no {svc}"},
    {"PLENXManager::RemoteDeviceOfflineFunc", "plenx manager remote device offline svcType({svc}) is invoked", Kind::kJob, kFacade, kWorker, "RemoteDeviceOffline {svc} runs", "RemoteDeviceOffline"},
    {"PLENXManager::RemoteDeviceOfflineFunc", "plenx manager remote device offline invalid service type svcType:{svc}", Kind::kStep, kWorker, kWorker, "RemoteDeviceOffline: there is no {svc}"},
    {"PLENXManager::DeviceNameChangedFunc", "plenx manager device name changed is invoked", Kind::kJob, kFacade, kWorker, "DeviceNameChanged runs", "DeviceNameChanged"},
    {"PLENXManager::RecvRemoteMessageFunc", "plenx manager receive remote message is invoked", Kind::kJob, kFacade, kWorker, "RecvRemoteMessage runs", "RecvRemoteMessage"},
    {"PLENXManagerInner::SetStringConfig", "plenx manager set config svcType:{svc} cfgType:{key} cfgValue:{text}", Kind::kJob, kFacade, kEngine, "SetConfig {svc} runs: {key} = {text}", "SetConfig"},
    {"PLENXManagerInner::SetStringConfig", "plenx manager invalid service type svcType:{svc}", Kind::kStep, kWorker, kEngine, "SetConfig: there is no {svc}"},
    {"PLENXManagerInner::SetIntConfig", "plenx manager set config svcType:{svc} cfgType:{key} cfgValue:{value}", Kind::kJob, kFacade, kEngine, "SetConfig {svc} runs: {key} = {value}", "SetConfig"},
    {"PLENXManagerInner::SetIntConfig", "plenx manager invalid service type svcType:{svc}", Kind::kStep, kWorker, kEngine, "SetConfig: there is no {svc}"},

    // The engine at work.
    {"PLENXManagerInner::Start", "plenx manager start service {svc}", Kind::kStep, kWorker, kEngine, "start {svc}"},
    {"PLENXManagerInner::Start", "plenx manager start plenx service error {code}", Kind::kStep, kEngine, kEngine, "the service does not start: {code}"},
    {"PLENXManagerInner::Start", "plenx manager wait plenx service timeout ({ms} ms)", Kind::kStep, kEngine, kEngine, "no answer within {ms} ms"},
    {"PLENXManagerInner::Start", "plenx manager create group error {code}", Kind::kStep, kEngine, kEngine, "no group: {code}"},
    {"PLENXManagerInner::Stop", "plenx manager stop service {svc}", Kind::kStep, kWorker, kEngine, "stop {svc}"},
    {"PLENXManagerInner::Stop", "plenx manager delete group error {code}", Kind::kStep, kEngine, kEngine, "group not deleted: {code}"},
    {"PLENXManagerInner::Stop", "plenx manager stop plenx service error {code}", Kind::kStep, kEngine, kEngine, "the service does not stop: {code}"},
    {"PLENXManagerInner::LocalDeviceOnline", "plenx manager inner local device online svcType({svc})", Kind::kStep, kWorker, kEngine, "local device online {svc}"},
    {"PLENXManagerInner::LocalDeviceOnline", "plenx manager inner local device online error {code}", Kind::kStep, kEngine, kEngine, "local device not online: {code}"},
    {"PLENXManagerInner::LocalDeviceOnline", "plenx manager local device online success svcType({svc})", Kind::kStep, kEngine, kWorker, "local device is online"},
    {"PLENXManagerInner::RemoteDeviceOnline", "plenx manager inner remote device online service {svc}", Kind::kStep, kWorker, kEngine, "remote device online {svc}"},
    {"PLENXManagerInner::RemoteDeviceOnline", "plenx manager inner remote device online error {code}", Kind::kStep, kEngine, kEngine, "remote device not online: {code}"},
    {"PLENXManagerInner::RemoteDeviceOnline", "plenx manager inner remote device online success svcType({svc})", Kind::kStep, kEngine, kWorker, "remote device is online"},
    {"PLENXManagerInner::LocalDeviceOffline", "plenx manager inner local device offline service ({svc})", Kind::kStep, kWorker, kEngine, "local device offline {svc}"},
    {"PLENXManagerInner::LocalDeviceOffline", "plenx manager inner local device offline error {code}", Kind::kStep, kEngine, kEngine, "local device not offline: {code}"},
    {"PLENXManagerInner::LocalDeviceOffline", "plenx manager inner local device offline success svcType({svc})", Kind::kStep, kEngine, kWorker, "local device is offline"},
    {"PLENXManagerInner::RemoteDeviceOffline", "plenx manager inner remote device offline service ({svc})", Kind::kStep, kWorker, kEngine, "remote device offline {svc}"},
    {"PLENXManagerInner::RemoteDeviceOffline", "plenx manager inner remote device offline error {code}", Kind::kStep, kEngine, kEngine, "remote device not offline: {code}"},
    {"PLENXManagerInner::RemoteDeviceOffline", "plenx manager inner remote device offline success svcType({svc})", Kind::kStep, kEngine, kWorker, "remote device is offline"},
    {"PLENXManagerInner::RecvRemoteMessage", "plenx manager job receive remote message is invoked", Kind::kStep, kWorker, kEngine, "pass the message on"},
    {"ServiceManager::StartPlenxService", "start plenx service {name} success", Kind::kStep, kEngine, kEngine, "{name} is started"},
    {"ServiceManager::StartPlenxService", "start plenx service {name} error {code}", Kind::kStep, kEngine, kEngine, "{name} is not started: {code}"},
    {"ServiceManager::StopPlenxService", "stop plenx service {name} success", Kind::kStep, kEngine, kEngine, "{name} is stopped"},
    {"ServiceManager::StopPlenxService", "stop plenx service {name} error {code}", Kind::kStep, kEngine, kEngine, "{name} is not stopped: {code}"},
    {"ServiceManager::StartServiceByIndex", "start service successful", Kind::kStep, kEngine, kServices, "the service runs"},
    {"ServiceManager::StartServiceByIndex", "service is running", Kind::kStep, kEngine, kServices, "the service was running already"},
    {"ServiceManager::StartServiceByIndex", "wait service status error", Kind::kStep, kServices, kEngine, "the service does not reach running"},
    {"ServiceManager::StopServiceByIndex", "stop service successful", Kind::kStep, kEngine, kServices, "the service has stopped"},
    {"ServiceManager::StopServiceByIndex", "service has stopped", Kind::kStep, kEngine, kServices, "the service had stopped already"},
    {"ServiceManager::StopServiceByIndex", "force stop service", Kind::kStep, kEngine, kServices, "the service is ended by force", "", Mark::kError},
    {"ServiceManager::isServiceAlive", "service has stopped", Kind::kDetail, kEngine, kEngine, "the service does not run"},
    {"ServiceManager::CreateServiceByIndex", "create service success", Kind::kStep, kEngine, kServices, "a service is created"},
    {"ServiceManager::CreateServiceByIndex", "sevice has been created", Kind::kStep, kEngine, kServices, "the service was there already"},
    {"ServiceManager::DeleteServiceByIndex", "delete service successful", Kind::kStep, kEngine, kServices, "the service is deleted"},
    {"ServiceManager::DeleteServiceByIndex", "service {name} has been deleted", Kind::kStep, kEngine, kEngine, "{name} was not there"},
    {"ServiceManager::DeleteServiceByIndex", "service {name} is not stopped", Kind::kStep, kEngine, kEngine, "{name} has not stopped, so it stays"},
    {"ServiceManager::InstallService", "install service {name} success", Kind::kStep, kEngine, kEngine, "{name} is installed"},
    // This line comes at each first installation, because there is no service yet to stop. Where it
    // matters, the caller adds a line that says so.
    {"ServiceManager::StopServiceByIndex", "open service error 1060", Kind::kStep, kEngine, kEngine, "there is no such service", "", Mark::kUsual},
    {"ServiceManager::InstallService", "stop service {name} error 2", Kind::kStep, kEngine, kEngine, "{name} was not installed before", "", Mark::kUsual},
    {"ServiceManager::UninstallService", "uninstall service {name} success", Kind::kStep, kEngine, kEngine, "{name} is uninstalled"},
    {"ServiceManager::StartDokanService", "start dokan service success", Kind::kStep, kEngine, kEngine, "the driver runs"},
    {"ServiceManager::UpgradeDriver", "upgrade {text} successfully", Kind::kStep, kEngine, kEngine, "{text} is upgraded"},
    {"ServiceManager::UpgradeDriver", "driver {text} is used", Kind::kStep, kEngine, kEngine, "{text} is in use"},
    {"ServiceManager::UpgradeDriver", "move old {text} successfully", Kind::kStep, kEngine, kEngine, "the old {text} is moved away"},
    {"ServiceManager::MakeSourcePath", "mkdir src directory error and force remove src directory error", Kind::kStep, kEngine, kEngine, "a working folder is neither made nor removed"},
    {"ServiceManager::MakeServicePath", "src directory not exit", Kind::kStep, kEngine, kEngine, "the working folder is gone"},
    {"ServiceManager::~ServiceManager", "remove src path error", Kind::kStep, kEngine, kEngine, "the working folder stays"},
    // Before each start, the library ends the process of an earlier run. Right after a stop there
    // is often one, which has reported its stop and ends soon. A forced stop has its own line.
    {"KillServiceProcess", "kill service process 0", Kind::kStep, kEngine, kEngine, "nothing is left to end", "", Mark::kUsual},
    {"KillServiceProcess", "kill service process {process}", Kind::kStep, kEngine, kServices, "end process {process} if it is still there: usual right after a stop", "", Mark::kUsual},
    {"KillServiceProcess", "open service process {process} error 87", Kind::kStep, kEngine, kEngine, "process {process} is gone already", "", Mark::kUsual},

    // Requests to the services.
    {"RpcManager::PingService", "rpc manager ping service No:{n}", Kind::kRequest, kEngine, kServices, "{svc}: PingService {n}"},
    {"RpcManager::SetStringConfig", "rpc manager set string config svcType:{svc} cfgType:{key} cfgValue:{text}", Kind::kRequest, kEngine, kServices, "{svc}: SetStringConfig {key} = {text}"},
    {"RpcManager::SetInt64Config", "rpc manager set int64 config svcType:{svc} cfgType:{key} cfgValue:{value}", Kind::kRequest, kEngine, kServices, "{svc}: SetInt64Config {key} = {value}"},
    {"RpcManager::CreateGroup", "rpc manager create group svcType:{svc}", Kind::kRequest, kEngine, kServices, "{svc}: CreateGroup"},
    {"RpcManager::DeleteGroup", "delete group svcType:{svc}", Kind::kRequest, kEngine, kServices, "{svc}: DeleteGroup"},
    {"RpcManager::DeviceOnline", "rpc manager device online svcType:{svc}", Kind::kRequest, kEngine, kServices, "{svc}: DeviceOnline"},
    {"RpcManager::DeviceOffline", "rpc manager device offline svcType:{svc}", Kind::kRequest, kEngine, kServices, "{svc}: DeviceOffline"},
    {"RpcManager::NameChanged", "rpc manager name changed svcType:{svc}", Kind::kRequest, kEngine, kServices, "{svc}: NameChanged"},
    {"RpcManager::RecvRemoteMessage", "rpc manager receive remote message svcType:{svc}", Kind::kRequest, kEngine, kServices, "{svc}: RecvRemoteMessage"},
    {"RpcManager::SendRpcMessage", "send service message exception {code}", Kind::kAnswer, kServices, kEngine, "exception {code}"},
    {"RpcManager::SendRpcMessage", "send service message error {code}", Kind::kAnswer, kServices, kEngine, "refused: {code}"},

    // Notifications of the services, and the library's own, on their way to the observers.
    {"PLENXManager::SendLocalMessage", "plenx manager send local message invoked", Kind::kNotification, kServices, kFacade, "SendLocalMessage"},
    {"PLENXManager::SendLocalMessage", "plenx manager send local message begin", Kind::kFanOut, kFacade, kObservers, "SendLocalMessage"},
    {"PLENXManager::SendLocalMessage", "plenx manager send local message error {code}", Kind::kReturn, kObservers, kFacade, "an observer returned {code}"},
    {"PLENXManager::SendLocalMessage", "plenx manager send local message end", Kind::kReturn, kObservers, kFacade, "all observers told"},
    {"PLENXManager::NotifyConnect", "plenx manager notify connect invoked svcType:{svc}", Kind::kNotification, kServices, kFacade, "NotifyConnect {svc}"},
    {"PLENXManager::NotifyConnect", "plenx manager notify connect begin", Kind::kFanOut, kFacade, kObservers, "NotifyConnect"},
    {"PLENXManager::NotifyConnect", "plenx manager notify connect error {code}", Kind::kReturn, kObservers, kFacade, "an observer returned {code}"},
    {"PLENXManager::NotifyConnect", "plenx manager notify connect end", Kind::kReturn, kObservers, kFacade, "all observers told"},
    {"PLENXManager::NotifyDisconnect", "plenx manager notify disconnect invoked svcType:{svc}", Kind::kNotification, kServices, kFacade, "NotifyDisconnect {svc}"},
    {"PLENXManager::NotifyDisconnect", "plenx manager notify disconnect begin", Kind::kFanOut, kFacade, kObservers, "NotifyDisconnect"},
    {"PLENXManager::NotifyDisconnect", "plenx manager notify disconnect error {code}", Kind::kReturn, kObservers, kFacade, "an observer returned {code}"},
    {"PLENXManager::NotifyDisconnect", "plenx manager notify disconnect end", Kind::kReturn, kObservers, kFacade, "all observers told"},
    {"PLENXManager::NotifyReconnect", "plenx manager notify reconnect invoked svcType:{svc}", Kind::kNotification, kServices, kFacade, "NotifyReconnect {svc}"},
    {"PLENXManager::NotifyReconnect", "plenx manager notify reconnect begin", Kind::kFanOut, kFacade, kObservers, "NotifyReconnect"},
    {"PLENXManager::NotifyReconnect", "plenx manager notify reconnect error {code}", Kind::kReturn, kObservers, kFacade, "an observer returned {code}"},
    {"PLENXManager::NotifyReconnect", "plenx manager notify reconnect end", Kind::kReturn, kObservers, kFacade, "all observers told"},
    {"PLENXManager::QueryLinkStatus", "plenx manager query link status invoked svcType:{svc} linkType:{n}", Kind::kNotification, kServices, kFacade, "QueryLinkStatus {svc}, link {n}"},
    {"PLENXManager::QueryLinkStatus", "plenx manager  query link status begin", Kind::kFanOut, kFacade, kObservers, "QueryLinkStatus"},
    {"PLENXManager::QueryLinkStatus", "plenx manager  query link status error {code}", Kind::kReturn, kObservers, kFacade, "an observer returned {code}"},
    {"PLENXManager::QueryLinkStatus", "plenx manager  query link status end", Kind::kReturn, kObservers, kFacade, "all observers told"},
    {"PLENXManager::NotifyStatus", "plenx manager notify status invoked svcType:{svc} sttsType:{status} value:{value}", Kind::kNotification, kServices, kFacade, "NotifyStatus {svc}: {status} is {value}"},
    {"PLENXManager::NotifyStatus", "plenx manager notify status begin", Kind::kFanOut, kFacade, kObservers, "NotifyStatus"},
    {"PLENXManager::NotifyStatus", "plenx manager notify status error {code}", Kind::kReturn, kObservers, kFacade, "an observer returned {code}"},
    {"PLENXManager::NotifyStatus", "plenx manager notify status end", Kind::kReturn, kObservers, kFacade, "all observers told"},
    {"PLENXManager::NotifyError", "plenx manager notify error invoked errCode:{n}", Kind::kNotification, kServices, kFacade, "NotifyError {n}"},
    {"PLENXManager::NotifyError", "plenx manager notify error begin", Kind::kFanOut, kFacade, kObservers, "NotifyError"},
    {"PLENXManager::NotifyError", "plenx manager notify error code error {code}", Kind::kReturn, kObservers, kFacade, "an observer returned {code}"},
    {"PLENXManager::NotifyError", "plenx manager notify error end", Kind::kReturn, kObservers, kFacade, "all observers told"},
    {"PLENXManager::NotifyDiskName", "plenx manager notify diskName invoked diskName:{text}", Kind::kNotification, kServices, kFacade, "NotifyDiskName {text}"},
    {"PLENXManager::NotifyDiskName", "plenx manager notify diskName begin", Kind::kFanOut, kFacade, kObservers, "NotifyDiskName"},
    {"PLENXManager::NotifyDiskName", "plenx manager notify disk name error {code}", Kind::kReturn, kObservers, kFacade, "an observer returned {code}"},
    {"PLENXManager::NotifyDiskName", "plenx manager notify diskName end", Kind::kReturn, kObservers, kFacade, "all observers told"},
    {"RpcManager::FlushExplorer", "update device status invoked cLetter:{text} expFlushType:{n}", Kind::kNotification, kServices, kFacade, "refresh drive {text} in Explorer"},
    {"RpcManager::FlushExplorer", "sh change notify {text}", Kind::kDetail, kFacade, kFacade, "Explorer refresh: {text}"},
    // A notification that cannot be read.
    {"RpcManager::SendLocalMessage", "{text}", Kind::kNotification, kServices, kFacade, "SendLocalMessage: {text}"},
    {"RpcManager::ConnectNotify", "{text}", Kind::kNotification, kServices, kFacade, "ConnectNotify: {text}"},
    {"RpcManager::DisconnectNotify", "{text}", Kind::kNotification, kServices, kFacade, "DisconnectNotify: {text}"},
    {"RpcManager::ReconnectNotify", "{text}", Kind::kNotification, kServices, kFacade, "ReconnectNotify: {text}"},
    {"RpcManager::LinkTypeQuery", "{text}", Kind::kNotification, kServices, kFacade, "LinkTypeQuery: {text}"},
    {"RpcManager::StatusNotify", "{text}", Kind::kNotification, kServices, kFacade, "StatusNotify: {text}"},
    {"RpcManager::ErrorNotify", "{text}", Kind::kNotification, kServices, kFacade, "ErrorNotify: {text}"},
    {"RpcManager::DiskNameNotify", "{text}", Kind::kNotification, kServices, kFacade, "DiskNameNotify: {text}"},
    {"RpcManager::UpdateWindowsExplore", "{text}", Kind::kNotification, kServices, kFacade, "UpdateWindowsExplore: {text}"},
    {"RpcManager::ExploreFlushNotify", "{text}", Kind::kNotification, kServices, kFacade, "ExploreFlushNotify: {text}"},
};

// Rows for lines of any function, for which no row of its own fits. The class gives the lane.
constexpr Pattern kCommonPatterns[] = {
    {"", "send rpc message error ret:{code}", Kind::kStep, kNowhere, kNowhere, "the request failed: {code}"},
    {"", "read ret error", Kind::kStep, kNowhere, kNowhere, "an answer that cannot be read"},
    {"", "write {word} error index:{n}", Kind::kStep, kNowhere, kNowhere, "argument {n} cannot be written"},
    {"", "write {word} Error index:{n}", Kind::kStep, kNowhere, kNowhere, "argument {n} cannot be written"},
    {"", "path is empty", Kind::kStep, kNowhere, kNowhere, "a path is empty"},
    // The mistakes of a message, a request or a notification.
    {"", "Short Message Size rpcMsgSize:{size}", Kind::kStep, kNowhere, kNowhere, "a message of {size} bytes is too short"},
    {"", "Short Message Size rpcMsgSize:{size} rpcMsgArgs:{n}", Kind::kStep, kNowhere, kNowhere, "a message of {size} bytes is too short for {n} arguments"},
    {"", "Invalid Args Error index:{n} argCursor_:{cursor} msgCursor_:{at} rpcMsgSize_:{size}", Kind::kStep, kNowhere, kNowhere, "there is no argument {n}, counted from 0"},
    {"", "Invalid Args rpcReqArgType:{type}", Kind::kStep, kNowhere, kNowhere, "an argument is of another type: {type}"},
    {"", "Invalid Args offset:{at} rpcReqArgSize:{n} rpcMsgSize_:{size}", Kind::kStep, kNowhere, kNowhere, "an argument does not fit: {n} bytes at {at} of {size}"},
    {"", "Invalid Args offset:{at} rpcReqArgSize:{n} rpcMsgSize_:{size} argLen:{length}", Kind::kStep, kNowhere, kNowhere, "an argument does not fit: {n} bytes at {at} of {size}, {length} expected"},
    {"", "index:{n} argCursor_:{cursor} msgCursor_:{at} rpcMsgSize_:{size}", Kind::kStep, kNowhere, kNowhere, "argument {n} does not fit, counted from 0"},
    {"", "{text} error {code}", Kind::kStep, kNowhere, kNowhere, "{text}: {code}"},
};

constexpr Pattern kServicePatterns[] = {
    {"", "received {word} broken: {text}", Kind::kService, kServices, kServices, "{word} received, broken", "", Mark::kError},
    {"", "received {word}{text}", Kind::kService, kServices, kServices, "{word} received"},
    {"", "answered {word} result:0 reply:0", Kind::kAnswer, kServices, kEngine, "{word} done"},
    {"", "answered {word} result:0 reply:{code}", Kind::kAnswer, kServices, kEngine, "{word} refused: {code}", "", Mark::kError},
    {"", "answered {word} {text}", Kind::kAnswer, kServices, kEngine, "{word}: {text}", "", Mark::kError},
    {"", "sends hostile ({text}) {word}{text}", Kind::kService, kServices, kServices, "{word} is sent, hostile"},
    {"", "sends {word}{text}", Kind::kService, kServices, kServices, "{word} is sent"},
    {"", "Manager answered {word} result:0 reply:{n}", Kind::kAnswer, kFacade, kServices, "{word} answered: {n}"},
    {"", "Manager answered {word} {text}", Kind::kAnswer, kFacade, kServices, "{word}: {text}", "", Mark::kError},
    {"", "holds {text}", Kind::kDetail, kServices, kServices, "holds {text}"},
    {"", "starts, process {n}{text}", Kind::kService, kServices, kServices, "starts as process {n}"},
    {"", "serves {text}", Kind::kService, kServices, kServices, "serves {text}"},
    {"", "runs", Kind::kService, kServices, kServices, "runs"},
    {"", "stops", Kind::kService, kServices, kServices, "stops"},
    {"", "has stopped", Kind::kService, kServices, kServices, "has stopped"},
    {"", "crashes at {text}", Kind::kService, kServices, kServices, "crashes at {text}", "", Mark::kError},
    {"", "dies at {text}", Kind::kService, kServices, kServices, "dies at {text}", "", Mark::kError},
    {"", "does not serve {text}", Kind::kService, kServices, kServices, "does not serve {text}", "", Mark::kError},
    {"", "dropped {text}", Kind::kService, kServices, kServices, "dropped {text}", "", Mark::kError},
    {"", "the library does not come back {text}", Kind::kService, kServices, kServices, "the library does not come back", "", Mark::kError},
    {"", "{text}", Kind::kService, kServices, kServices, "{text}"},
};
// clang-format on

using RowsOfFunction = std::unordered_map<std::string_view, std::vector<const Pattern*>>;

RowsOfFunction IndexRows() {
    RowsOfFunction rows;
    for (const Pattern* const pattern : LibraryPatterns()) {
        rows[pattern->function].push_back(pattern);
    }
    return rows;
}

template <std::size_t Size>
const Pattern* FirstMatch(const Pattern (&rows)[Size], std::string_view text, Captures& captures) {
    for (const Pattern& pattern : rows) {
        if (Matches(pattern.text, text, captures)) {
            return &pattern;
        }
    }
    return nullptr;
}

struct ClassLane {
    std::string_view prefix;
    Lane lane;
};

// The colons keep "PLENXManager::" apart from "PLENXManagerInner::".
constexpr ClassLane kClassLanes[] = {
    {"PLENXManager::", Lane::kFacade},      {"ThreadPool::", Lane::kWorker},
    {"PLENXManagerInner::", Lane::kEngine}, {"ServiceManager::", Lane::kEngine},
    {"FileUtils::", Lane::kEngine},         {"RpcM", Lane::kEngine},
    {"KillServiceProcess", Lane::kEngine},
};

}  // namespace

std::vector<const Pattern*> LibraryPatterns() {
    std::vector<const Pattern*> rows;
    for (const Pattern& pattern : kLibraryPatterns) {
        rows.push_back(&pattern);
    }
    return rows;
}

const Pattern* FindLibraryPattern(std::string_view function, std::string_view text,
                                  Captures& captures) {
    static const RowsOfFunction rows = IndexRows();
    const auto found = rows.find(function);
    if (found != rows.end()) {
        for (const Pattern* const pattern : found->second) {
            if (Matches(pattern->text, text, captures)) {
                return pattern;
            }
        }
    }
    return FirstMatch(kCommonPatterns, text, captures);
}

const Pattern* FindServicePattern(std::string_view text, Captures& captures) {
    return FirstMatch(kServicePatterns, text, captures);
}

Lane LaneOfClass(std::string_view function) {
    for (const ClassLane& entry : kClassLanes) {
        if (function.substr(0, entry.prefix.size()) == entry.prefix) {
            return entry.lane;
        }
    }
    return Lane::kNoLane;
}

}  // namespace PlenxTrace
