// Tests the engine's jobs for one service while each call of the service manager and of the RPC
// runtime fails, once and from there on. Compares the result, every line, and the notifications.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/engine_fixture.h"
#include "rpc/rpc_fault_tables.h"
#include "service/service_fault_tables.h"

using DistributedFs::TriggerType;

namespace {

using rpc_faults::HeldAfter;
using rpc_faults::Holding;
using rpc_faults::Request;

std::string InnerInfo(const std::string& text, const std::string& operation) {
    return Info("plenx manager " + text, "PLENXManagerInner::" + operation);
}
std::string InnerError(const std::string& text, std::int32_t code, const std::string& operation) {
    return Error("plenx manager " + text + std::to_string(code), "PLENXManagerInner::" + operation);
}

FaultLines StatusLines(int kind, bool success) {
    const std::string notify = "PLENXManager::NotifyStatus";
    return {Info("plenx manager notify status invoked svcType:1 sttsType:" + std::to_string(kind) +
                     " value:" + (success ? "1" : "0"),
                 notify),
            Info("plenx manager notify status begin", notify),
            Info("plenx manager notify status end", notify)};
}
FaultLines Heard(int kind, bool success) {
    return {"observer: NotifyStatus(1, g, " + std::to_string(kind) +
            (success ? ", true)" : ", false)")};
}

FaultTable BeginningWith(const FaultLines& lines, FaultTable table) {
    table.good.lines = lines + table.good.lines;
    for (FaultRow& row : table.rows) {
        row.outcome = [lines, own = row.outcome](const Fault& fault) {
            const Outcome outcome = own(fault);
            return Outcome{outcome.code, lines + outcome.lines};
        };
    }
    return table;
}

/// Adds to the table the notifications, which depend on the code alone, and the objects that the
/// runtime still holds. The first `requests` rows belong to requests to the service.
template <class HeardFor>
FaultTable Complete(FaultTable table, std::size_t first, std::size_t requests, HeardFor heard) {
    table.good.lines = table.good.lines + heard(table.good.code) + Holding({});
    std::vector<FaultRow> rows = table.EachCall();
    for (std::size_t i = 0; i != rows.size(); ++i) {
        rows[i].outcome = [=, own = rows[i].outcome](const Fault& fault) {
            const Outcome outcome = own(fault);
            const bool request = i >= first && i < first + requests;
            const auto held = request ? HeldAfter((i - first) % 6, fault) : rpc_faults::Held{};
            return Outcome{outcome.code, outcome.lines + heard(outcome.code) + Holding(held)};
        };
    }
    table.rows = std::move(rows);
    return table;
}

Request Ping(int number) {
    return {"PingService", "rpc manager ping service No:" + std::to_string(number)};
}

/// The wait for the service's answer sends another ping after each failure, 26 in all. The start
/// goes on even when no ping is answered.
FaultTable WaitForAnswer() {
    FaultTable table = Ping(0).Table();
    for (FaultRow& row : table.rows) {
        row.outcome = [first = row.outcome](const Fault& fault) {
            Outcome ping = first(fault);
            if (ping.code == 0) {
                return ping;
            }
            if (!fault.forEver) {
                return Outcome{0, ping.lines + Ping(1).Begin()};
            }
            FaultLines lines = ping.lines;
            for (int number = 1; number != 26; ++number) {
                lines = lines + Ping(number).Table().rows[0].outcome(fault).lines;
            }
            lines.push_back(Error("plenx manager wait plenx service timeout (5000 ms)",
                                  "PLENXManagerInner::Start"));
            return Outcome{0, lines};
        };
    }
    return table;
}

/// A start while the service runs already.
FaultTable Start() {
    const auto failed = [](const std::string& text) {
        return [=](std::int32_t code) {
            return code == 0 ? FaultLines()
                             : FaultLines{InnerError(text, code, "Start")} + StatusLines(0, false);
        };
    };
    const auto created = [=](std::int32_t code) {
        return code == 0 ? StatusLines(0, true) : failed("create group error ")(code);
    };
    const auto push = [](const std::string& function, const std::string& line) {
        return FaultStep{Request{function, "rpc manager set " + line}.Table()};
    };
    FaultTable table = InSequence(
        {{service_faults::CheckedStart(service_faults::StartRunning()),
          failed("start plenx service error "), true},
         {WaitForAnswer()},
         push("SetStringConfig", "string config svcType:1 cfgType:1 cfgValue:en_US"),
         push("SetInt64Config", "int64 config svcType:1 cfgType:0 cfgValue:0"),
         push("SetInt64Config", "int64 config svcType:1 cfgType:2 cfgValue:0"),
         {Request{"CreateGroup", "rpc manager create group svcType:1"}.Table(), created, true}});
    table = BeginningWith({InnerInfo("start service 1", "Start")}, std::move(table));
    return Complete(std::move(table), 5, 30, [](std::int32_t code) { return Heard(0, code == 0); });
}

/// A stop of a running service. Whatever fails, the result is 0 and the observer hears "false".
FaultTable Stop() {
    const auto failed = [](const std::string& text) {
        return [=](std::int32_t code) {
            return code == 0 ? FaultLines() : FaultLines{InnerError(text, code, "Stop")};
        };
    };
    const auto stopped = [=](std::int32_t code) {
        return failed("stop plenx service error ")(code) + StatusLines(1, false);
    };
    FaultTable table = InSequence(
        {{Request{"DeleteGroup", "delete group svcType:1"}.Table(), failed("delete group error ")},
         {service_faults::CheckedStop(service_faults::StopRunning(1000)), stopped}});
    table = BeginningWith({InnerInfo("stop service 1", "Stop")}, std::move(table));
    return Complete(std::move(table), 0, 6, [](std::int32_t) { return Heard(1, false); });
}

/// One of the device operations.
FaultTable Device(const std::string& operation, const std::string& first, const Request& request,
                  const std::string& error, int kind, const std::string& success) {
    const auto after = [=](std::int32_t code) {
        return code == 0
                   ? FaultLines{InnerInfo(success, operation)}
                   : FaultLines{InnerError(error, code, operation)} + StatusLines(kind, false);
    };
    FaultTable table = InSequence({{request.Table(), after, true}});
    table = BeginningWith({InnerInfo(first, operation)}, std::move(table));
    return Complete(std::move(table), 0, 6, [=](std::int32_t code) {
        return code == 0 ? FaultLines() : Heard(kind, false);
    });
}

class EngineFaultTable : public EngineTest {
protected:
    EngineFaultTable() {
        InitEngine();
        // Each round registers its own observer.
        DistributedFs::PLENXManager::GetInstance().UnregisterPLENXServiceObserver(&observer_);
    }

