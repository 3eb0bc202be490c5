#include "platform/fake_platform.h"

#include <algorithm>
#include <string_view>

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

bool IsCallOfOne(const std::string& line, std::initializer_list<const char*> functions) {
    const std::string_view name = std::string_view(line).substr(0, line.find('('));
    return std::find(functions.begin(), functions.end(), name) != functions.end();
}

}  // namespace

FakePlatform& FakePlatform::Get() {
    // It is never destroyed, because the product's statics still call the platform at process end.
    static FakePlatform& platform = *new FakePlatform;
    return platform;
}

FakePlatform::FakePlatform() {
    Reset();
}

void FakePlatform::Reset() {
    const Lock lock(mutex_);
    faults_.Reset();
    clock_.Reset();
    shell_.Reset();
    files_.Reset();
    scm_.Reset();
    processes_.Reset();
    calls_.clear();
    pinCount_ = 0;
    processEnds_ = false;
}

void FakePlatform::Record(const std::string& line) {
    const Lock lock(mutex_);
    calls_.push_back(line);
}

std::vector<std::string> FakePlatform::Calls() const {
    const Lock lock(mutex_);
    return calls_;
}

std::vector<std::string> FakePlatform::CallsOf(std::initializer_list<const char*> functions) const {
    std::vector<std::string> calls = Calls();
    calls.erase(std::remove_if(calls.begin(), calls.end(),
                               [&](const auto& line) { return !IsCallOfOne(line, functions); }),
                calls.end());
    return calls;
}

std::vector<std::string> FakePlatform::CallsWithout(
    std::initializer_list<const char*> functions) const {
    std::vector<std::string> calls = Calls();
    calls.erase(std::remove_if(calls.begin(), calls.end(),
                               [&](const auto& line) { return IsCallOfOne(line, functions); }),
                calls.end());
    return calls;
}

void FakePlatform::ForgetCalls() {
    const Lock lock(mutex_);
    calls_.clear();
}

std::vector<std::string> FakePlatform::OpenHandles() const {
    const Lock lock(mutex_);
    std::vector<std::string> open = scm_.OpenHandles();
    for (const auto& more : {processes_.OpenHandles(), files_.OpenListings()}) {
        open.insert(open.end(), more.begin(), more.end());
    }
    return open;
}

void FakePlatform::CountPin() {
    const Lock lock(mutex_);
    ++pinCount_;
}

unsigned FakePlatform::PinCount() const {
    const Lock lock(mutex_);
    return pinCount_;
}

void FakePlatform::EndProcess() {
    processEnds_ = true;
}

bool FakePlatform::ProcessEnds() const {
    return processEnds_;
}
