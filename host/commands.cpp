#include "commands.h"

#include <algorithm>
#include <utility>

#include "manager_commands.h"
#include "script_commands.h"
#include "text.h"

namespace PlenxHost {
namespace {

constexpr std::size_t kNameWidth = 20;

const Command& Find(const std::string& name) {
    const auto& commands = Commands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const Command& command) { return name == command.name; });
    if (found == commands.end()) {
        throw ScriptError("unknown command " + Quote(name, 60) + "; help lists them all");
    }
    return *found;
}

}  // namespace

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        // What the library offers.
        {"init", "[INSTALL DATA [THIRD [on|off]]]",
         "Make the library ready. Without arguments: with --install, --data, --third, --flag.",
         ParseInit},
        {"destroy", "", "Uninstall the office packages. The library keeps working.", ParseDestroy},
        {"get-int", "SERVICE KEY", "Read an integer setting; key 5 is 1 while not running.",
         ParseGetInt},
        {"get-string", "SERVICE KEY", "Read a string setting: always the empty text.",
         ParseGetString},
        {"set-string", "SERVICE KEY TEXT", "Change a string setting; key 1 is the locale.",
         ParseSetString},
        {"set-int", "SERVICE KEY NUMBER", "Change an integer setting; keys 0 and 2 are in use.",
         ParseSetInt},
        {"start", "SERVICE GROUP ARGUMENT", "Start a service and create a group in it.",
         ParseStart},
        {"stop", "SERVICE GROUP", "Delete the group and stop its service.", ParseStop},
        {"local-online", "SERVICE GROUP DEVICE DATA [SIZE]",
         "This device is online. DATA: hex:00ff, bytes:N (00 01 02 ...), null, null:N or a\n"
         "text. SIZE, if given, is told to the library instead of the true one.",
         ParseLocalOnline},
        {"remote-online", "SERVICE GROUP DEVICE", "Another device is online.", ParseRemoteOnline},
        {"local-offline", "SERVICE GROUP DEVICE [TRIGGER]",
         "This device goes offline; TRIGGER, 0 by default, says why.", ParseLocalOffline},
        {"remote-offline", "SERVICE GROUP DEVICE [TRIGGER]",
         "Another device goes offline; TRIGGER, 0 by default, says why.", ParseRemoteOffline},
        {"rename", "NAME", "This device has a new name.", ParseRename},
        {"message", "TYPE TEXT [LENGTH]",
         "Another device sends a message. LENGTH, if given, is told instead of the true one.",
         ParseMessage},
        {"office-dir", "GROUP DEVICE NAME",
         "Ask for a folder of the office service: a code, and the folder with NAME behind it.",
         ParseOfficeDir},
        {"register", "[OBSERVER]",
         "Register an observer under that name; the one named main is registered at the\n"
         "start. The name null stands for a null pointer.",
         ParseRegister},
        {"unregister", "[OBSERVER]", "Unregister an observer, main by default.", ParseUnregister},

        // How the observers react.
        {"answer", "CODE", "What observers return from now on; 0 means handled.", ParseAnswer},
        {"answer-link", "STATUS|keep",
         "What QueryLinkStatus leaves as the status from now on; keep: what it finds.",
         ParseAnswerLink},
        {"slow", "MILLISECONDS", "How long each notification takes from now on.", ParseSlow},
        {"throw", "on|off", "on: the next notification throws, once. off: it does not.",
         ParseThrow},

        // What a script is made of.
        {"expect", "NOTIFICATION [ARGUMENT...] within MILLISECONDS",
         "Wait for a notification, or take one that came before and was not taken yet.\n"
         "Arguments in their order or as name=value; * stands for any value, left out means\n"
         "any; observer=NAME says whose. Example: expect NotifyStatus pc grp start true\n"
         "within 5000",
         ParseExpect},
        {"expect-none", "NOTIFICATION [ARGUMENT...] for MILLISECONDS",
         "No such notification waits to be taken, and none comes in that time.", ParseExpectNone},
        {"expect-result", "NUMBER", "The latest operation with a result gave that number.",
         ParseExpectResult},
        {"expect-result-text", "TEXT", "The latest operation with a result gave that text.",
         ParseExpectResultText},
        {"forget", "", "Drop the notifications that no expectation has taken yet.", ParseForget},
        {"sleep", "MILLISECONDS", "Do nothing for a while.", ParseSleep},
        {"echo", "[TEXT...]", "Print a text.", ParseEcho},
        {"help", "[COMMAND]", "Tell about all commands, or about one.", ParseHelp},
        {"quit", "[CODE]",
         "End. The exit code is CODE, 0 by default, or 1 when an expectation failed.", ParseQuit},
    };
    return commands;
}

std::string CommandOverview() {
    std::string text;
    for (const Command& command : Commands()) {
        std::string name = command.name;
        name.resize(std::max(kNameWidth, name.size() + 1), ' ');
        text += name + command.usage + "\n";
    }
    return text +
           "\nSERVICE is office, pc, phone, all or any 32-bit number. A TEXT may be in double\n"
           "quotes, with \\\\ \\\" \\n \\r \\t \\xNN in it, or be repeat:N:text or hex:00ff.\n"
           "# starts a comment. help COMMAND tells more about one.";
}

std::string CommandHelp(const std::string& name) {
    const Command& command = Find(name);
    return std::string(command.name) + " " + command.usage + "\n" + command.help;
}

Step ParseStep(std::string_view line, const std::string& place) {
    SplitLine split = SplitWords(line);
    if (split.words.empty()) {
        return {};
    }
    const Command& command = Find(split.words[0].text);
    split.words.erase(split.words.begin());
    Arguments arguments(std::move(split.words));
    try {
        Action action = command.parse(arguments);
        arguments.End();
        return {place, command.name, std::move(split.text), std::move(action)};
    } catch (const ScriptError& error) {
        throw ScriptError(std::string(error.what()) + "; usage: " + command.name + " " +
                          command.usage);
    }
}

}  // namespace PlenxHost
