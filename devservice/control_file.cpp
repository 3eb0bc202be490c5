#include "control_file.h"

#include <windows.h>

#include <utility>

#include "text/text.h"
#include "text_file.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

std::wstring FolderOf(const Identity& identity) {
    wchar_t folder[MAX_PATH];
    const DWORD length = GetEnvironmentVariableW(L"PLENX_SERVICE_CONTROL", folder, MAX_PATH);
    return length > 0 && length < MAX_PATH ? std::wstring(folder, length) : identity.installFolder;
}

}  // namespace

ControlFile::ControlFile(const Identity& identity, ServiceLog& log)
    : folder_(FolderOf(identity)), nickname_(identity.nickname), log_(log) {}

Settings ControlFile::Read(Values below) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::string text = ReadTextFile(folder_ + L"\\plenxservice.ini").value_or("");
    Settings settings(text, nickname_, std::move(below));
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
