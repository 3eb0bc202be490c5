#include "host/commands.h"

#include <algorithm>
#include <utility>

#include "host/text.h"

namespace PlenxHost {
namespace {

constexpr std::size_t kNameWidth = 20;
constexpr std::size_t kTitleWidth = 9;

const Command& Find(const std::string& name) {
    const auto& commands = Commands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const Command& command) { return name == command.name; });
    if (found == commands.end()) {
        throw ScriptError("unknown command " + Quote(name, 60) + "; help lists all commands");
    }
    return *found;
}

// A title with lines of text beside it; empty when there is no text.
std::string Block(const std::string& title, const std::string& text) {
    std::string block;
    std::string left = "\n  " + title + std::string(kTitleWidth - title.size(), ' ');
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        block += left + text.substr(begin, end - begin);
        left = "\n  " + std::string(kTitleWidth, ' ');
        begin = end + 1;
    }
    return block;
}

}  // namespace

std::string CommandOverview() {
    std::string text;
    std::string subject;
    for (const Command& command : Commands()) {
        if (subject != command.subject) {
            text += (subject.empty() ? "" : "\n") + std::string(command.subject) + "\n";
            subject = command.subject;
        }
        std::string name = command.name;
        name.resize(std::max(kNameWidth, name.size() + 1), ' ');
        text += "  " + name + command.purpose + "\n";
    }
    return text +
           "\nSERVICE is office, pc, phone, all or any 32-bit number. A TEXT may be in double\n"
           "quotes, with \\\\ \\\" \\n \\r \\t \\xNN in it, or be repeat:N:text or hex:00ff.\n"
           "# starts a comment. help COMMAND explains one command.";
}

std::string CommandHelp(const std::string& name) {
    const Command& command = Find(name);
    std::string usage = command.name;
    usage += *command.usage == '\0' ? "" : std::string(" ") + command.usage;
    return usage + Block("Purpose", command.purpose) + Block("", command.remarks) +
           Block("Result", command.result) + Block("Outcome", command.outcome) +
           Block("Example", command.example);
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
