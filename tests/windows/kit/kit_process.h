// Runs plenxkit as a child process. Commands go in through a pipe, and what it prints is read from
// files. The destructor ends the process.

#ifndef PLENXSDK_TESTS_WINDOWS_KIT_KIT_PROCESS_H
#define PLENXSDK_TESTS_WINDOWS_KIT_KIT_PROCESS_H

#include <windows.h>

#include <string>

namespace PlenxTest {

class KitProcess {
public:
    /// arguments: as on the command line.
    explicit KitProcess(const std::string& arguments);
    ~KitProcess();
    KitProcess(const KitProcess&) = delete;
    KitProcess& operator=(const KitProcess&) = delete;

    void Send(const std::string& line);
    void CloseInput();
    /// Returns whether the process has printed the text, now or within a minute.
    bool Prints(const std::string& text) const;
    /// Closes the input. @return the exit code, or -1 when the process has not ended in time.
    int Wait(DWORD longest = 60000);
    /// Returns everything that was printed to both streams.
    std::string Output() const;
    /// Returns what was printed to the output alone.
    std::string Printed() const;
    void Kill();

private:
    std::wstring outputFile_;
    std::wstring errorFile_;
    HANDLE process_ = nullptr;
    HANDLE input_ = nullptr;
};

struct Finished {
    int exitCode;
    std::string output;
};

/// Runs plenxkit with no input.
Finished RunKit(const std::string& arguments);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_KIT_KIT_PROCESS_H
