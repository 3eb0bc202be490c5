// The service's log. Each call writes one UTF-8 line with the local time to the millisecond and the
// service's nickname. The line is on disk before the call returns.
//
//     2026-01-31 12:34:56.789 pc received PingService(19) number:0
//
// Lines go to service.log in the data folder, to a second file when one is named, and to the
// console when there is one. A file is open only while a line is written, and is shared fully, so
// that the library can remove the folder at any time. The log does not make a folder again that is
// gone. Any thread may write, and nothing is thrown.

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

    /// An empty path means no second file.
    void SetSecondFile(std::wstring path);

    /// Stops writing to the data folder, because the library removes it as soon as the service is
    /// stopped.
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
