// Makes platform calls fail.
//
// Calls are counted from the moment a fault is set, the first one being 1. Only calls that
// can fail count; closing a handle, asking for the time and the like cannot. A failing call
// has no effect. Its error is the Windows error; functions of the C runtime also set errno
// to what it stands for.

#ifndef PLENXSDK_FAKES_PLATFORM_FAKE_FAULTS_H
#define PLENXSDK_FAKES_PLATFORM_FAKE_FAULTS_H

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

class FakeFaults {
public:
    explicit FakeFaults(std::recursive_mutex& mutex) : mutex_(mutex) {}

    void Reset();

    /// Only the n-th call of the function fails.
    void FailCall(const std::string& function, unsigned n, std::uint32_t error);
    /// The n-th call of the function and all later ones fail.
    void FailCallsFrom(const std::string& function, unsigned n, std::uint32_t error);
    /// The same, over the calls of all functions.
    void FailAnyCall(unsigned n, std::uint32_t error);
    void FailAnyCallsFrom(unsigned n, std::uint32_t error);

    /// Runs the action just before the n-th call of the function takes effect.
    void Before(const std::string& function, unsigned n, std::function<void()> action);

    /// How many calls have failed because of a fault.
    unsigned Hits() const;

    /// The functions of all calls that could have failed, in order.
    std::vector<std::string> Calls() const;
    void ForgetCalls();

    /// For the fakes: to be asked once by every call. The error, or 0.
    std::uint32_t Take(const std::string& function);

private:
    struct Fault {
        std::string function;  // empty: any
        unsigned n;
        bool forEver;
        std::uint32_t error;
        std::function<void()> action;
        unsigned calls = 0;
    };

    void Add(Fault fault);

    std::recursive_mutex& mutex_;
    std::vector<Fault> faults_;
    std::vector<std::string> calls_;
    unsigned hits_ = 0;
};

#endif  // PLENXSDK_FAKES_PLATFORM_FAKE_FAULTS_H