    struct Round : rpc_faults::FreshRuntime {
        Round() {
            FakePlatform::Get().Scm().AddService(L"PlenxPcSvc");
            FakePlatform::Get().Scm().SetStatus(L"PlenxPcSvc", SERVICE_RUNNING);
            DistributedFs::PLENXManager::GetInstance().RegisterPLENXServiceObserver(&observer);
        }
        ~Round() {
            DistributedFs::PLENXManager::GetInstance().UnregisterPLENXServiceObserver(&observer);
        }
        RecordingObserver observer;
    };

    template <class Operation>
    static void Check(const FaultTable& table, Operation operation) {
        Round* round = nullptr;
        CheckFaults(
            table,
            [&] {
                auto made = std::make_unique<Round>();
                round = made.get();
                return made;
            },
            [&](const auto&) { return operation(Engine()); },
            [&] {
                FaultLines lines = RecordedLog::Get().Texts();
                for (const std::string& event : round->observer.Events()) {
                    lines.push_back("observer: " + event);
                }
                return lines + rpc_faults::HeldNow();
            });
    }
};

TEST_F(EngineFaultTable, Start) {
    Check(::Start(), [](auto& engine) { return engine.Start(Type(1), "g", "arg"); });
}

TEST_F(EngineFaultTable, Stop) {
    Check(::Stop(), [](auto& engine) { return engine.Stop(Type(1), "g"); });
}

const Request kDeviceOnline = {"DeviceOnline", "rpc manager device online svcType:1"};
const Request kDeviceOffline = {"DeviceOffline", "rpc manager device offline svcType:1"};

TEST_F(EngineFaultTable, LocalDeviceOnline) {
    Check(Device("LocalDeviceOnline", "inner local device online svcType(1)", kDeviceOnline,
                 "inner local device online error ", 2, "local device online success svcType(1)"),
          [](auto& engine) {
              const std::uint8_t data[] = {1, 2, 3};
              return engine.LocalDeviceOnline(Type(1), "g", "d", 3, data);
          });
}

TEST_F(EngineFaultTable, RemoteDeviceOnline) {
    Check(Device("RemoteDeviceOnline", "inner remote device online service 1", kDeviceOnline,
                 "inner remote device online error ", 2,
                 "inner remote device online success svcType(1)"),
          [](auto& engine) { return engine.RemoteDeviceOnline(Type(1), "g", "d"); });
}

TEST_F(EngineFaultTable, LocalDeviceOffline) {
    Check(Device("LocalDeviceOffline", "inner local device offline service (1)", kDeviceOffline,
                 "inner local device offline error ", 3,
                 "inner local device offline success svcType(1)"),
          [](auto& engine) {
              return engine.LocalDeviceOffline(Type(1), "g", "d", static_cast<TriggerType>(4));
          });
}

TEST_F(EngineFaultTable, RemoteDeviceOffline) {
    Check(Device("RemoteDeviceOffline", "inner remote device offline service (1)", kDeviceOffline,
                 "inner remote device offline error ", 3,
                 "inner remote device offline success svcType(1)"),
          [](auto& engine) {
              return engine.RemoteDeviceOffline(Type(1), "g", "d", static_cast<TriggerType>(4));
          });
}

}  // namespace
