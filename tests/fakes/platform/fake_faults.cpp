#include "platform/fake_faults.h"

#include <utility>

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

}  // namespace

void FakeFaults::Reset() {
    const Lock lock(mutex_);
    faults_.clear();
    calls_.clear();
    hits_ = 0;
}

void FakeFaults::Add(Fault fault) {
    const Lock lock(mutex_);
    faults_.push_back(std::move(fault));
}

void FakeFaults::FailCall(const std::string& function, unsigned n, std::uint32_t error) {
    Add({function, n, false, error, nullptr});
}

void FakeFaults::FailCallsFrom(const std::string& function, unsigned n, std::uint32_t error) {
    Add({function, n, true, error, nullptr});
}

void FakeFaults::FailAnyCall(unsigned n, std::uint32_t error) {
    FailCall("", n, error);
}

void FakeFaults::FailAnyCallsFrom(unsigned n, std::uint32_t error) {
    FailCallsFrom("", n, error);
}

void FakeFaults::Before(const std::string& function, unsigned n, std::function<void()> action) {
    Add({function, n, false, 0, std::move(action)});
}

unsigned FakeFaults::Hits() const {
    const Lock lock(mutex_);
    return hits_;
}

std::vector<std::string> FakeFaults::Calls() const {
    const Lock lock(mutex_);
    return calls_;
}

void FakeFaults::ForgetCalls() {
    const Lock lock(mutex_);
    calls_.clear();
}

std::uint32_t FakeFaults::Take(const std::string& function) {
    const Lock lock(mutex_);
    calls_.push_back(function);
    std::uint32_t error = 0;
    std::vector<std::function<void()>> actions;  // run last, because they may set faults themselves
    for (Fault& fault : faults_) {
        if (!fault.function.empty() && fault.function != function) {
            continue;
        }
        ++fault.calls;
        const bool due = fault.forEver ? fault.calls >= fault.n : fault.calls == fault.n;
        if (!due) {
            continue;
        }
        if (fault.action) {
            actions.push_back(fault.action);
        } else if (error == 0) {
            error = fault.error;
        }
    }
    for (const auto& action : actions) {
        action();
    }
    if (error != 0) {
        ++hits_;
    }
    return error;
}
