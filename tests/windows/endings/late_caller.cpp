// A DLL of the host's own. The destructor of a static object in it calls every public operation of
// the library. When the process ends, this runs after the system has ended all other threads.
//
//     PLENX_LATE_CALLS    the file that gets a line for each call, once it has returned
//     PLENX_LATE_FOLDER   the library's working folder: it is gone once the library was detached

#include <windows.h>

#include <exception>
#include <string>

#include "endings/loaded_library.h"

namespace PlenxTest {
namespace {

std::wstring Variable(const wchar_t* name) {
    wchar_t value[MAX_PATH] = {};
    GetEnvironmentVariableW(name, value, MAX_PATH);
    return value;
}

class LateCaller {
public:
    // This opens the file now. Under Wine, a thread that is ended while it opens a file can leave
    // the process unable to open another.
    LateCaller()
        : file_(CreateFileW(Variable(L"PLENX_LATE_CALLS").c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                            nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)) {}

    ~LateCaller() {
        try {
            const DWORD folder = GetFileAttributesW(Variable(L"PLENX_LATE_FOLDER").c_str());
            Say(folder != INVALID_FILE_ATTRIBUTES ? "before the library" : "after the library");
            CallAll(Library::Loaded());
        } catch (const std::exception& failure) {
            Say(failure.what());
        }
    }

private:
    void CallAll(const Library& library) const {
        constexpr ServiceType kOffice = DistributedFs::kOfficeService;
        constexpr ServiceType kPc = DistributedFs::kPcService;
        constexpr auto kNumber = DistributedFs::kIntegerConfig0;
        constexpr auto kText = DistributedFs::kLocaleConfig;
        auto* const observer = reinterpret_cast<PLENXServiceObserver*>(file_);  // never called

        library.Unregister(observer);
        Say("UnregisterPLENXServiceObserver");
        library.Register(observer);
        Say("RegisterPLENXServiceObserver");
        library.Init("C:\\late", "C:\\late");
        Say("Init");
        library.Destroy();
        Say("Destroy");
        std::string dir = "dir";
        const int code = library.GetOfficeDir(dir);
        Say("GetOfficeDir " + std::to_string(code) + " " + dir);
        Say("GetInt64Config " + std::to_string(library.NotRunning(kPc)));
        Say("GetStringConfig " + library.GetStringConfig(kPc, kText));
        library.SetStringConfig(kPc, kText, "late");
        library.SetIntConfig(kPc, kNumber, 1);
        Say("SetConfig, both");
        Say("Start " + std::to_string(library.Start(kOffice)));
        Say("Start without a group " + std::to_string(library.Start(kOffice, "")));
        Say("Stop " + std::to_string(library.Stop(kOffice)));
        Say("LocalDeviceOnline " + std::to_string(library.LocalDeviceOnline(kOffice, "data")));
        Say("RemoteDeviceOnline " + std::to_string(library.RemoteDeviceOnline(kOffice)));
        Say("LocalDeviceOffline " + std::to_string(library.LocalDeviceOffline(kOffice)));
        Say("RemoteDeviceOffline " + std::to_string(library.RemoteDeviceOffline(kOffice)));
        Say("DeviceNameChanged " + std::to_string(library.Rename("late")));
        Say("RecvRemoteMessage " + std::to_string(library.RecvRemoteMessage("late")));
        const bool same = &library.Manager() == &library.Manager();
        Say(same ? "GetInstance" : "GetInstance differs");
    }

    void Say(const std::string& text) const {
        const std::string line = text + "\n";
        DWORD written = 0;
        WriteFile(file_, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    }

    const HANDLE file_;
};

const LateCaller kLateCaller;

}  // namespace
}  // namespace PlenxTest
