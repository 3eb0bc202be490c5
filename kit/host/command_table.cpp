// The one table of the commands; see commands.h.

#include "host/commands.h"
#include "host/manager_commands.h"
#include "host/script_commands.h"

namespace PlenxHost {
namespace {

constexpr const char* kLibrary = "The library";
constexpr const char* kSettings = "Settings";
constexpr const char* kServices = "Services and groups";
constexpr const char* kDevices = "Devices, names and messages";
constexpr const char* kObservers = "Observers, and how they react";
constexpr const char* kExpectations = "Expectations";
constexpr const char* kRun = "The run itself";

constexpr const char* kQueued = "0: queued, or dropped before init; it does not mean success";
constexpr const char* kDeviceQueued =
    "0: queued, or dropped before init. 26: GROUP or DEVICE is empty, nothing queued";
constexpr const char* kNone = "none";
constexpr const char* kNoOutcome =
    "No notification of the library's own, not even of a failure. A call that fails is in the\n"
    "library's log; a code that the service answers is told nowhere.";
constexpr const char* kSettingOutcome =
    "No notification. The service hears of it at its next start; a code that it answers is\n"
    "told nowhere. Lost before init.";

}  // namespace

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {kLibrary, "init", "[INSTALL DATA [THIRD [on|off]]]", "Make the library ready.",
         "Without arguments: with --install, --data, --third and --flag. DATA\\plenx is DELETED,\n"
         "or plenx0 to plenx99 if it cannot be.",
         kNone,
         "No notification. The services are registered a little later; what went wrong is in\n"
         "the library's log and shows in every start that fails. get-int pc 5 waits while\n"
         "it is at work, not for its beginning.",
         "init C:\\Plenx\\App C:\\Plenx\\Data", ParseInit},
        {kLibrary, "destroy", "", "Uninstall the office packages; the library keeps working.", "",
         kNone, "No notification.", "destroy", ParseDestroy},

        {kSettings, "get-int", "SERVICE KEY", "Read an integer setting.",
         "Key 5 asks whether the service is stopped (all: the driver). Every other key gives 0, "
         "and\n"
         "so does office.",
         "key 5: 1 while not running, else 0; 0 before init has begun and after it failed",
         "No notification. It waits while init is at work.", "get-int pc 5", ParseGetInt},
        {kSettings, "get-string", "SERVICE KEY", "Read a string setting: always the empty text.",
         "String settings cannot be read back.", "the empty text", "No notification.",
         "get-string pc 1", ParseGetString},
        {kSettings, "set-int", "SERVICE KEY NUMBER", "Change an integer setting.",
         "Keys 0 and 2 are in use. all changes it for the PC and the phone service.", kNone,
         kSettingOutcome, "set-int all 0 1", ParseSetInt},
        {kSettings, "set-string", "SERVICE KEY TEXT", "Change a string setting.",
         "Key 1 is the locale. all changes it for the PC and the phone service.", kNone,
         kSettingOutcome, "set-string all 1 de_DE", ParseSetString},

        {kServices, "start", "SERVICE GROUP ARGUMENT", "Start a service and create a group in it.",
         "ARGUMENT goes to the service as it is. all: the PC service, then the office service.",
         "0: queued, or dropped before init. 26: GROUP or ARGUMENT is empty, nothing queued",
         "NotifyStatus(SERVICE, GROUP, start, value): value tells whether it succeeded. all:\n"
         "one of pc, one of office. The services' own NotifyConnect may come before or after it.",
         "start pc home \"an argument\"", ParseStart},
        {kServices, "stop", "SERVICE GROUP", "Delete the group and stop its service.", "",
         "0: queued, or dropped before init. 26: GROUP is empty, nothing queued",
         "NotifyStatus(SERVICE, GROUP, stop, value): for pc and phone value is always false, for\n"
         "office it tells whether it succeeded; all: one of each. Then NotifyStatus(all, GROUP,\n"
         "stop, true) if no start of office or all is left; only stop all takes back a start of\n"
         "all. It does not tell whether a PC or phone service still runs.",
         "stop pc home", ParseStop},
        {kServices, "end-process", "SERVICE", "End the process of a service by force.",
         "For one that hangs: ask the service manager for its process, and end that.",
         "0: ended. Otherwise a Windows error, such as 1062: the service does not run",
         "That of the call that the service has not answered, and then those of the calls behind.",
         "end-process pc", ParseEndProcess},

