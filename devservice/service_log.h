// The service's log: one UTF-8 line each, with the local time to the millisecond and the
// service's nickname, on disk before the call returns.
//
//     2026-01-31 12:34:56.789 pc received PingService(19) number:0
//
// It goes to service.log in the data folder, to a second file when one is named, and to the
// console when there is one. Files are open only while a line is written and then shared
// fully, so that the library can remove the folder at any time; a folder that is gone is not
// made again. Any thread; nothing is thrown.

#ifndef PLENXSERVICE_SERVICE_LOG_H
#define PLENXSERVICE_SERVICE_LOG_H

#include <mutex>
#include <string>
#include <string_view>

namespace PlenxService {

class ServiceLog {
public:
    ServiceLog(std::string nickname, const std::wstring& dataFolder, bool toConsole);

    void Write(std::string_view text) noexcept;

    /// Empty: none.
    void SetSecondFile(std::wstring path);

    /// From now on nothing is written to the data folder: the library removes it as soon as
    /// the service is stopped.
    void LeaveDataFolder();

private:
    std::mutex mutex_;
    const std::string nickname_;
    std::wstring file_;
    std::wstring secondFile_;
    const bool toConsole_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_SERVICE_LOG_H
