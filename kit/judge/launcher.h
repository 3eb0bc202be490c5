// How the program under judgement comes up and goes down.

#ifndef PLENXKIT_JUDGE_LAUNCHER_H
#define PLENXKIT_JUDGE_LAUNCHER_H

#include <windows.h>

#include <chrono>
#include <memory>
#include <string>

#include "judge/bring_up.h"
#include "judge/program.h"
#include "support/handle.h"
#include "support/interruption.h"

namespace PlenxJudge {

class Launcher {
public:
    virtual ~Launcher() = default;

    virtual bool IsUp() = 0;
    /// Ends what is left of it and brings it up.
    virtual bool Restart() = 0;
    virtual Service* AsService() { return nullptr; }
    /// Null when it is not known.
    virtual HANDLE Process() = 0;
    /// Removes everything. @return what is left, or nothing.
    virtual std::string CleanUp() = 0;
};

/// For the endpoint of a program that somebody else has started.
std::unique_ptr<Launcher> MakeAttached(const Way& way);
/// An interruption ends their waits, but not those of the removal.
std::unique_ptr<Launcher> MakeConsole(const Way& way,
                                      const PlenxSupport::Interruption& interruption);
std::unique_ptr<Launcher> MakeService(const Way& way,
                                      const PlenxSupport::Interruption& interruption);

/// The fresh folders of a run: the work folder, and in it the data folder, which is not made.
struct Folders {
    std::wstring work;
    std::wstring data;
    std::wstring highest;  // of those that were not there before the run
};

Folders MakeFolders(const Way& way);
/// Removes what MakeFolders has made, with all that is in the work folder. Keeps trying for up to
/// that time. @return why the work folder cannot be removed, or nothing.
std::string RemoveFolders(const Folders& folders, std::chrono::milliseconds longest);
/// Keeps trying for up to that time. @return why it cannot be removed, or nothing.
std::string RemoveFolder(const std::wstring& folder, std::chrono::milliseconds longest);
/// Waits until somebody listens at the endpoint. @return false when the process ends, at an
/// interruption, and when the time is over.
bool WaitUntilServed(const std::string& endpoint, HANDLE process,
                     const PlenxSupport::Interruption& interruption);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_LAUNCHER_H