        {kDevices, "local-online", "SERVICE GROUP DEVICE DATA [SIZE]", "This device is online.",
         "DATA: hex:00ff, bytes:N (00 01 02 ...), null, null:N or a text. SIZE, if given, is told\n"
         "to the library instead of the true one.",
         kDeviceQueued,
         "Only a failure is notified, as NotifyStatus(SERVICE, GROUP, online, false); of the\n"
         "office service nothing. all: only the office service hears of it, and\n"
         "NotifyStatus(all, GROUP, online, false) comes each time. What the service makes of it,\n"
         "it says itself, such as with QueryLinkStatus and NotifyDiskName.",
         "local-online pc home laptop hex:c0a80117", ParseLocalOnline},
        {kDevices, "remote-online", "SERVICE GROUP DEVICE", "Another device is online.", "",
         kDeviceQueued,
         "office: NotifyStatus(office, GROUP, online, value), whether it succeeded. pc and\n"
         "phone: only a failure, NotifyStatus(SERVICE, GROUP, online, false).",
         "remote-online pc home tablet", ParseRemoteOnline},
        {kDevices, "local-offline", "SERVICE GROUP DEVICE [TRIGGER]", "This device goes offline.",
         "TRIGGER, a number, says why; 0 by default.", kDeviceQueued,
         "office: NotifyStatus(office, GROUP, offline, value), whether it succeeded. pc and\n"
         "phone: only a failure, NotifyStatus(SERVICE, GROUP, offline, false).",
         "local-offline pc home laptop 1", ParseLocalOffline},
        {kDevices, "remote-offline", "SERVICE GROUP DEVICE [TRIGGER]",
         "Another device goes offline.", "TRIGGER, a number, says why; 0 by default.",
         kDeviceQueued,
         "pc and phone: only a failure, NotifyStatus(SERVICE, GROUP, offline, false). office:\n"
         "nothing.",
         "remote-offline pc home tablet", ParseRemoteOffline},
        {kDevices, "rename", "NAME", "This device has a new name.", "Goes to the PC service.",
         "0: queued, or dropped before init. 26: NAME is empty, nothing queued", kNoOutcome,
         "rename \"Front desk\"", ParseRename},
        {kDevices, "message", "TYPE TEXT [LENGTH]", "Another device sends a message.",
         "Goes to the PC service. LENGTH, if given, is told instead of the true one.", kQueued,
         kNoOutcome, "message 3 hello", ParseMessage},
        {kDevices, "office-dir", "GROUP DEVICE NAME", "Ask for a folder of the office service.", "",
         "the companion library's code (0 before init), and the folder with \\NAME behind it",
         "No notification.", "office-dir home tablet shared", ParseOfficeDir},

        {kObservers, "register", "[OBSERVER]", "Register an observer under a name.",
         "main is registered at the start. The name null stands for a null pointer.", kNone,
         "From now on each notification comes once for each observer, with @OBSERVER behind it\n"
         "unless that is main.",
         "register second", ParseRegister},
        {kObservers, "unregister", "[OBSERVER]", "Unregister an observer.", "main by default.",
         kNone, "No notification comes to it any more.", "unregister second", ParseUnregister},
        {kObservers, "answer", "CODE", "What observers return from now on.",
         "0 means handled; any other code is logged by the library.", kNone, "No notification.",
         "answer 5", ParseAnswer},
        {kObservers, "answer-link", "STATUS|keep", "What QueryLinkStatus leaves as the status.",
         "From now on. keep: what it finds.", kNone,
         "The next QueryLinkStatus shows it as answer; it goes back to the service.",
         "answer-link 7", ParseAnswerLink},
        {kObservers, "slow", "MILLISECONDS", "How long each notification takes from now on.", "",
         kNone, "The notifications that follow wait for each other.", "slow 500", ParseSlow},
        {kObservers, "throw", "on|off", "on: the next notification throws, once.",
         "off: it does not after all.", kNone,
         "The observers behind it do not hear of that notification.", "throw on", ParseThrow},

        {kExpectations, "expect", "NOTIFICATION [ARGUMENT...] within MILLISECONDS",
         "Wait for a notification, or take one that came before.",
         "Only one that was not taken yet. Arguments in their order or as name=value; * stands\n"
         "for any value, left out means any; observer=NAME says whose.",
         "yes or NO, and what came instead: the same notification of the same service",
         "A NO counts: the run ends with exit code 1.",
         "expect NotifyStatus pc home start true within 5000", ParseExpect},
        {kExpectations, "expect-none", "NOTIFICATION [ARGUMENT...] for MILLISECONDS",
         "No such notification waits to be taken, and none comes.",
         "Arguments as with expect; the name * stands for every notification.", "yes or NO",
         "A NO counts: the run ends with exit code 1.", "expect-none NotifyError for 500",
         ParseExpectNone},
        {kExpectations, "expect-result", "NUMBER", "The latest operation gave that number.",
         "The latest one with a result.", "yes or NO",
         "A NO counts: the run ends with exit code 1.", "expect-result 26", ParseExpectResult},
        {kExpectations, "expect-result-text", "TEXT", "The latest operation gave that text.",
         "The latest one with a result.", "yes or NO",
         "A NO counts: the run ends with exit code 1.", "expect-result-text \"\"",
         ParseExpectResultText},
        {kExpectations, "forget", "", "Drop the notifications that nothing has taken yet.", "",
         kNone, "No notification.", "forget", ParseForget},

        {kRun, "sleep", "MILLISECONDS", "Do nothing for a while.", "", kNone,
         "Notifications go on coming.", "sleep 200", ParseSleep},
        {kRun, "echo", "[TEXT...]", "Print a text.", "", kNone, "No notification.",
         "echo \"-- the devices come\"", ParseEcho},
        {kRun, "help", "[COMMAND]", "Tell about all commands, or about one.", "", kNone,
         "No notification.", "help start", ParseHelp},
        {kRun, "quit", "[CODE]", "End.",
         "The exit code is CODE, 0 by default, or 1 when an expectation failed.", kNone,
         "The observers are unregistered; the library takes the PC and phone services away.",
         "quit", ParseQuit},
    };
    return commands;
}

}  // namespace PlenxHost
