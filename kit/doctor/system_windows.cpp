#include "doctor/system.h"

#include <windows.h>

#include <aclapi.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "doctor/imports.h"
#include "doctor/ping.h"
#include "support/handle.h"
#include "support/wide_text.h"

namespace PlenxHost {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr int kMostLookedAt = 10000;  // FirstHeld looks at no more paths than this

fs::path PathOf(const std::string& text) {
    return fs::u8path(text);
}

// Opens the path for a moment. @return the system's error.
DWORD OpenError(const fs::path& path, DWORD access) {
    const PlenxSupport::Handle file(
        CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    return file ? NO_ERROR : GetLastError();
}

// Finds the fixed part of the version, which lies in the resource behind its own signature.
std::optional<std::string> FixedVersion(const unsigned char* bytes, DWORD size) {
    constexpr DWORD kSignature = 0xFEEF04BD;
    VS_FIXEDFILEINFO info{};
    for (DWORD offset = 0; offset + sizeof(info) <= size; offset += sizeof(DWORD)) {
        std::memcpy(&info, bytes + offset, sizeof(info));
        if (info.dwSignature == kSignature) {
            return std::to_string(HIWORD(info.dwFileVersionMS)) + "." +
                   std::to_string(LOWORD(info.dwFileVersionMS)) + "." +
                   std::to_string(HIWORD(info.dwFileVersionLS)) + "." +
                   std::to_string(LOWORD(info.dwFileVersionLS));
        }
    }
    return std::nullopt;
}

// The well-known groups that everybody on the PC is in.
struct Group {
    WELL_KNOWN_SID_TYPE type;
    const char* name;
};
constexpr Group kCommonGroups[] = {
    {WinWorldSid, "Everyone"},
    {WinAuthenticatedUserSid, "Authenticated Users"},
    {WinBuiltinUsersSid, "Users"},
};

bool MayWrite(PACL list, const Group& group) {
    // Any of these is enough to replace a file of the folder, or to gain the right to do so.
    constexpr DWORD kWrite =
        FILE_ADD_FILE | FILE_DELETE_CHILD | WRITE_DAC | WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;
    unsigned char sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof(sid);
    if (!CreateWellKnownSid(group.type, nullptr, sid, &size)) {
        return false;
    }
    for (WORD i = 0; i != list->AceCount; ++i) {
        void* entry = nullptr;
        if (!GetAce(list, i, &entry)) {
            continue;
        }
        const auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
            (allowed->Header.AceFlags & INHERIT_ONLY_ACE) == 0 && (allowed->Mask & kWrite) != 0 &&
            EqualSid(sid, const_cast<DWORD*>(&allowed->SidStart))) {
            return true;
        }
    }
    return false;
}

bool ProcessIsThere(DWORD id) {
    const PlenxSupport::Handle process(
        OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    if (!process) {
        return GetLastError() == ERROR_ACCESS_DENIED;
    }
    return WaitForSingleObject(process.Get(), 0) == WAIT_TIMEOUT;
}

// The service manager writes this value when it waits for the last handle to close.
bool HasDeleteFlag(const std::wstring& name) {
    DWORD flag = 0;
    DWORD size = sizeof(flag);
    const std::wstring key = L"SYSTEM\\CurrentControlSet\\Services\\" + name;
    return RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"DeleteFlag", RRF_RT_REG_DWORD, nullptr,
                        &flag, &size) == ERROR_SUCCESS &&
           flag != 0;
}

bool ReadConfiguration(SC_HANDLE service, ServiceFacts& facts) {
    DWORD size = 0;
    QueryServiceConfigW(service, nullptr, 0, &size);
    std::vector<unsigned char> buffer(size + sizeof(QUERY_SERVICE_CONFIGW));
    auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer.data());
    if (!QueryServiceConfigW(service, config, static_cast<DWORD>(buffer.size()), &size)) {
        return false;
    }
    facts.program = PlenxSupport::ToUtf8(config->lpBinaryPathName);
    facts.startType = static_cast<StartType>(config->dwStartType);
    return true;
}

bool ReadStatus(SC_HANDLE service, ServiceFacts& facts) {
    SERVICE_STATUS_PROCESS status{};
    DWORD size = 0;
    if (!QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<LPBYTE>(&status),
                              sizeof(status), &size)) {
        return false;
    }
    facts.state = static_cast<ServiceState>(status.dwCurrentState);
    facts.processId = status.dwProcessId;
    facts.processIsThere = status.dwProcessId == 0 || ProcessIsThere(status.dwProcessId);
    return true;
}

