// DistributedFileManager, which the DLL exports. The class has no members, so a table keeps the
// state of each object under the object's address.
//
//     PLENX_OFFICE_FAIL  "Start=7,LocalDeviceOffline=12" makes these operations do nothing and
//                        return these codes; each call reads it anew
//     PLENX_OFFICE_LOG   a file that gets a line for each call, in call order, even while the
//                        process is ending

#include "distributed_file_manager.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "common/process.h"
#include "distributedfile/call_line.h"
#include "distributedfile/office.h"
#include "distributedfile/requested_failure.h"

namespace Office {
namespace {

using Table = std::map<const DistributedFileManager*, OfficeState>;

std::mutex mutex;
Table* table = nullptr;  // made by the first object, never destroyed

void WriteCall(const std::string& line) {
    const std::filesystem::path file = Companion::PathVariable("PLENX_OFFICE_LOG");
    if (!file.empty()) {
        AppendCallLine(file, line);
    }
}

void Add(const DistributedFileManager* object, const std::string& dataFolder) {
    if (table == nullptr) {
        table = new Table;
    }
    table->erase(object);
    table->emplace(object, dataFolder);
}

OfficeState* Find(const DistributedFileManager* object) {
    if (table == nullptr) {
        return nullptr;
    }
    const auto found = table->find(object);
    return found != table->end() ? &found->second : nullptr;
}

void Remove(const DistributedFileManager* object) {
    if (table != nullptr) {
        table->erase(object);
    }
}

// Locks the table for one call. When the process is ending, the lock may belong for ever to a
// thread that is gone, and the table may be half changed. The call then gets no lock and must not
// touch the table.
std::unique_lock<std::mutex> TakeTurn() {
    return Companion::ProcessIsEnding() ? std::unique_lock<std::mutex>(mutex, std::defer_lock)
                                        : std::unique_lock<std::mutex>(mutex);
}

// Runs work and lets no exception out of it.
template <class Work>
int Guarded(const Work& work) noexcept {
    try {
        return work();
    } catch (...) {
        return kInternalError;
    }
}

std::string Show(const std::string& text) {
    return Quoted(text);
}

std::string Show(int number) {
    return std::to_string(number);
}

std::string Show(bool flag) {
    return flag ? "true" : "false";
}

std::string Show(const DeviceData& data) {
    return Hex(data.bytes, data.size);
}

template <class... Arguments>
std::string CallText(const char* name, const Arguments&... arguments) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + Show(arguments)), ...);
    return name + ("(" + list) + ")";
}

template <class Operation, class... Arguments>
int RunOrFail(const DistributedFileManager* object, const char* name, const Operation& operation,
              const Arguments&... arguments) {
    const int failure = RequestedFailure(Companion::TextVariable("PLENX_OFFICE_FAIL"), name);
    if (failure != 0) {
        return failure;
    }
    OfficeState* const office = Find(object);
    return office != nullptr ? std::invoke(operation, *office, arguments...) : kUnknownObject;
}

// Carries out one call: runs the operation on the object's state, and writes its line.
template <class Operation, class... Arguments>
int Call(const DistributedFileManager* object, const char* name, const Operation& operation,
         const Arguments&... arguments) noexcept {
    return Guarded([&] {
        const auto turn = TakeTurn();
        const int code =
            turn ? RunOrFail(object, name, operation, arguments...) : int{kProcessEnding};
        WriteCall(CallText(name, arguments...) + " = " + std::to_string(code));
        return code;
    });
}

}  // namespace
}  // namespace Office

using namespace Office;

DistributedFileManager::DistributedFileManager(const std::string& first, const std::string& second,
                                               const std::string& third, bool flag) {
    Guarded([&] {
        const auto turn = TakeTurn();
        if (turn) {
            Add(this, second);
        }
        WriteCall(CallText("DistributedFileManager", first, second, third, flag));
        return kOk;
    });
}

DistributedFileManager::~DistributedFileManager() {
    Guarded([&] {
        const auto turn = TakeTurn();
        if (turn) {
            Remove(this);
        }
        WriteCall(CallText("~DistributedFileManager"));
        return kOk;
    });
}

int DistributedFileManager::Start() {
    return Call(this, "Start", &OfficeState::Start);
}

int DistributedFileManager::Stop() {
    return Call(this, "Stop", &OfficeState::Stop);
}

int DistributedFileManager::LocalDeviceOnline(const std::string& first, const std::string& second,
                                              int type, const unsigned char* data, int size) {
    return Call(this, "LocalDeviceOnline", &OfficeState::LocalDeviceOnline, first, second, type,
                DeviceData{data, size});
}

int DistributedFileManager::RemoteDeviceOnline(const std::string& first,
                                               const std::string& second) {
    return Call(this, "RemoteDeviceOnline", &OfficeState::RemoteDeviceOnline, first, second);
}

int DistributedFileManager::LocalDeviceOffline(const std::string& first,
                                               const std::string& second) {
    return Call(this, "LocalDeviceOffline", &OfficeState::LocalDeviceOffline, first, second);
}

int DistributedFileManager::RemoteDeviceOffline(const std::string& first,
                                                const std::string& second) {
    return Call(this, "RemoteDeviceOffline", &OfficeState::RemoteDeviceOffline, first, second);
}

int DistributedFileManager::GetGroupNeighborDistributedDir(const std::string& first,
                                                           const std::string& second,
                                                           std::string& dir) {
    const auto get = [&dir](const OfficeState& office, const std::string& group,
                            const std::string& device) {
        return office.GetGroupNeighborDistributedDir(group, device, dir);
    };
    return Call(this, "GetGroupNeighborDistributedDir", get, first, second);
}

int DistributedFileManager::UninstallPackages() {
    return Call(this, "UninstallPackages", &OfficeState::UninstallPackages);
}
