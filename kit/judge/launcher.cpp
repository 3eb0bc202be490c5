#include "judge/launcher.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "judge/manager_endpoint.h"
#include "support/wide_text.h"

namespace PlenxJudge {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kRoles[] = {L"office", L"pc", L"phone"};
constexpr DWORD kUntilServed = 10000;
constexpr DWORD kBetweenLooks = 20;

fs::path UsualWork() {
    const char* const drive = std::getenv("SystemDrive");
    return fs::path(drive != nullptr ? drive : "C:") / "\\plenxkit";
}

// Returns the folder that has to be made first: this one, or one above it that is missing too.
fs::path HighestMissing(fs::path folder) {
    while (folder.has_relative_path() && !fs::exists(folder.parent_path())) {
        folder = folder.parent_path();
    }
    return folder;
}

class Attached : public Launcher {
public:
    explicit Attached(const Way& way) : endpoint_(way.Endpoint()) {
        if (!IsServed(endpoint_)) {
            throw Refusal("nobody serves " + endpoint_);
        }
    }

    bool IsUp() override { return IsServed(endpoint_); }
    // Somebody may start it again.
    bool Restart() override { return IsUp(); }
    HANDLE Process() override { return nullptr; }
    std::string CleanUp() override { return {}; }

private:
    const std::string endpoint_;
};

}  // namespace

Folders MakeFolders(const Way& way) {
    const fs::path work =
        (way.work.empty() ? UsualWork() : fs::absolute(fs::u8path(way.work))) / "judge";
    std::error_code error;
    fs::remove_all(work, error);
    const fs::path highest = HighestMissing(work);
    fs::create_directories(work, error);
    if (!fs::is_directory(work)) {
        throw Refusal("cannot make the folder " + work.u8string());
    }
    return {work.wstring(), (work / kRoles[way.role]).wstring(), highest.wstring()};
}

std::string RemoveFolders(const Folders& folders, std::chrono::milliseconds longest) {
    std::string reason = RemoveFolder(folders.work, longest);
    // If somebody else uses a folder above it by now, that folder is not empty and stays.
    std::error_code ignored;
    fs::path folder = folders.work;
    while (reason.empty() && folder != folders.highest) {
        folder = folder.parent_path();
        fs::remove(folder, ignored);
    }
    return reason;
}

std::string RemoveFolder(const std::wstring& folder, std::chrono::milliseconds longest) {
    std::error_code error;
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(longest.count());
    do {
        fs::remove_all(folder, error);
        if (!error) {
            return {};
        }
        Sleep(kBetweenLooks);
    } while (GetTickCount64() < end);
    return PlenxSupport::ToUtf8(folder) + " cannot be removed: " + error.message();
}

bool WaitUntilServed(const std::string& endpoint, HANDLE process,
                     const PlenxSupport::Interruption& interruption) {
    const ULONGLONG end = GetTickCount64() + kUntilServed;
    while (GetTickCount64() < end && !interruption.IsRaised()) {
        if (IsServed(endpoint)) {
            return true;
        }
        if (WaitForSingleObject(process, kBetweenLooks) == WAIT_OBJECT_0) {
            return false;
        }
    }
    return false;
}

std::unique_ptr<Launcher> MakeAttached(const Way& way) {
    return std::make_unique<Attached>(way);
}

}  // namespace PlenxJudge
