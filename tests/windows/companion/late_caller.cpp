#include "late_caller.h"

#include <sstream>

#include "distributed_file_manager.h"
#include "log_helper.h"

namespace {

class LateCaller {
public:
    ~LateCaller() {
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
