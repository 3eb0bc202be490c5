#include "soak/trouble.h"

#include <windows.h>

#include <algorithm>
#include <string_view>

#include "support/install_folder.h"

namespace PlenxSoak {
namespace {

namespace fs = std::filesystem;

constexpr OneTrouble kTroubles[] = {
    {"[[on]]", "delay_ms = 20"},
    {"[[on]]", "delay_ms = 150"},
    {"[[on]]", "request = 'CreateGroup'\nanswer = 5"},
    {"[[on]]", "answer = -2147483648"},
    {"[[on]]", "request = 'DeleteGroup'\nanswer = 1002"},
    {"[[on]]", "reply = 'empty'"},
    {"[[on]]", "reply = 'garbage'"},
    {"[[on]]", "reply = 'short'"},
    {"[[on]]", "request = 'CreateGroup'\nreply = 'large'"},
    {"[[on]]", "request = 'DeviceOnline'\nreply = 'lie'"},
    {"[[on]]", "reply = 'hex:18 00 00 00 ff ff ff 7f'"},
    {"[[on]]", "request = 'CreateGroup'\nresult = 22"},
    {"[[on]]", "request = 'DeviceOffline'\nresult = -1"},
    {"[[on]]", "notify = false"},
    {"[[on]]", "repeat = 10"},
    {"[[on]]", "request = 'CreateGroup'\nhostile = true"},
    {"[[on]]", "request = 'DeviceOnline'\nhostile = true\nrepeat = 3"},
    {"[[on]]", "request = 'RecvRemoteMessage'\nhostile = true"},
    {"[[start]]", "delay_ms = 200"},
    {"[[start]]", "silent_ms = 400"},
    {"[[start]]", "fail = 7"},
    {"[[stop]]", "delay_ms = 300"},
};

// Each of these troubles costs the library seconds, and all other calls wait for it.
constexpr std::size_t kOneCostlyIn = 40;
constexpr OneTrouble kCostlyTroubles[] = {
    {"[[start]]", "never = true"},  {"[[start]]", "serve = false"}, {"[[stop]]", "accept = false"},
    {"[[stop]]", "how = 'ignore'"}, {"[[stop]]", "how = 'never'"},
};

// Under Wine the client keeps the data of a call that has failed half-way. It then refuses the
// endpoint for good (1727) once the service has been started again.
constexpr OneTrouble kBrokenCalls[] = {
    {"[[on]]", "request = 'CreateGroup'\ncrash = true"},
    {"[[on]]", "request = 'DeviceOnline'\ncrash = true"},
    {"[[on]]", "request = 'RecvRemoteMessage'\ncrash = true\ndelay_ms = 50"},
    {"[[on]]", "request = 'DeleteGroup'\ncrash = true"},
    {"[[on]]", "request = 'PingService'\ncrash = true\ntimes = 1"},
    {"[[on]]", "request = 'DeviceOffline'\ndie = true"},
    {"[[on]]", "request = 'SetStringConfig'\ndie = true\ntimes = 1"},
    {"[[on]]", "request = 'CreateGroup'\nfault = 0xC0000005"},
    {"[[on]]", "request = 'DeleteGroup'\nfault = 1726"},
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
    : dice_(seed, 1000), file_(installFolder / L"plenxservice.toml"), tally_(tally) {}

unsigned Trouble::Next() {
    const std::string tables = Mix("pc") + Mix("phone");
    SetEnvironmentVariableW(L"PLENX_OFFICE_FAIL", dice_.Pick(kOfficeTroubles));
    Write(tables);
    return 500 + static_cast<unsigned>(dice_.Below(2500));
}

void Trouble::Rest() {
    SetEnvironmentVariableW(L"PLENX_OFFICE_FAIL", nullptr);
    Write("");
}

// There are no troubles, one, or two at a time. Those that name a request come first, because of
// the steps for a request only the first one counts.
std::string Trouble::Mix(const std::string& service) {
    std::string named;
    std::string others;
    const auto add = [&](const OneTrouble& trouble) {
        const bool namesRequest = std::string_view(trouble.keys).substr(0, 7) == "request";
        (namesRequest ? named : others) += TableOf(service, trouble);
    };
    for (std::size_t count = dice_.Below(3); count != 0; --count) {
        add(dice_.OneIn(kOneCostlyIn) ? dice_.Pick(kCostlyTroubles) : dice_.Pick(kTroubles));
    }
    if (callsMayBreak_) {
        named.insert(0, TableOf(service, dice_.Pick(kBrokenCalls)));
    }
    return named + others;
}

std::string Trouble::TableOf(const std::string& service, const OneTrouble& trouble) {
    std::string name = trouble.keys;
    std::replace(name.begin(), name.end(), '\n', ' ');
    tally_.Count("troubles", trouble.table + (" " + name));
    return std::string(trouble.table) + "\nservice = '" + service + "'\n" + trouble.keys + "\n";
}

// This replaces the file in one step, because a service may read it at any time. If a reader holds
// the file, the mix before lasts longer.
void Trouble::Write(const std::string& tables) const {
    const fs::path fresh = fs::path(file_).concat(L".new");
    PlenxTest::WriteFile(fresh, tables);
    for (int i = 0; i != 50; ++i) {
        if (MoveFileExW(fresh.c_str(), file_.c_str(), MOVEFILE_REPLACE_EXISTING)) {
            return;
        }
        Sleep(20);
    }
}

}  // namespace PlenxSoak
