// Tells whether this thread is inside a fake at the moment. Tests that let allocations fail must
// spare the fakes' own allocations.

#ifndef PLENXSDK_FAKES_PLATFORM_FAKE_SCOPE_H
#define PLENXSDK_FAKES_PLATFORM_FAKE_SCOPE_H

class FakeScope {
public:
    FakeScope() noexcept { ++depth_; }
    ~FakeScope() { --depth_; }
    FakeScope(const FakeScope&) = delete;
    FakeScope& operator=(const FakeScope&) = delete;

    static bool IsInside() noexcept { return depth_ != 0; }

private:
    static inline thread_local unsigned depth_ = 0;
};

#endif  // PLENXSDK_FAKES_PLATFORM_FAKE_SCOPE_H
