// The control file plenxservice.ini, which a test may change while the service runs: in the
// folder that the environment variable PLENX_SERVICE_CONTROL names, else in the install
// folder. Any thread.

#ifndef PLENXSERVICE_CONTROL_FILE_H
#define PLENXSERVICE_CONTROL_FILE_H

#include <mutex>
#include <string>

#include "identity.h"
#include "service_log.h"
#include "settings.h"

namespace PlenxService {

class ControlFile {
public:
    ControlFile(const Identity& identity, ServiceLog& log);

    /// Reads the file anew; without one there are no settings. Logs what has changed, and
    /// passes the log the second file that it names.
    /// below: what holds where the file says nothing.
    Settings Read(Values below = {});

    const std::wstring& Folder() const { return folder_; }
    /// A relative path begins at the folder.
    std::wstring Absolute(const std::string& path) const;

private:
    const std::wstring folder_;
    const std::string nickname_;
    ServiceLog& log_;
    std::mutex mutex_;
    std::string lastText_;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_CONTROL_FILE_H
