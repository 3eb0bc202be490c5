// The standard streams of the process: UTF-8 for consoles and untouched bytes for files and pipes,
// while the object lives.

#ifndef PLENXKIT_STANDARD_STREAMS_H
#define PLENXKIT_STANDARD_STREAMS_H

#include <cstdint>
#include <string>

namespace PlenxKit {

class StandardStreams {
public:
    StandardStreams();
    ~StandardStreams();  // NOLINT(performance-trivially-destructible): trivial only on Linux
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;

    bool InputIsConsole() const { return inputIsConsole_; }
    bool OutputIsConsole() const { return outputIsConsole_; }
    /// Whether it is a terminal that obeys escape sequences.
    bool OutputIsTerminal() const { return outputIsTerminal_; }
    bool ErrorsAreTerminal() const { return errorsAreTerminal_; }
    /// The next line of the input as UTF-8; false at its end.
    bool ReadLine(std::string& line) const;

private:
    bool inputIsConsole_ = false;
    bool outputIsConsole_ = false;
    bool outputIsTerminal_ = false;
    bool errorsAreTerminal_ = false;
#ifdef _WIN32
    std::uint32_t outputMode_ = 0;
    unsigned int outputCodePage_ = 0;
#endif
};

}  // namespace PlenxKit

#endif  // PLENXKIT_STANDARD_STREAMS_H
