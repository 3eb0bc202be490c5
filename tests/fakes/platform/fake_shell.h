// Stands in for the shell library, which can be loaded, and keeps the notifications for Explorer.

#ifndef PLENXSDK_FAKES_PLATFORM_FAKE_SHELL_H
#define PLENXSDK_FAKES_PLATFORM_FAKE_SHELL_H

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

class FakeShell {
public:
    struct Notification {
        std::int32_t event;
        std::uint32_t flags;
        std::wstring path;  // the first item, up to its terminator
        bool hasSecondItem;
    };

    explicit FakeShell(std::recursive_mutex& mutex) : mutex_(mutex) {}

    void Reset();
    /// How many loads of the library have not been freed yet.
    int Loads() const;
    void CountLoads(int change);

    void Add(Notification notification);
    std::vector<Notification> Notifications() const;

private:
    std::recursive_mutex& mutex_;
    std::vector<Notification> notifications_;
    int loads_ = 0;
};

#endif  // PLENXSDK_FAKES_PLATFORM_FAKE_SHELL_H
