// Gives each category folder its icon, by a desktop.ini in that folder.

#include <fstream>

#include "common/log.h"
#include "engine/plenx_manager_inner.h"

namespace DistributedFs {
namespace {

constexpr const char* kCategories[] = {"archive", "file", "audio", "picture", "video"};

// The stream is binary, so that the bytes are the same on every platform.
void WriteDesktopIni(std::ostream& file, const std::string& folder, const std::string& category) {
    file << "[.ShellClassInfo]\r\n"
         << "IconResource=" << folder << "\\" << category << ".ico,0\r\n"
         << "InfoTip=Categories\r\n"
         << "[ViewState]\r\n"
         << "Mode=\r\n"
         << "Vid=\r\n"
         << "FolderType=Generic\r\n"
         << std::flush;
}

}  // namespace

// The installer brings the folders; when one is missing, opening the file fails.
void PLENXManagerInner::CreateFileIcon(const std::string& rootDir) {
    for (const std::string category : kCategories) {
        const std::string folder = rootDir + "\\res\\plenx\\icon\\" + category;
        const std::string path = folder + "\\desktop.ini";
        std::ofstream file;
        // The system would open, and overwrite, the file that the path names up to a NUL.
        if (path.find('\0') == std::string::npos) {
            file.open(path, std::ios::binary | std::ios::trunc);
        }
        if (!file.is_open()) {
            LogError("DistributedFs::PLENXManagerInner::CreateFileIcon", "[PLENXSDK] open file",
                     path, " error");
            continue;
        }
        WriteDesktopIni(file, folder, category);
    }
}

}  // namespace DistributedFs
