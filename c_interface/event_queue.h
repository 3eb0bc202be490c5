// A queue of notifications, which the host empties whenever it likes. The queue never makes the
// library wait: a notification that does not fit pushes out the oldest.

#ifndef PLENXSDK_C_EVENT_QUEUE_H
#define PLENXSDK_C_EVENT_QUEUE_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <tuple>

#include "event.h"
#include "listener.h"
#include "lock.h"
#include "own_process.h"

namespace PlenxC {

/// Any thread may call these functions.
class EventQueue final : public Listener {
public:
    static constexpr Kind kKind = Kind::kQueue;

    explicit EventQueue(std::uint32_t capacity) : Listener(kKind), capacity_(capacity) {}
    ~EventQueue() override;

    std::int32_t Take(plenx_event& notification) override;

    /// Removes and returns the oldest event, which the caller must free, or null when none came in
    /// time.
    const plenx_event* Next(std::uint32_t milliseconds);

    void SetLinkStatus(std::uint32_t service, std::string group, std::uint32_t link,
                       std::int32_t status);
    void* WaitHandle() noexcept;
    void Cancel() noexcept;
    void Close() noexcept;

private:
    enum class State { kOpen, kCancelled, kClosed };

    // The link answers are sorted by service, link and group.
    using Link = std::tuple<std::uint32_t, std::uint32_t, std::string>;
    using LinkView = std::tuple<std::uint32_t, std::uint32_t, std::string_view>;
    struct ByLink {
        using is_transparent = void;
        template <class Left, class Right>
        bool operator()(const Left& left, const Right& right) const {
            return left < right;
        }
    };

    void AnswerLinkQuery(plenx_event& notification);
    bool Fits(std::size_t length) const noexcept;
    void Append(Event* event) noexcept;
    Event* RemoveOldest() noexcept;
    void DropOldest() noexcept;
    void DropAll() noexcept;
    void End(State state) noexcept;

    const std::uint32_t capacity_;
    Mutex mutex_;
    Condition changed_;
    std::atomic<State> state_{State::kOpen};  // changes under the lock; Take also reads without it
    Event* oldest_ = nullptr;
    Event* newest_ = nullptr;
    std::uint32_t count_ = 0;
    std::size_t textSize_ = 0;  // of all events but the large one
    bool holdsLarge_ = false;   // whether it holds an event with more text than kMostText
    std::uint64_t lost_ = 0;    // events dropped since the newest one
    WaitEvent waitEvent_;       // set while there is an event, and once the queue has ended
    std::map<Link, std::int32_t, ByLink> linkStatus_;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_EVENT_QUEUE_H
