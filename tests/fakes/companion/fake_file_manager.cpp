#include "companion/fake_file_manager.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

std::string Hexadecimal(const unsigned char* data, int size) {
    if (data == nullptr) {
        return "null";
    }
    std::string text;
    for (int i = 0; i < size; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof(digits), "%02x", data[i]);
        text += digits;
    }
    return text;
}

FakeFileManager& Fake() {
    return FakeFileManager::Get();
}

}  // namespace

FakeFileManager& FakeFileManager::Get() {
    static FakeFileManager* const fake = new FakeFileManager;
    return *fake;
}

void FakeFileManager::SetResult(const std::string& operation, int code) {
    const std::lock_guard<std::mutex> lock(mutex_);
    results_[operation] = code;
}

void FakeFileManager::SetNeighbourDir(const std::string& dir) {
    const std::lock_guard<std::mutex> lock(mutex_);
    neighbourDir_ = dir;
}

void FakeFileManager::SetHook(Hook hook) {
    const std::lock_guard<std::mutex> lock(mutex_);
    hook_ = std::move(hook);
}

std::vector<std::string> FakeFileManager::Calls() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return calls_;
}

void FakeFileManager::ClearRecord() {
    const std::lock_guard<std::mutex> lock(mutex_);
    calls_.clear();
}

std::size_t FakeFileManager::Live() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return constructions_ - destructions_;
}

std::size_t FakeFileManager::Constructions() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return constructions_;
}

std::size_t FakeFileManager::MostCallsAtOnce() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return mostCallsAtOnce_;
}

int FakeFileManager::Call(const std::string& operation, const std::string& arguments) {
    const std::string call = operation + "(" + arguments + ")";
    Hook hook;
    int code = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        calls_.push_back(call);
        mostCallsAtOnce_ = std::max(mostCallsAtOnce_, ++callsNow_);
        hook = hook_;
        const auto result = results_.find(operation);
        code = result == results_.end() ? 0 : result->second;
    }
    struct CallEnd {
        FakeFileManager& fake;
        ~CallEnd() {
            const std::lock_guard<std::mutex> lock(fake.mutex_);
            --fake.callsNow_;
        }
    } const end{*this};
    if (hook) {
        hook(call);
    }
    return code;
}

std::string FakeFileManager::NeighbourDir() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return neighbourDir_;
}

void FakeFileManager::CountConstruction() {
    const std::lock_guard<std::mutex> lock(mutex_);
    ++constructions_;
}

void FakeFileManager::CountDestruction() {
    const std::lock_guard<std::mutex> lock(mutex_);
    ++destructions_;
}

DistributedFileManager::DistributedFileManager(const std::string& first, const std::string& second,
                                               const std::string& third, bool flag) {
    Fake().Call("DistributedFileManager",
                first + ", " + second + ", " + third + ", " + (flag ? "true" : "false"));
    Fake().CountConstruction();
}

DistributedFileManager::~DistributedFileManager() {
    Fake().CountDestruction();
    Fake().Call("~DistributedFileManager", "");
}

int DistributedFileManager::Start() {
    return Fake().Call("Start", "");
}

int DistributedFileManager::Stop() {
    return Fake().Call("Stop", "");
}

int DistributedFileManager::LocalDeviceOnline(const std::string& first, const std::string& second,
                                              int type, const unsigned char* data, int size) {
    return Fake().Call("LocalDeviceOnline", first + ", " + second + ", " + std::to_string(type) +
                                                ", " + Hexadecimal(data, size) + ", " +
                                                std::to_string(size));
}

int DistributedFileManager::RemoteDeviceOnline(const std::string& first,
                                               const std::string& second) {
    return Fake().Call("RemoteDeviceOnline", first + ", " + second);
}

int DistributedFileManager::LocalDeviceOffline(const std::string& first,
                                               const std::string& second) {
    return Fake().Call("LocalDeviceOffline", first + ", " + second);
}

int DistributedFileManager::RemoteDeviceOffline(const std::string& first,
                                                const std::string& second) {
    return Fake().Call("RemoteDeviceOffline", first + ", " + second);
}

int DistributedFileManager::GetGroupNeighborDistributedDir(const std::string& first,
                                                           const std::string& second,
                                                           std::string& dir) {
    const int code = Fake().Call("GetGroupNeighborDistributedDir", first + ", " + second);
    dir = Fake().NeighbourDir();
    return code;
}

int DistributedFileManager::UninstallPackages() {
    return Fake().Call("UninstallPackages", "");
}
