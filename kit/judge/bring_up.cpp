#include "judge/bring_up.h"

#include <utility>

#include "judge/caller.h"
#include "judge/launcher.h"
#include "judge/manager_endpoint.h"
#include "support/console_watch.h"
#include "support/process_size.h"

namespace PlenxJudge {
namespace {

using PlenxSupport::Interruption;

std::unique_ptr<Launcher> MakeLauncher(const Way& way, const Interruption& interruption) {
    switch (way.kind) {
    case Way::Kind::kService:
        return MakeService(way, interruption);
    case Way::Kind::kConsole:
        return MakeConsole(way, interruption);
    case Way::Kind::kEndpoint:
        break;
    }
    return MakeAttached(way);
}

class RealProgram : public Program {
public:
    RealProgram(const Way& way, Inbox& inbox, Interruption& interruption)
        : role_(way.role),
          patience_(way.patience),
          inbox_(inbox),
          interruption_(interruption),
          watch_(interruption),
          caller_(way.Endpoint(), interruption),
          launcher_(MakeLauncher(way, interruption)) {}

    Answer Call(const Request& request) override { return CallAtOnce({request}).front(); }
    std::vector<Answer> CallAtOnce(const std::vector<Request>& requests) override {
        return interruption_.IsRaised() ? std::vector<Answer>(requests.size())
                                        : caller_.Call(requests, patience_);
    }
    void VanishDuring(const Request& request) override {
        if (!interruption_.IsRaised()) {
            caller_.VanishDuring(request);
        }
    }

    bool IsUp() override { return launcher_->IsUp(); }
    bool Restart() override { return !interruption_.IsRaised() && launcher_->Restart(); }
    Service* AsService() override { return launcher_->AsService(); }
    std::string CleanUp() override { return launcher_->CleanUp(); }

    std::optional<Footprint> Measure() override {
        const HANDLE process = launcher_->Process();
        if (process == nullptr) {
            return std::nullopt;
        }
        const Footprint footprint{PlenxSupport::PrivateBytesOf(process),
                                  PlenxSupport::HandlesOf(GetProcessId(process))};
        return footprint.bytes == 0 || footprint.handles == 0 ? std::nullopt
                                                              : std::optional(footprint);
    }

    Inbox& Manager() override { return inbox_; }
    void HideManager(bool hidden) override { PlenxJudge::HideManager(hidden); }
    int Role() const override { return role_; }

private:
    const int role_;
    const std::chrono::milliseconds patience_;
    Inbox& inbox_;
    const Interruption& interruption_;
    const PlenxSupport::ConsoleWatch watch_;
    Caller caller_;
    const std::unique_ptr<Launcher> launcher_;
};

}  // namespace

std::unique_ptr<Program> BringUp(const Way& way, Interruption& interruption) {
    // Calls may come in as long as the process lives.
    static Inbox& inbox = *new Inbox(interruption);
    ServeManager(inbox);
    return std::make_unique<RealProgram>(way, inbox, interruption);
}

}  // namespace PlenxJudge
