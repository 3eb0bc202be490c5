// Turns what happens to the console into an interruption. It exists on Windows only.

#ifndef PLENXSUPPORT_CONSOLE_WATCH_H
#define PLENXSUPPORT_CONSOLE_WATCH_H

namespace PlenxSupport {

class Interruption;

/// While it lives, Ctrl-C and Ctrl-Break raise the interruption instead of ending the process. A
/// second Ctrl-C ends it at once. A console that is closed raises it, too; Windows then gives the
/// process about 5 seconds to end itself. There is one watch at a time.
class ConsoleWatch {
public:
    explicit ConsoleWatch(Interruption& interruption);
    ~ConsoleWatch();
    ConsoleWatch(const ConsoleWatch&) = delete;
    ConsoleWatch& operator=(const ConsoleWatch&) = delete;
};

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_CONSOLE_WATCH_H
