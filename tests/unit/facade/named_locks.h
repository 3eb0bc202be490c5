// Names the product's locks for LockWatch. An operation that takes the lock shows which one it is.

#ifndef UNIT_FACADE_NAMED_LOCKS_H
#define UNIT_FACADE_NAMED_LOCKS_H

#include <functional>
#include <string>

#include "engine/plenx_manager_inner.h"
#include "facade/facade_fixture.h"
#include "facade/lock_watch.h"
#include "rpc/rpc_manager.h"

/// This leaves lines, a job and a request behind.
inline void NameLocks() {
    auto& facade = Facade();
    const auto inFacade = [&](const std::string& name, const std::function<void()>& action) {
        LockWatch::Name(name, &facade, sizeof(facade), action);
    };
    inFacade("poolMutex", [&] { facade.DeviceNameChanged("n"); });
    inFacade("observerMutex", [&] { facade.RegisterPLENXServiceObserver(nullptr); });
    inFacade("fileManagerMutex", [&] {
        std::string dir;
        facade.GetOfficeDir("g", "d", dir);
    });
    auto& engine = DistributedFs::PLENXManagerInner::GetInstance();
    LockWatch::Name("engine's mutex", &engine, sizeof(engine),
                    [&] { facade.GetStringConfig(Type(1), Key(1)); });
    auto& rpc = DistributedFs::RpcManager::GetInstance();
    LockWatch::Name("sendMutex", &rpc, sizeof(rpc),
                    [&] { rpc.PingService(DistributedFs::kPcService, 0); });
}

#endif  // UNIT_FACADE_NAMED_LOCKS_H
