// FakeFileManager is the companion library distributedfile.dll in memory. It records every
// call of DistributedFileManager and answers with scripted codes, 0 by default.
//
// It is thread-safe and lives until the process ends.

#ifndef FAKES_COMPANION_FAKE_FILE_MANAGER_H
#define FAKES_COMPANION_FAKE_FILE_MANAGER_H

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "distributed_file_manager.h"

class FakeFileManager {
public:
    using Hook = std::function<void(const std::string& call)>;

    static FakeFileManager& Get();

    // The script. An operation goes by its name, such as "RemoteDeviceOnline".
    void SetResult(const std::string& operation, int code);
    void SetNeighbourDir(const std::string& dir);
    /// The hook runs inside every call, including construction and destruction. It may throw, but
    /// not in the destructor.
    void SetHook(Hook hook);

    // The record.
    /// A call looks like "LocalDeviceOnline(g, dev, 1, 0102, 2)", with data in hexadecimal or
    /// "null".
    std::vector<std::string> Calls() const;
    void ClearRecord();
    std::size_t Live() const;
    std::size_t Constructions() const;
    std::size_t MostCallsAtOnce() const;

    // For the fake class.
    int Call(const std::string& operation, const std::string& arguments);
    std::string NeighbourDir() const;
    void CountConstruction();
    void CountDestruction();

private:
    FakeFileManager() = default;

    mutable std::mutex mutex_;
    std::map<std::string, int> results_;
    std::string neighbourDir_;
    Hook hook_;
    std::vector<std::string> calls_;
    std::size_t constructions_ = 0;
    std::size_t destructions_ = 0;
    std::size_t callsNow_ = 0;
    std::size_t mostCallsAtOnce_ = 0;
};

#endif  // FAKES_COMPANION_FAKE_FILE_MANAGER_H
