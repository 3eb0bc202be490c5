#include "peer.h"

#include <algorithm>

#include "hostile.h"
#include "reactions.h"
#include "wire/catalog.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

using PlenxWire::Decoded;
using PlenxWire::RenderId;

std::string Described(const Answer& answer) {
    if (answer.fault != 0) {
        return "fault " + std::to_string(answer.fault);
    }
    std::string text = "result:" + std::to_string(answer.result);
    if (!answer.reply) {
        return text + " reply:none of " + std::to_string(answer.statedSize) + " bytes";
    }
    const Decoded decoded = PlenxWire::DecodeReply(answer.reply->data(), answer.reply->size());
    return decoded.Ok()
               ? text + " reply:" + std::to_string(std::get<std::int32_t>(decoded.arguments[0]))
               : text +
                     " reply:" + PlenxWire::RenderBytes(answer.reply->data(), answer.reply->size());
}

}  // namespace

Peer::Peer(const Identity& identity, ServiceStatus& status, ServiceLog& log,
           ScenarioPlayer& scenario, NotificationSender& sender, const PlenxSupport::Handle& stop)
    : identity_(identity),
      status_(status),
      log_(log),
      scenario_(scenario),
      sender_(sender),
      stop_(stop) {}

Answer Peer::AnswerTo(std::int32_t request, const std::uint8_t* message, std::int32_t size) {
    const Decoded decoded = DecodeRequest(request, message, size);
    log_.Write("received " + (decoded.Ok() ? PlenxWire::RenderMessage(request, decoded.arguments)
                                           : RenderId(request) + " broken: " + decoded.error));

    const Values told = scenario_.StepFor(request);
    EndIfTold(request, told);
    LeakIfTold(told);
    if (const std::int64_t delay = told.Number("delay_ms"); delay > 0) {
        WaitForSingleObject(stop_.Get(), static_cast<DWORD>(delay));
    }

    const std::int32_t honest = HonestCode(request, decoded);
    const auto code = static_cast<std::int32_t>(told.Number("answer", honest));
    const Answer answer = AnswerWith(code, told);
    if (honest == kTaken && code == kTaken && answer.result == 0 && answer.fault == 0) {
        Take(request, decoded.arguments, told);
    }
    log_.Write("answered " + RenderId(request) + " " + Described(answer));
    scenario_.Answered(request);
    return answer;
}

std::string Peer::Summary() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return state_.Summary();
}

// The Service Control Manager may not notice that a process is gone, so a crash first reports
// stopped; "die" reports nothing.
void Peer::EndIfTold(std::int32_t request, const Values& told) {
    if (told.Flag("crash")) {
        log_.Write("crashes at " + RenderId(request));
        status_.Stopped(ERROR_PROCESS_ABORTED);
        TerminateProcess(GetCurrentProcess(), 3);
    }
    if (told.Flag("die")) {
        log_.Write("dies at " + RenderId(request));
        TerminateProcess(GetCurrentProcess(), 3);
    }
}

// What is kept here counts as lost, as in a service that forgets to release it.
void Peer::LeakIfTold(const Values& told) {
    constexpr std::size_t kKib = 1024;
    const std::lock_guard<std::mutex> lock(mutex_);
    for (std::int64_t count = told.Number("leak_handles"); count > 0; --count) {
        lostHandles_.push_back(PlenxSupport::MakeEvent());
    }
    if (const std::int64_t size = told.Number("leak_kib"); size > 0) {
        lostBlocks_.emplace_back(static_cast<std::size_t>(size) * kKib, std::uint8_t{1});
    }
}

void Peer::Take(std::int32_t request, const PlenxWire::Arguments& arguments, const Values& told) {
    Notifications notifications;
    std::string summary;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        state_.Apply(request, arguments);
        summary = state_.Summary();
        if (told.Flag("notify", true)) {
            notifications = ReactionsTo(request, arguments, state_, identity_.dataFolder);
        }
    }
    if (request == PlenxWire::kCreateGroup) {
        log_.Write(summary);
    }
    if (told.Flag("hostile")) {
        const Notifications hostile = HostileNotifications();
        notifications.insert(notifications.end(), hostile.begin(), hostile.end());
    }
    for (std::int64_t round = told.Number("repeat", 1); round > 0; --round) {
        sender_.Enqueue(notifications);
    }
}

}  // namespace PlenxService
