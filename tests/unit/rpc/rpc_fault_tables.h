// Tells what a request to a service does when one of the calls of the RPC runtime fails.
//
// Each thing that the runtime still holds after a request has a line too, after those of the log.
// It is a string binding that was not freed, or a binding.

#ifndef PLENXSDK_UNIT_RPC_RPC_FAULT_TABLES_H
#define PLENXSDK_UNIT_RPC_RPC_FAULT_TABLES_H

#include <string>

#include "fault_table.h"
#include "rpc/fake_rpc.h"

namespace rpc_faults {

inline std::string RpcInfo(const std::string& text, const std::string& function) {
    return "L3 [PLENXSDK] " + text + "(DistributedFs::RpcManager::" + function + ")";
}
inline std::string RpcError(const std::string& text, const std::string& function) {
    return "L4 [PLENXSDK] " + text + "(DistributedFs::RpcManager::" + function + ")";
}

/// Runs one round of CheckFaults with a runtime of its own.
struct FreshRuntime {
    FreshRuntime() { FakeRpc::Get().Reset(); }
    ~FreshRuntime() {
        EXPECT_EQ(FakeRpc::Get().LiveBlocks(), 0U);
        FakeRpc::Get().Reset();
    }
    FreshRuntime(const FreshRuntime&) = delete;
    FreshRuntime& operator=(const FreshRuntime&) = delete;
};

/// The strings and bindings that may stay after a request whose string was not freed.
struct Held {
    unsigned strings = 0;
    unsigned bindings = 0;
};

inline FaultLines HeldNow() {
    return {"held: " + std::to_string(FakeRpc::Get().LiveStrings()) + " strings, " +
            std::to_string(FakeRpc::Get().LiveBindings()) + " bindings"};
}
inline FaultLines Holding(const Held& held) {
    return {"held: " + std::to_string(held.strings) + " strings, " + std::to_string(held.bindings) +
            " bindings"};
}

/// The lines of a request and the things that it leaves behind. They are apart because a larger
/// operation adds the latter up.
struct Request {
    std::string function;
    std::string line;  // its own

    FaultLines Begin() const { return {RpcInfo(line, function)}; }
    FaultLines Failed(const std::string& text, std::int32_t code) const {
        const std::string number = std::to_string(code);
        return Begin() + FaultLines{RpcError(text + number, "SendRpcMessage"),
                                    RpcError("send rpc message error ret:" + number, function)};
    }

    /// Makes a service that answers 0.
    FaultTable Table() const {
        const Request self = *this;
        const auto fails = [self](const std::string& text) {
            return [=](const Fault& fault) {
                const auto code = static_cast<std::int32_t>(fault.error);
                return Outcome{code, self.Failed(text, code)};
            };
        };
        // The runtime raises this when there is no memory for the reply.
        const auto noMemory = [self](const Fault&) {
            return Outcome{14, self.Failed("send service message exception ", 14)};
        };
        const auto none = [self](const Fault&) { return Outcome{0, self.Begin()}; };
        return {{0, Begin()},
                {{"RpcStringBindingComposeW", fails("rpc string binding compose error ")},
                 {"RpcBindingFromStringBindingW", fails("rpc binding from string binding error ")},
                 {"ServiceMessage", fails("send service message exception ")},
                 {"MIDL_user_allocate", noMemory},
                 {"RpcStringFreeW", none},
                 {"RpcBindingFree", none}}};
    }
};

/// Returns what is left when the call of this number failed; 0 is the first call of Request's
/// table. A string stays when the binding failed, or when the string could not be freed; then the
/// binding stays too.
inline Held HeldAfter(std::size_t call, const Fault& fault) {
    switch (call) {
    case 1:
        return {1, 0};
    case 2:
    case 3:
        return fault.forEver ? Held{1, 1} : Held{0, 0};
    case 4:
        return {1, 1};
    case 5:
        return {0, 1};
    default:
        return {0, 0};
    }
}

/// Returns Request's table with the things that are left behind.
inline FaultTable Whole(const Request& request) {
    FaultTable table = request.Table();
    table.good.lines = table.good.lines + Holding({});
    for (std::size_t i = 0; i != table.rows.size(); ++i) {
        table.rows[i].outcome = [=, own = table.rows[i].outcome](const Fault& fault) {
            const Outcome outcome = own(fault);
            return Outcome{outcome.code, outcome.lines + Holding(HeldAfter(i, fault))};
        };
    }
    return table;
}

}  // namespace rpc_faults

#endif  // PLENXSDK_UNIT_RPC_RPC_FAULT_TABLES_H
