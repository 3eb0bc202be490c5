#include "judge/bring_up.h"

#include <utility>

#include "judge/caller.h"
#include "judge/launcher.h"
#include "judge/manager_endpoint.h"
#include "support/process_size.h"

namespace PlenxJudge {
namespace {

std::unique_ptr<Launcher> MakeLauncher(const Way& way) {
    switch (way.kind) {
    case Way::Kind::kService:
        return MakeService(way);
    case Way::Kind::kConsole:
        return MakeConsole(way);
    case Way::Kind::kEndpoint:
        break;
    }
    return MakeAttached(way);
}

class RealProgram : public Program {
public:
    RealProgram(const Way& way, Inbox& inbox)
        : role_(way.role),
          patience_(way.patience),
          inbox_(inbox),
          caller_(way.Endpoint()),
          launcher_(MakeLauncher(way)) {}

    Answer Call(const Request& request) override {
        return caller_.Call({request}, patience_).front();
    }
    std::vector<Answer> CallAtOnce(const std::vector<Request>& requests) override {
        return caller_.Call(requests, patience_);
    }
    void VanishDuring(const Request& request) override { caller_.VanishDuring(request); }

    bool IsUp() override { return launcher_->IsUp(); }
    bool Restart() override { return launcher_->Restart(); }
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
    Caller caller_;
    const std::unique_ptr<Launcher> launcher_;
};

}  // namespace

std::unique_ptr<Program> BringUp(const Way& way) {
    // Calls may come in as long as the process lives.
    static Inbox& inbox = *new Inbox;
    ServeManager(inbox);
    return std::make_unique<RealProgram>(way, inbox);
}

}  // namespace PlenxJudge
