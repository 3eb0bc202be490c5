#include "command_line.h"

#include <charconv>
#include <utility>

#include "support/wide_text.h"

namespace PlenxService {
namespace {

constexpr unsigned kLongestRun = 24 * 60 * 60;

struct Options {
    std::wstring check;
    std::wstring console;
    std::wstring data;
    std::wstring install;
    std::wstring scenario;
    std::wstring seconds;
};

std::wstring* ValueOf(const std::wstring& option, Options& options) {
    const std::pair<const wchar_t*, std::wstring*> all[] = {
        {L"--check", &options.check},       {L"--console", &options.console},
        {L"--data", &options.data},         {L"--install", &options.install},
        {L"--scenario", &options.scenario}, {L"--seconds", &options.seconds}};
    for (const auto& [name, value] : all) {
        if (option == name) {
            return value;
        }
    }
    return nullptr;
}

CommandLine Refused(std::string error) {
    CommandLine line;
    line.error = std::move(error);
    return line;
}

std::optional<unsigned> SecondsOf(const std::string& text) {
    unsigned seconds = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, seconds);
    const bool whole = read.ec == std::errc() && read.ptr == end;
    return whole && seconds >= 1 && seconds <= kLongestRun ? std::optional<unsigned>(seconds)
                                                           : std::nullopt;
}

CommandLine FromOptions(const Options& options, const std::wstring& programFolder) {
    CommandLine line;
    line.check = options.check;
    line.scenario = options.scenario;
    if (!line.check.empty()) {
        return line;
    }
    if (options.console.empty()) {
        return Refused("--console is missing");
    }
    const std::wstring install = options.install.empty() ? programFolder : options.install;
    const std::wstring data =
        options.data.empty() ? install + L"\\console\\" + options.console : options.data;
    line.console = MakeIdentity(RowOf(options.console), install, data);
    if (!line.console) {
        return Refused("there is no service " + PlenxSupport::ToUtf8(options.console));
    }
    if (!options.seconds.empty()) {
        line.seconds = SecondsOf(PlenxSupport::ToUtf8(options.seconds));
        if (!line.seconds) {
            return Refused("--seconds takes 1 to " + std::to_string(kLongestRun));
        }
    }
    return line;
}

}  // namespace

const char kUsage[] =
    "plenxservice stands in for the office, PC or phone service.\n"
    "\n"
    "As a Windows service it is started with the arguments\n"
    "  <install folder> <data folder> 0|1|2\n"
    "\n"
    "On the console:\n"
    "  plenxservice --console office|pc|phone [--install DIR] [--data DIR]\n"
    "               [--scenario FILE] [--seconds N]\n"
    "\n"
    "  --install DIR    the folder of plenxservice.toml (default: the program's folder)\n"
    "  --data DIR       the folder of service.log (default: console\\<name> in the install "
    "folder)\n"
    "  --scenario FILE  the scenario to play, instead of the one that plenxservice.toml names\n"
    "  --seconds N      ends after N seconds (default: at Ctrl-C)\n"
    "\n"
    "To find the mistakes in a scenario file or in a plenxservice.toml:\n"
    "  plenxservice --check FILE\n"
    "ends with 0 when there are none, else with 2.\n";

CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments,
                             const std::wstring& programFolder) {
    if (arguments.empty()) {
        return {};
    }
    Options options;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        if (arguments[i] == L"--help" || arguments[i] == L"-h") {
            CommandLine line;
            line.help = true;
            return line;
        }
        std::wstring* const value = ValueOf(arguments[i], options);
        if (!value) {
            return Refused("unknown argument " + PlenxSupport::ToUtf8(arguments[i]));
        }
        if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
            return Refused(PlenxSupport::ToUtf8(arguments[i]) + " needs a value");
        }
        *value = arguments[i + 1];
    }
    return FromOptions(options, programFolder);
}

}  // namespace PlenxService
