// On other systems these commands only report that they need Windows.

#include "doctor/command.h"
#include "ending.h"
#include "host/command.h"
#include "judge/bring_up.h"
#include "judge/command.h"
#include "scenario/command.h"
#include "streams.h"
#include "verify/command.h"
#include "verify/system.h"

namespace {

int NeedsWindows(const char* command, const PlenxKit::Streams& streams) {
    streams.err << "plenxkit " << command << ": this command needs Windows\n";
    return PlenxKit::kWrongUsage;
}

}  // namespace

int PlenxHost::RunHost(const HostOptions&, const PlenxKit::Streams& streams) {
    return NeedsWindows("host", streams);
}

int PlenxHost::RunDoctor(const DoctorOptions&, const PlenxKit::Streams& streams) {
    return NeedsWindows("doctor", streams);
}

int PlenxScenario::Run(const Options&, const PlenxKit::Streams& streams) {
    return NeedsWindows("scenario", streams);
}

// The judge lists its checks and compares earlier runs everywhere.
std::unique_ptr<PlenxJudge::Program> PlenxJudge::BringUp(const Way&, PlenxSupport::Interruption&) {
    throw Refusal("this command needs Windows");
}

int PlenxJudge::RunCaller(const CallerOptions&, const PlenxKit::Streams& streams) {
    return NeedsWindows("judge-caller", streams);
}

// Verify lists its stages everywhere.
std::unique_ptr<PlenxVerify::System> PlenxVerify::MakeSystem(PlenxSupport::Interruption&) {
    throw Refusal("this command needs Windows");
}

int PlenxVerify::RunWatcher(const WatcherOptions&, const PlenxKit::Streams& streams) {
    return NeedsWindows("verify-watcher", streams);
}
