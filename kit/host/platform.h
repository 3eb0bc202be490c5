// The few things that the system does for this program.

#ifndef PLENXHOST_PLATFORM_H
#define PLENXHOST_PLATFORM_H

#include <cstdint>
#include <string>

namespace PlenxHost {

/// The calling thread's id, as the log files show it.
std::uint32_t CurrentThreadNumber();

/// UTF-8 for consoles and untouched bytes for files and pipes, while the object lives.
class StandardStreams {
public:
    StandardStreams();
    ~StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;

    bool InputIsConsole() const { return inputIsConsole_; }
    bool OutputIsConsole() const { return consoleCodePage_ != 0; }
    /// Whether it is a terminal that obeys escape sequences.
    bool OutputIsTerminal() const { return outputIsTerminal_; }
    bool ErrorsAreTerminal() const { return errorsAreTerminal_; }
    /// The next line of the input as UTF-8; false at its end.
    bool ReadLine(std::string& line) const;

private:
    bool inputIsConsole_ = false;
    bool outputIsTerminal_ = false;
    bool errorsAreTerminal_ = false;
    std::uint32_t outputMode_ = 0;
    unsigned int consoleCodePage_ = 0;
};

/// Ends the process of a service by force; the service manager knows which one it is.
/// @return 0 or a Windows error.
std::uint32_t EndServiceProcess(const std::string& service);

/// Ends the process at once, whatever its threads do; DLLs are still told.
[[noreturn]] void EndProcess(int exitCode);

}  // namespace PlenxHost

#endif  // PLENXHOST_PLATFORM_H
