// One run of the program: the observers, their notifications, the result of the last command,
// and how the expectations fared. Commands work on it, one after the other, on one thread;
// only Interrupt and Current may be called from others.

#ifndef PLENXKIT_HOST_SESSION_H
#define PLENXKIT_HOST_SESSION_H

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/behaviour.h"
#include "host/inbox.h"
#include "host/observer.h"
#include "host/output.h"
#include "host/report.h"

namespace PlenxHost {

class Session;

/// A command with its arguments, ready to run.
using Action = std::function<Outcome(Session&)>;

struct Step {
    std::string place;  ///< File and line; empty for commands that are typed.
    std::string name;
    std::string text;
    Action action;
};

/// The arguments of Init that the command line gives.
struct InitArguments {
    std::string install;
    std::string data;
    std::string third;
    bool flag = false;
};

class Session {
public:
    Session(InitArguments init, Output& output);
    ~Session() { UnregisterAll(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void Run(const Step& step);
    bool HasEnded() const { return quitCode_.has_value() || inbox_.Interrupted(); }
    /// Unregisters the observers. @return how the expectations fared
    EndReport Finish(bool timedOut);

    /// Ends the run as soon as possible. Any thread may call it.
    void Interrupt();
    /// The command that is running.
    std::string Current() const;

    // The commands use the operations below.
    const InitArguments& Init() const { return init_; }
    Inbox& Received() { return inbox_; }
    Behaviour& Reactions() { return behaviour_; }
    const Outcome& Last() const { return last_; }
    void Say(const std::string& text);
    void Quit(int exitCode) { quitCode_ = exitCode; }
    void Register(const std::string& observer);
    void Unregister(const std::string& observer);

private:
    void UnregisterAll();
    HostObserver* Observer(const std::string& name);
    Outcome Perform(const Step& step);
    void Judge(const Outcome& outcome);
    void SetCurrent(const std::string& text);

    const InitArguments init_;
    Output& output_;
    Inbox inbox_;
    Behaviour behaviour_;
    std::map<std::string, std::unique_ptr<HostObserver>> observers_;
    std::set<std::string> registered_;
    Outcome last_;
    std::optional<int> quitCode_;
    int expectations_ = 0;
    std::vector<std::string> failures_;
    mutable std::mutex currentMutex_;
    std::string current_;  // guarded by currentMutex_
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_SESSION_H
