#include "soak/trouble.h"

#include <windows.h>

#include <vector>

#include "support/install_folder.h"

namespace PlenxSoak {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<const char*>;

const Lines kTroubles[] = {
    {"delay=20"},
    {"delay=150"},
    {"answer.CreateGroup=5"},
    {"answer=-2147483648"},
    {"answer.DeleteGroup=1002"},
    {"reply=empty"},
    {"reply=garbage"},
    {"reply=short"},
    {"reply.CreateGroup=large"},
    {"reply.DeviceOnline=lie"},
    {"reply=hex:18 00 00 00 ff ff ff 7f"},
    {"result.CreateGroup=22"},
    {"result.DeviceOffline=-1"},
    {"notify=no"},
    {"repeat=10"},
    {"hostile.CreateGroup=yes"},
    {"hostile.DeviceOnline=yes", "repeat.DeviceOnline=3"},
    {"hostile.RecvRemoteMessage=yes"},
    {"start_delay=200"},
    {"start_silent=400"},
    {"start_fail=7"},
    {"stop_delay=300"},
};

// Each of these costs the library seconds, and all other calls wait for it.
constexpr std::size_t kOneCostlyIn = 40;
const Lines kCostlyTroubles[] = {
    {"start_never=yes"}, {"serve=no"}, {"accept_stop=no"}, {"stop=ignore"}, {"stop=never"},
};

// Under Wine the client keeps what belongs to a call that has failed half-way, and refuses the
// endpoint for good (1727) once the service was started again.
const Lines kBrokenCalls[] = {
    {"crash.CreateGroup=yes"},
    {"crash.DeviceOnline=yes"},
    {"crash.RecvRemoteMessage=yes", "delay.RecvRemoteMessage=50"},
    {"crash.DeleteGroup=yes"},
    {"crash.Ping=yes", "times=1"},
    {"die.DeviceOffline=yes"},
    {"die.SetStringConfig=yes", "times=1"},
    {"fault.CreateGroup=0xC0000005"},
    {"fault.DeleteGroup=1726"},
};

constexpr const wchar_t* kOfficeTroubles[] = {
    L"",
    L"",
    L"Start=7",
    L"Stop=-1,LocalDeviceOffline=12",
    L"RemoteDeviceOnline=1",
    L"GetGroupNeighborDistributedDir=5,UninstallPackages=3",
};

}  // namespace

Trouble::Trouble(std::uint64_t seed, const fs::path& installFolder, Tally& tally)
    : dice_(seed, 1000), file_(installFolder / L"plenxservice.ini"), tally_(tally) {}

unsigned Trouble::Next() {
    const std::string lines = Mix("pc.") + Mix("phone.");
    SetEnvironmentVariableW(L"PLENX_OFFICE_FAIL", dice_.Pick(kOfficeTroubles));
    Write(lines);
    return 500 + static_cast<unsigned>(dice_.Below(2500));
}

void Trouble::Rest() {
    SetEnvironmentVariableW(L"PLENX_OFFICE_FAIL", nullptr);
    Write("");
}

// None, one or two at a time.
std::string Trouble::Mix(const std::string& service) {
    std::string lines;
    for (std::size_t count = dice_.Below(3); count != 0; --count) {
        const Lines& trouble =
            dice_.OneIn(kOneCostlyIn) ? dice_.Pick(kCostlyTroubles) : dice_.Pick(kTroubles);
        lines += Add(service, trouble);
    }
    if (callsMayBreak_) {
        lines += Add(service, dice_.Pick(kBrokenCalls));
    }
    return lines;
}

std::string Trouble::Add(const std::string& service, const std::vector<const char*>& trouble) {
    tally_.Count("troubles", trouble.front());
    std::string lines;
    for (const char* line : trouble) {
        lines += service + line + "\n";
    }
    return lines;
}

// In one step, as a service may read the file at any time. Should a reader hold it, the mix before
// lasts longer.
void Trouble::Write(const std::string& lines) const {
    const fs::path fresh = fs::path(file_).concat(L".new");
    PlenxTest::WriteFile(fresh, lines);
    for (int i = 0; i != 50; ++i) {
        if (MoveFileExW(fresh.c_str(), file_.c_str(), MOVEFILE_REPLACE_EXISTING)) {
            return;
        }
        Sleep(20);
    }
}

}  // namespace PlenxSoak
