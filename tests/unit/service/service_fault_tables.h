// Tables that say what each operation on one service does when one of its platform calls fails.
// They are for the row of the PC service where they name no other.

#ifndef PLENXSDK_UNIT_SERVICE_SERVICE_FAULT_TABLES_H
#define PLENXSDK_UNIT_SERVICE_SERVICE_FAULT_TABLES_H

#include <string>
#include <utility>

#include "fault_table.h"
#include "service/service_room_test.h"

namespace service_faults {

const std::string kCreate = "ServiceManager::CreateServiceByIndex";
const std::string kStart = "ServiceManager::StartServiceByIndex";
const std::string kStop = "ServiceManager::StopServiceByIndex";
const std::string kDelete = "ServiceManager::DeleteServiceByIndex";
const std::string kWait = "ServiceManager::WaitServiceStatus";
const std::string kAlive = "ServiceManager::isServiceAlive";
const std::string kDokan = "ServiceManager::StartDokanService";
const std::string kKill = "KillServiceProcess";

using Row = FaultRow;

/// A failure that has no effect.
inline auto Ignored(Outcome good) {
    return [good = std::move(good)](const Fault&) { return good; };
}

/// A failure that ends the operation: the lines before it, then one with the error.
inline auto Ends(std::int32_t code, const std::string& text, const std::string& function,
                 FaultLines before = {}) {
    return [=](const Fault& fault) {
        return Outcome{code, before + FaultLines{Error(text + fault.Error(), function)}};
    };
}

inline Row ManagerOf(const std::string& function, FaultLines before = {}) {
    return {"OpenSCManagerW", Ends(1, "open sc manager error ", function, std::move(before))};
}
inline Row ServiceOf(const std::string& function, FaultLines before = {}) {
    return {"OpenServiceW", Ends(2, "open service error ", function, std::move(before))};
}
inline Row QueryOf(const std::string& function, FaultLines before = {}) {
    return {"QueryServiceStatusEx",
            Ends(4, "query service status error ", function, std::move(before))};
}

inline std::string KillLine(DWORD processId) {
    return Error("kill service process " + std::to_string(processId), kKill);
}
inline std::string CannotOpen(DWORD processId, const std::string& error) {
    return Error("open service process " + std::to_string(processId) + " error " + error, kKill);
}
inline std::string CannotKill(DWORD processId, const std::string& error) {
    return Error("kill service process " + std::to_string(processId) + " error " + error, kKill);
}
inline std::string WaitError(const Fault& fault) {
    return Error("query service status error " + fault.Error(), kWait);
}

// Create

// Any failure to open counts as not registered; the creation then fails because the service exists.
inline FaultTable CreateRegistered() {
    return {{0, {Info("sevice has been created", kCreate)}},
            {ManagerOf(kCreate),
             {"OpenServiceW", [](const Fault& fault) {
                  const std::string error = fault.forEver ? fault.Error() : "1073";
                  return Outcome{3, {Error("create service error " + error, kCreate)}};
              }}}};
}

inline FaultTable CreateNew() {
    const Outcome good{0, {Info("create service success", kCreate)}};
    const auto refused = Ends(3, "create service error ", kCreate);
    return {good,
            {ManagerOf(kCreate),
             {"OpenServiceW",
              [=](const Fault& fault) { return fault.forEver ? refused(fault) : good; }},
             {"CreateServiceW", refused}}};
}

// Start

// The start only looks at the process to recognise it later.
inline FaultTable StartRunning() {
    const Outcome good{0, {Info("service is running", kStart)}};
    return {good,
            {ManagerOf(kStart), ServiceOf(kStart), QueryOf(kStart),
             Row{"OpenProcess", Ignored(good)}, Row{"GetProcessTimes", Ignored(good)}}};
}

inline Row WaitForRunning(const FaultLines& before) {
    return {"QueryServiceStatusEx",
            [=](const Fault& fault) {
                return Outcome{5, before + FaultLines{WaitError(fault),
                                                      Error("wait service status error", kStart)}};
            },
            3};
}

// The service reports start pending twice before it runs. No process has been seen before.
inline FaultTable StartStopped() {
    const FaultLines kill = {KillLine(0)};
    const Outcome good{0, kill + FaultLines{Info("start service successful", kStart)}};
    return {good,
            {ManagerOf(kStart), ServiceOf(kStart), QueryOf(kStart),
             Row{"StartServiceW", Ends(5, "start service error ", kStart, kill)},
             QueryOf(kStart, kill), WaitForRunning(kill), Row{"OpenProcess", Ignored(good)},
             Row{"GetProcessTimes", Ignored(good)}}};
}

// The process that was last seen still exists. The start first checks whether its id belongs to
// another process by now; when it cannot check, it ends the process.
inline FaultTable StartWithLingeringProcess(DWORD process) {
    const FaultLines kill = {KillLine(process)};
    const FaultLines started = {Info("start service successful", kStart)};
    const Outcome good{0, kill + started};
    // All later calls fail as well.
    const auto refused = [=](const Fault& fault, FaultLines failure) {
        const FaultLines start = {Error("start service error " + fault.Error(), kStart)};
        return fault.forEver ? Outcome{5, kill + failure + start}
                             : Outcome{0, kill + failure + started};
    };
    const auto look = [=](const Fault& fault) {
        return fault.forEver ? refused(fault, {CannotOpen(process, fault.Error())}) : good;
    };
    return {good,
            {ManagerOf(kStart), ServiceOf(kStart), QueryOf(kStart), Row{"OpenProcess", look},
             Row{"GetProcessTimes", look},
             Row{"OpenProcess",
                 [=](const Fault& fault) {
                     return refused(fault, {CannotOpen(process, fault.Error())});
                 }},
             Row{"TerminateProcess",
                 [=](const Fault& fault) {
                     return refused(fault, {CannotKill(process, fault.Error())});
                 }},
             Row{"StartServiceW", Ends(5, "start service error ", kStart, kill)},
             QueryOf(kStart, kill), WaitForRunning(kill), Row{"OpenProcess", Ignored(good)},
             Row{"GetProcessTimes", Ignored(good)}}};
}

// The service reports stop pending twice before it has stopped. When the wait cannot query, the
// wait ends early, and the service manager then refuses the start of a service that still runs.
inline FaultTable StartStopping() {
    FaultTable table = StartStopped();
    const FaultLines kill = {KillLine(0)};
    const auto wait = [=](const std::string& startError) {
        return [=](const Fault& fault) {
            const std::string error = fault.forEver ? fault.Error() : startError;
            return Outcome{5, kill + FaultLines{WaitError(fault),
                                                Error("start service error " + error, kStart)}};
        };
    };
    const auto lastPoll = [=](const Fault& fault) {
        return fault.forEver
                   ? wait("")(fault)
                   : Outcome{0, kill + FaultLines{WaitError(fault),
                                                  Info("start service successful", kStart)}};
    };
    table.rows.insert(table.rows.begin() + 3, {Row{"QueryServiceStatusEx", wait("1056"), 2},
                                               Row{"QueryServiceStatusEx", lastPoll}});
    return table;
}

// Stop

inline FaultTable StopStopped() {
    return {{0, {Info("service has stopped", kStop)}},
            {ManagerOf(kStop), ServiceOf(kStop), QueryOf(kStop)}};
}

inline FaultTable StopNotRegistered() {
    return {{2, {Error("open service error 1060", kStop)}}, {ManagerOf(kStop), ServiceOf(kStop)}};
}

// The service reports stop pending twice before it has stopped. When the wait cannot query, the
// wait ends early, and the process is ended. After the last poll there is no process any more.
inline FaultTable StopRunning(DWORD process) {
    const FaultLines done = {Info("stop service successful", kStop)};
    const auto forced = [=](const std::string& ifOnce) {
        return [=](const Fault& fault) {
            FaultLines lines = {WaitError(fault), Info("force stop service", kStop),
                                KillLine(process)};
            if (fault.forEver) {
                lines.push_back(CannotOpen(process, fault.Error()));
            } else if (!ifOnce.empty()) {
                lines.push_back(ifOnce);
            }
            return Outcome{0, lines + done};
        };
    };
    return {{0, done},
            {ManagerOf(kStop), ServiceOf(kStop), QueryOf(kStop),
             Row{"ControlService", Ends(6, "stop service error ", kStop)},
             Row{"QueryServiceStatusEx", forced(""), 2},
             Row{"QueryServiceStatusEx", forced(CannotOpen(process, "87"))}}};
}

// The service ignores the request, so its process is ended.
inline FaultTable StopByForce(DWORD process) {
    const FaultLines force = {Info("force stop service", kStop), KillLine(process)};
    const FaultLines done = {Info("stop service successful", kStop)};
    const auto cannot = [=](auto failure) {
        return [=](const Fault& fault) {
            return Outcome{0, force + FaultLines{failure(process, fault.Error())} + done};
        };
    };
    return {{0, force + done},
            {ManagerOf(kStop), ServiceOf(kStop), QueryOf(kStop),
             Row{"ControlService", Ends(6, "stop service error ", kStop)},
             Row{"QueryServiceStatusEx",
                 [=](const Fault& fault) {
                     FaultLines lines = FaultLines{WaitError(fault)} + force;
                     if (fault.forEver) {
                         lines.push_back(CannotOpen(process, fault.Error()));
                     }
                     return Outcome{0, lines + done};
                 }},
             Row{"OpenProcess", cannot(CannotOpen)}, Row{"TerminateProcess", cannot(CannotKill)}}};
}

// A service that stops by itself before the request refuses it, and so does one that is still
// stopping.
inline FaultTable StopStopping() {
    const auto wait = [](const std::string& refusal) {
        return [=](const Fault& fault) {
            const std::string error = fault.forEver ? fault.Error() : refusal;
            return Outcome{6, {WaitError(fault), Error("stop service error " + error, kStop)}};
        };
    };
    return {
        {6, {Error("stop service error 1062", kStop)}},
        {ManagerOf(kStop), ServiceOf(kStop), QueryOf(kStop),
         Row{"QueryServiceStatusEx", wait("1061"), 2}, Row{"QueryServiceStatusEx", wait("1062")},
         Row{"ControlService", Ends(6, "stop service error ", kStop)}}};
}

// Delete

/// Any failure to open counts as deleted.
inline FaultTable DeleteStopped(const std::string& name) {
    const Outcome gone{0, {Error("service " + name + " has been deleted", kDelete)}};
    return {{0, {Info("delete service successful", kDelete)}},
            {ManagerOf(kDelete), Row{"OpenServiceW", Ignored(gone)}, QueryOf(kDelete),
             Row{"DeleteService", Ends(7, "service " + name + " delete error ", kDelete)}}};
}

inline FaultTable DeleteRunning(const std::string& name) {
    FaultTable table = DeleteStopped(name);
    table.good = {7, {Error("service " + name + " is not stopped", kDelete)}};
    table.rows.pop_back();
    return table;
}

// isServiceAlive: the code is 1 when the service is alive. A service that cannot be queried is not
// alive.

inline FaultTable AliveOf(Outcome good) {
    FaultTable table{std::move(good), {ManagerOf(kAlive), ServiceOf(kAlive), QueryOf(kAlive)}};
    for (Row& row : table.rows) {
        row.outcome = [failure = row.outcome](const Fault& fault) {
            return Outcome{0, failure(fault).lines};
        };
    }
    return table;
}

// The driver has no process and needs no time. It is started even when its creation has failed.

inline FaultTable StartDriverRow() {
    const FaultLines kill = {KillLine(0)};
    return {{0, kill + FaultLines{Info("start service successful", kStart)}},
            {ManagerOf(kStart), ServiceOf(kStart), QueryOf(kStart),
             Row{"StartServiceW", Ends(5, "start service error ", kStart, kill)},
             QueryOf(kStart, kill)}};
}

/// The lines of StartDokanService itself.
inline FaultLines AfterDriverCreate(std::int32_t code) {
    return code == 0
               ? FaultLines()
               : FaultLines{Error("create dokan service error " + std::to_string(code), kDokan)};
}
inline FaultLines AfterDriverStart(std::int32_t code) {
    return {code == 0 ? Info("start dokan service success", kDokan)
                      : Error("start dokan service error " + std::to_string(code), kDokan)};
}

inline FaultTable StartDokanRegistered() {
    return InSequence(
        {{CreateRegistered(), AfterDriverCreate}, {StartDriverRow(), AfterDriverStart, true}});
}

// The registration failed, so there is nothing to open.
inline FaultTable StartDokanNew() {
    FaultTable table =
        InSequence({{CreateNew(), AfterDriverCreate}, {StartDriverRow(), AfterDriverStart, true}});
    const FaultTable create = CreateNew();
    for (const std::size_t notCreated : {0, 2}) {
        FaultRow& row = table.rows[notCreated];
        row.outcome = [=, composed = row.outcome](const Fault& fault) {
            if (fault.forEver) {
                return composed(fault);
            }
            const Outcome failure = create.rows[notCreated].outcome(fault);
            return Outcome{2, failure.lines + AfterDriverCreate(failure.code) +
                                  FaultLines{Error("open service error 1060", kStart)} +
                                  AfterDriverStart(2)};
        };
    }
    return table;
}

/// StartPlenxService and StopPlenxService run the operation and write a line about its result.
inline FaultTable Checked(const std::string& verb, const std::string& function, FaultTable table) {
    const auto line = [=](std::int32_t code) {
        const std::string text = verb + " plenx service PlenxPcSvc ";
        return FaultLines{code == 0 ? Info(text + "success", function)
                                    : Error(text + "error " + std::to_string(code), function)};
    };
    return InSequence({{std::move(table), line, true}});
}
inline FaultTable CheckedStart(FaultTable table) {
    return Checked("start", "ServiceManager::StartPlenxService", std::move(table));
}
inline FaultTable CheckedStop(FaultTable table) {
    return Checked("stop", "ServiceManager::StopPlenxService", std::move(table));
}

}  // namespace service_faults

#endif  // PLENXSDK_UNIT_SERVICE_SERVICE_FAULT_TABLES_H
