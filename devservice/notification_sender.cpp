#include "notification_sender.h"

#include <algorithm>
#include <string>

#include "rpc/interface/manager_call.h"
#include "rpc/interface/rpc_memory.h"
#include "scenario.h"
#include "wire/catalog.h"
#include "wire/local_binding.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

constexpr ULONGLONG kTryForMilliseconds = 5000;
constexpr DWORD kBetweenTries = 100;
constexpr std::size_t kLongestQueue = 10000;

PlenxManagerReply CallManager(const Notification& notification) {
    PlenxManagerReply reply = {};
    const PlenxWire::LocalBinding binding(L"Manager");
    if (binding.Status() != RPC_S_OK) {
        reply.raised = 1;
        reply.exceptionCode = static_cast<unsigned long>(binding.Status());
        return reply;
    }
    plenxManagerBinding = binding.Get();
    // An empty message still needs an address.
    static const unsigned char kNothing[1] = {};
    const PlenxWire::Bytes& message = notification.message;
    PlenxCallManager(notification.id, static_cast<long>(message.size()),
                     message.empty() ? kNothing : message.data(), &reply);
    return reply;
}

std::string Described(const PlenxManagerReply& reply) {
    if (reply.raised) {
        return "exception " + std::to_string(reply.exceptionCode);
    }
    std::string text = "result:" + std::to_string(reply.result);
    if (!reply.block || reply.size <= 0) {
        return text + " reply:none";
    }
    const PlenxWire::Decoded decoded =
        PlenxWire::DecodeReply(reply.block, static_cast<std::size_t>(reply.size));
    if (decoded.Ok()) {
        return text + " reply:" + std::to_string(std::get<std::int32_t>(decoded.arguments[0]));
    }
    return text + " reply broken: " + decoded.error;
}

}  // namespace

NotificationSender::NotificationSender(ServiceLog& log)
    : log_(log),
      queued_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      stop_(PlenxSupport::MakeEvent()),
      thread_(CreateThread(nullptr, 0, ThreadEntry, this, 0, nullptr)) {}

NotificationSender::~NotificationSender() {
    Stop(INFINITE);
}

void NotificationSender::Enqueue(const Notifications& notifications, DWORD delay) {
    std::size_t dropped = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const ULONGLONG due = GetTickCount64() + delay;
        for (const Notification& notification : notifications) {
            if (queue_.size() < kLongestQueue) {
                queue_.emplace(due, notification);  // goes after those of the same tick
            } else {
                ++dropped;
            }
        }
    }
    SetEvent(queued_.Get());
    if (dropped > 0) {
        log_.Write("dropped " + std::to_string(dropped) + " notifications: the queue is full");
    }
}

bool NotificationSender::Stop(DWORD milliseconds) {
    SetEvent(stop_.Get());
    return WaitForSingleObject(thread_.Get(), milliseconds) == WAIT_OBJECT_0;
}

DWORD WINAPI NotificationSender::ThreadEntry(void* sender) {
    static_cast<NotificationSender*>(sender)->Work();
    return 0;
}

void NotificationSender::Work() {
    const HANDLE events[] = {queued_.Get(), stop_.Get()};
    bool stopping = false;
    while (!stopping) {
        WaitForMultipleObjects(2, events, FALSE, UntilNext());
        stopping = IsSet(stop_);
        for (Queued next; Take(next);) {
            Deliver(next);
        }
    }
}

bool NotificationSender::Take(Queued& next) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto first = queue_.begin();
    if (first == queue_.end() || first->first > GetTickCount64()) {
        return false;
    }
    next = {first->first, std::move(first->second)};
    queue_.erase(first);
    return true;
}

DWORD NotificationSender::UntilNext() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (queue_.empty()) {
        return INFINITE;
    }
    const ULONGLONG now = GetTickCount64();
    const ULONGLONG due = queue_.begin()->first;
    return due > now ? static_cast<DWORD>(due - now) : 0;
}

void NotificationSender::Deliver(const Queued& queued) {
    const Notification& notification = queued.notification;
    if (notification.scenarioLine != 0) {
        log_.Write(TurnOfLine(notification.scenarioLine));
    }
    const std::string remark =
        notification.remark.empty() ? "" : " hostile (" + notification.remark + ")";
    log_.Write("sends" + remark + " " +
               PlenxWire::RenderMessage(notification.id, notification.message.data(),
                                        notification.message.size()));
    for (bool first = true;; first = false) {
        const PlenxManagerReply reply = CallManager(notification);
        const std::string line =
            "Manager answered " + PlenxWire::RenderId(notification.id) + " " + Described(reply);
        MIDL_user_free(reply.block);
        if (!reply.raised || !IsWorthAnotherTry(reply.exceptionCode, queued)) {
            log_.Write(line);
            return;
        }
        if (first) {
            log_.Write(line + ", trying again");
        }
        WaitForSingleObject(stop_.Get(), kBetweenTries);
    }
}

// The library's listener may not be ready yet, or may be only partly ready.
bool NotificationSender::IsWorthAnotherTry(unsigned long status, const Queued& queued) {
    const bool absent = status == RPC_S_SERVER_UNAVAILABLE || status == RPC_S_UNKNOWN_IF ||
                        status == RPC_S_NOT_LISTENING;
    return absent && !IsSet(stop_) && GetTickCount64() - queued.dueAt < kTryForMilliseconds;
}

}  // namespace PlenxService
