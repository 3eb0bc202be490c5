#include "control_file.h"

#include <windows.h>

#include "handle.h"
#include "text/text.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

constexpr DWORD kLargestFile = 64 * 1024;

std::wstring FolderOf(const Identity& identity) {
    wchar_t folder[MAX_PATH];
    const DWORD length = GetEnvironmentVariableW(L"PLENX_SERVICE_CONTROL", folder, MAX_PATH);
    return length > 0 && length < MAX_PATH ? std::wstring(folder, length) : identity.installFolder;
}

// A file that is just being replaced cannot be opened for a moment.
Handle OpenPatiently(const std::wstring& path) {
    for (int attempt = 0;; ++attempt) {
        Handle file(CreateFileW(path.c_str(), GENERIC_READ,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        const DWORD error = file ? NO_ERROR : GetLastError();
        const bool busy = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
        if (!busy || attempt == 20) {
            return file;
        }
        Sleep(5);
    }
}

std::string ReadText(const std::wstring& path) {
    std::string text;
    if (const Handle file = OpenPatiently(path)) {
        text.resize(kLargestFile);
        DWORD size = 0;
        if (!ReadFile(file.Get(), text.data(), kLargestFile, &size, nullptr)) {
            size = 0;
        }
        text.resize(size);
    }
    return text;
}

}  // namespace

ControlFile::ControlFile(const Identity& identity, ServiceLog& log)
    : folder_(FolderOf(identity)), nickname_(identity.nickname), log_(log) {}

Settings ControlFile::Read() {
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::string text = ReadText(folder_ + L"\\plenxservice.ini");
    Settings settings(text, nickname_);
    log_.SetSecondFile(Absolute(settings.Text("log")));
    if (text != lastText_) {
        lastText_ = text;
        log_.Write("control file says " + PlenxWire::RenderText(text));
        for (const std::string& complaint : settings.Complaints()) {
            log_.Write("control file " + complaint);
        }
    }
    return settings;
}

std::wstring ControlFile::Absolute(const std::string& path) const {
    const std::wstring wide = PlenxText::ToWide(path);
    const bool absolute = wide.size() > 1 && (wide[1] == L':' || wide[0] == L'\\');
    return wide.empty() || absolute ? wide : folder_ + L"\\" + wide;
}

}  // namespace PlenxService
