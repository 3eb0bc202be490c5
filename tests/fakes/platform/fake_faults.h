// Makes platform calls fail.
//
// Calls are counted from the moment a fault is set, and the first one is 1. Only calls that can
// fail count; closing a handle or asking for the time cannot. A failing call has no effect. It
// sets the Windows error, and functions of the C runtime also set the matching errno.

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
    /// The n-th call of the function fails, and so do all later ones.
    void FailCallsFrom(const std::string& function, unsigned n, std::uint32_t error);
    /// Does the same, but counts the calls of all functions.
    void FailAnyCall(unsigned n, std::uint32_t error);
    void FailAnyCallsFrom(unsigned n, std::uint32_t error);

    /// Runs the action just before the n-th call of the function takes effect.
    void Before(const std::string& function, unsigned n, std::function<void()> action);

    /// Returns how many calls have failed because of a fault.
    unsigned Hits() const;

    /// Returns the functions of all calls that could have failed, in order.
    std::vector<std::string> Calls() const;
    void ForgetCalls();

    /// For the fakes: every platform call asks this once. Returns the error to fail with, or 0.
    std::uint32_t Take(const std::string& function);

private:
    struct Fault {
        std::string function;  // empty means any
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
