#include "late_caller.h"

#include <windows.h>

#include <sstream>

#include "distributed_file_manager.h"
#include "log_helper.h"

namespace {

// The busy threads write no call lines. Under Wine, a thread that is ended while it opens a file
// can leave the whole process unable to open another one.
void WriteCallsFromNowOn() {
    wchar_t file[MAX_PATH];
    if (GetEnvironmentVariableW(L"PLENX_LATE_OFFICE_LOG", file, MAX_PATH) != 0) {
        SetEnvironmentVariableW(L"PLENX_OFFICE_LOG", file);
    }
}

class LateCaller {
public:
    ~LateCaller() {
        WriteCallsFromNowOn();
        const int code = office.UninstallPackages();
        std::wostringstream line;
        line << L"late line, office code " << code;
        OvLogger::GetInstance()->Log(LOG_MESSAGE_LEVEL_ERROR, line);
    }

    DistributedFileManager office{"install", "data", "third", false};
};

LateCaller lateCaller;

}  // namespace

DistributedFileManager& LateOffice() {
    return lateCaller.office;
}
