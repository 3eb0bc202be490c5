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

constexpr const char* kQueued =
    "0: the call was queued, or dropped before init; it does not mean success";
constexpr const char* kDeviceQueued =
    "0: the call was queued, or dropped before init. 26: GROUP or DEVICE is empty, and nothing\n"
    "was queued";
constexpr const char* kNone = "none";
constexpr const char* kNoOutcome =
    "The library itself sends no notification, not even of a failure. The library's log shows\n"
    "a call that failed. The code that the service answers is not shown anywhere.";
constexpr const char* kSettingOutcome =
    "No notification comes. The service gets the setting at its next start. The code that it\n"
    "answers is not shown anywhere. A setting that is made before init is lost.";

}  // namespace

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {kLibrary, "init", "[INSTALL DATA [THIRD [on|off]]]", "Make the library ready.",
         "Without arguments, it takes those of --install, --data, --third and --flag. It DELETES\n"
         "DATA\\plenx, or plenx0 to plenx99 if that cannot be deleted.",
         kNone,
         "No notification comes. The services are registered a little later. A failure is shown "
         "by\n"
         "the library's log, and every start fails after it. get-int pc 5 waits while init is at\n"
         "work, but it does not wait for init to begin.",
         "init C:\\Plenx\\App C:\\Plenx\\Data", ParseInit},
        {kLibrary, "destroy", "", "Uninstall the office packages; the library keeps working.", "",
         kNone, "No notification comes.", "destroy", ParseDestroy},

        {kSettings, "get-int", "SERVICE KEY", "Read an integer setting.",
         "Key 5 asks whether the service is stopped, or with all whether the driver is. Every "
         "other\n"
         "key gives 0, and so does office.",
         "key 5: 1 while it is not running, else 0; 0 before init has begun and after it failed",
         "No notification comes. The command waits while init is at work.", "get-int pc 5",
         ParseGetInt},
        {kSettings, "get-string", "SERVICE KEY",
         "Read a string setting, which always gives the empty text.",
         "String settings cannot be read back.", "the empty text", "No notification comes.",
         "get-string pc 1", ParseGetString},
        {kSettings, "set-int", "SERVICE KEY NUMBER", "Change an integer setting.",
         "Keys 0 and 2 are in use. all changes it for the PC and the phone service.", kNone,
         kSettingOutcome, "set-int all 0 1", ParseSetInt},
        {kSettings, "set-string", "SERVICE KEY TEXT", "Change a string setting.",
         "Key 1 is the locale. all changes it for the PC and the phone service.", kNone,
         kSettingOutcome, "set-string all 1 de_DE", ParseSetString},

        {kServices, "start", "SERVICE GROUP ARGUMENT", "Start a service and create a group in it.",
         "ARGUMENT goes to the service unchanged. all starts the PC service,\nthen the office "
         "service.",
         "0: the call was queued, or dropped before init. 26: GROUP or ARGUMENT is empty, and\n"
         "nothing was queued",
         "NotifyStatus(SERVICE, GROUP, start, value) comes; value says whether it succeeded. With\n"
         "all, one comes for pc and one for office. The services' own NotifyConnect may come "
         "before\n"
         "or after it.",
         "start pc home \"an argument\"", ParseStart},
        {kServices, "stop", "SERVICE GROUP", "Delete the group and stop its service.", "",
         "0: the call was queued, or dropped before init. 26: GROUP is empty, and\n"
         "nothing was queued",
         "NotifyStatus(SERVICE, GROUP, stop, value) comes. For pc and phone, value is always "
         "false;\n"
         "for office, it says whether the stop succeeded. With all, one comes for each. After it,\n"
         "NotifyStatus(all, GROUP, stop, true) comes if no start of office or all is left; only\n"
         "stop all takes back a start of all. It does not say whether a PC or phone service still\n"
         "runs.",
         "stop pc home", ParseStop},
        {kServices, "end-process", "SERVICE", "End the process of a service by force.",
         "Use it for a service that hangs. It asks the service manager for the process and ends "
         "it.",
         "0: the process was ended. Otherwise a Windows error: with 1062, the service does not run",
         "The call that the service has not answered ends, then the calls behind it go on. Each\n"
         "notifies its own outcome.",
         "end-process pc", ParseEndProcess},

        {kDevices, "local-online", "SERVICE GROUP DEVICE DATA [SIZE]", "This device is online.",
         "DATA is hex:00ff, bytes:N (00 01 02 ...), null, null:N or a text. If SIZE is given, the\n"
         "library gets it instead of the true size.",
         kDeviceQueued,
         "Only a failure is notified, as NotifyStatus(SERVICE, GROUP, online, false). With "
         "office,\n"
         "nothing is notified. With all, only the office service gets the call, and\n"
         "NotifyStatus(all, GROUP, online, false) comes each time. The service itself may answer\n"
         "with notifications such as QueryLinkStatus and NotifyDiskName.",
         "local-online pc home laptop hex:c0a80117", ParseLocalOnline},
        {kDevices, "remote-online", "SERVICE GROUP DEVICE", "Another device is online.", "",
         kDeviceQueued,
         "With office, NotifyStatus(office, GROUP, online, value) says whether it succeeded. "
         "With\npc and phone, only a failure is notified, as NotifyStatus(SERVICE, GROUP, online, "
         "false).",
         "remote-online pc home tablet", ParseRemoteOnline},
        {kDevices, "local-offline", "SERVICE GROUP DEVICE [TRIGGER]", "This device goes offline.",
         "TRIGGER is a number that says why. It is 0 by default.", kDeviceQueued,
         "With office, NotifyStatus(office, GROUP, offline, value) says whether it succeeded. "
         "With\npc and phone, only a failure is notified, as NotifyStatus(SERVICE, GROUP, "
         "offline,\nfalse).",
         "local-offline pc home laptop 1", ParseLocalOffline},
        {kDevices, "remote-offline", "SERVICE GROUP DEVICE [TRIGGER]",
         "Another device goes offline.", "TRIGGER is a number that says why. It is 0 by default.",
         kDeviceQueued,
         "With pc and phone, only a failure is notified, as NotifyStatus(SERVICE, GROUP, offline,\n"
         "false). With office, nothing is notified.",
         "remote-offline pc home tablet", ParseRemoteOffline},
        {kDevices, "rename", "NAME", "This device has a new name.",
         "The name goes to the PC service.",
         "0: the call was queued, or dropped before init. 26: NAME is empty, and nothing was "
         "queued",
         kNoOutcome, "rename \"Front desk\"", ParseRename},
        {kDevices, "message", "TYPE TEXT [LENGTH]", "Another device sends a message.",
         "The message goes to the PC service. If LENGTH is given, it goes with the text "
         "instead\nof the true length.",
         kQueued, kNoOutcome, "message 3 hello", ParseMessage},
        {kDevices, "office-dir", "GROUP DEVICE NAME", "Ask for a folder of the office service.", "",
         "the companion library's code (0 before init), and the folder followed by \\NAME",
         "No notification comes.", "office-dir home tablet shared", ParseOfficeDir},

        {kObservers, "register", "[OBSERVER]", "Register an observer under a name.",
         "main is registered at the start. The name null stands for a null pointer.", kNone,
         "From now on, each notification comes once for each observer. It is printed with "
         "@OBSERVER\n"
         "behind it, unless that is main.",
         "register second", ParseRegister},
        {kObservers, "unregister", "[OBSERVER]", "Unregister an observer.",
         "OBSERVER is main by default.", kNone, "The observer gets no more notifications.",
         "unregister second", ParseUnregister},
        {kObservers, "answer", "CODE", "Choose the code that observers return from now on.",
         "0 means that the notification was handled. The library logs every other code.", kNone,
         "No notification comes.", "answer 5", ParseAnswer},
        {kObservers, "answer-link", "STATUS|keep",
         "Choose the status that QueryLinkStatus gives back.",
         "It holds from now on. With keep, the observer leaves the status as it comes.", kNone,
         "The next QueryLinkStatus shows it as answer, and it goes back to the service.",
         "answer-link 7", ParseAnswerLink},
        {kObservers, "slow", "MILLISECONDS", "Choose how long each notification takes from now on.",
         "", kNone, "The notifications that follow wait for each other.", "slow 500", ParseSlow},
        {kObservers, "throw", "on|off", "Let the observer throw at the next notification, once.",
         "off takes that back.", kNone, "The observers after it do not get that notification.",
         "throw on", ParseThrow},

        {kExpectations, "expect", "NOTIFICATION [ARGUMENT...] within MILLISECONDS",
         "Wait for a notification, or take one that has come.",
         "It takes only a notification that nothing has taken yet. Arguments come in their order "
         "or\n"
         "as name=value. * stands for any value, and so does an argument that is left out.\n"
         "observer=NAME says which observer must get it.",
         "yes or NO, and which notifications of the same name and service came instead",
         "After a NO, the exit code of the run is 1.",
         "expect NotifyStatus pc home start true within 5000", ParseExpect},
        {kExpectations, "expect-none", "NOTIFICATION [ARGUMENT...] for MILLISECONDS",
         "Expect that a notification has not come and does not come.",
         "Arguments are written as for expect. The name * stands for every notification.",
         "yes or NO", "After a NO, the exit code of the run is 1.",
         "expect-none NotifyError for 500", ParseExpectNone},
        {kExpectations, "expect-result", "NUMBER",
         "Expect that the latest operation gave that number.",
         "It looks at the latest operation that has a result.", "yes or NO",
         "After a NO, the exit code of the run is 1.", "expect-result 26", ParseExpectResult},
        {kExpectations, "expect-result-text", "TEXT",
         "Expect that the latest operation gave that text.",
         "It looks at the latest operation that has a result.", "yes or NO",
         "After a NO, the exit code of the run is 1.", "expect-result-text \"\"",
         ParseExpectResultText},
        {kExpectations, "forget", "", "Drop the notifications that nothing has taken yet.", "",
         kNone, "No notification comes.", "forget", ParseForget},

        {kRun, "sleep", "MILLISECONDS", "Do nothing for a while.", "", kNone,
         "Notifications keep coming.", "sleep 200", ParseSleep},
        {kRun, "echo", "[TEXT...]", "Print a text.", "", kNone, "No notification comes.",
         "echo \"-- the devices come\"", ParseEcho},
        {kRun, "help", "[COMMAND]", "List all commands, or explain one.", "", kNone,
         "No notification comes.", "help start", ParseHelp},
        {kRun, "quit", "[CODE]", "End the run.",
         "The exit code is CODE, 0 by default, or 1 when an expectation failed.", kNone,
         "The observers are unregistered, and the library removes the PC and phone services.",
         "quit", ParseQuit},
    };
    return commands;
}

}  // namespace PlenxHost