class WindowsSystem : public System {
public:
    PathKind Look(const std::string& path) override {
        const DWORD attributes = GetFileAttributesW(PathOf(path).c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) {
            return PathKind::kAbsent;
        }
        return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? PathKind::kFolder : PathKind::kFile;
    }

    // This does not need version.dll. It reads the file as data and runs none of its code.
    std::optional<std::string> VersionOf(const std::string& file) override {
        const PlenxSupport::Module module(
            LoadLibraryExW(PathOf(file).c_str(), nullptr,
                           LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
        const HRSRC place = module ? FindResourceW(module.Get(), MAKEINTRESOURCEW(VS_VERSION_INFO),
                                                   MAKEINTRESOURCEW(16))
                                   : nullptr;
        const HGLOBAL block = place != nullptr ? LoadResource(module.Get(), place) : nullptr;
        const void* const bytes = block != nullptr ? LockResource(block) : nullptr;
        if (bytes == nullptr) {
            return std::nullopt;
        }
        return FixedVersion(static_cast<const unsigned char*>(bytes),
                            SizeofResource(module.Get(), place));
    }

    std::vector<std::string> ImportsOf(const std::string& file) override {
        std::ifstream in(PathOf(file), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        return ImportedDlls(bytes);
    }

    bool HasSystemDll(const std::string& name) override {
        std::wstring folder(MAX_PATH, L'\0');
        folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
        return Look((fs::path(folder) / PathOf(name)).u8string()) == PathKind::kFile;
    }

    std::uint32_t WriteError(const std::string& folder) override {
        return OpenError(PathOf(folder), FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD);
    }

    std::vector<std::string> CommonWriters(const std::string& folder) override {
        PACL list = nullptr;
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        std::wstring path = PathOf(folder).wstring();
        std::vector<std::string> writers;
        if (GetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                  nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS) {
            return writers;
        }
        for (const Group& group : kCommonGroups) {
            // Without an access list, everybody may do everything.
            if (list == nullptr || MayWrite(list, group)) {
                writers.push_back(group.name);
            }
        }
        LocalFree(descriptor);
        return writers;
    }

    // The access and the sharing are those of a removal, but nothing is removed.
    std::optional<std::string> FirstHeld(const std::string& folder) override {
        const fs::path root = PathOf(folder);
        const auto held = [](const fs::path& path) {
            return OpenError(path, DELETE) == ERROR_SHARING_VIOLATION;
        };
        if (held(root)) {
            return folder;
        }
        std::error_code error;
        fs::recursive_directory_iterator next(root, error);
        for (int looked = 0;
             !error && next != fs::recursive_directory_iterator() && looked != kMostLookedAt;
             next.increment(error), ++looked) {
            if (held(next->path())) {
                return next->path().u8string();
            }
        }
        return std::nullopt;
    }

    bool IsElevated() override {
        HANDLE raw = nullptr;
        if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &raw)) {
            return false;
        }
        const PlenxSupport::Handle token(raw);
        TOKEN_ELEVATION elevation{};
        DWORD size = 0;
        return GetTokenInformation(token.Get(), TokenElevation, &elevation, sizeof(elevation),
                                   &size) &&
               elevation.TokenIsElevated != 0;
    }

    std::uint32_t ServiceManagerError() override {
        const PlenxSupport::ServiceHandle manager(
            OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
        return manager ? NO_ERROR : GetLastError();
    }

    ServiceFacts Service(const std::string& name) override {
        ServiceFacts facts;
        const std::wstring wide = PathOf(name).wstring();
        const PlenxSupport::ServiceHandle manager(
            OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
        if (!manager) {
            facts.error = GetLastError();
            return facts;
        }
        const PlenxSupport::ServiceHandle service(
            OpenServiceW(manager.Get(), wide.c_str(), SERVICE_QUERY_CONFIG | SERVICE_QUERY_STATUS));
        if (!service || !ReadConfiguration(service.Get(), facts) ||
            !ReadStatus(service.Get(), facts)) {
            facts.error = GetLastError();
            return facts;
        }
        facts.markedForDelete = HasDeleteFlag(wide);
        return facts;
    }

    bool IsServed(const std::string& endpoint) override { return PlenxHost::IsServed(endpoint); }
    PingAnswer Ping(const std::string& endpoint) override { return PlenxHost::Ping(endpoint); }
};

}  // namespace

std::unique_ptr<System> MakeSystem() {
    return std::make_unique<WindowsSystem>();
}

std::string ProgramFolder() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return fs::path(path).parent_path().u8string();
}

}  // namespace PlenxHost
