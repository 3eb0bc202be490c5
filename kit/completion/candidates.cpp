#include "completion/candidates.h"

#include <CLI/CLI.hpp>

#include "wire/catalog.h"

namespace PlenxKit {
namespace {

using Words = std::vector<std::string>;

Words MessageNames() {
    Words names;
    for (const PlenxWire::MessageShape& shape : PlenxWire::Catalog()) {
        names.push_back(shape.name);
    }
    names.push_back("reply");
    return names;
}

// A file or a free text has no values to offer.
Words ValuesOf(const std::string& kind) {
    if (kind == "MESSAGE") {
        return MessageNames();
    }
    return kind.find('|') == std::string::npos ? Words() : CLI::detail::split(kind, '|');
}

Words OptionNames(const CLI::App& command) {
    Words names;
    for (const CLI::Option* const option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

const CLI::App* Inner(const CLI::App& command, const std::string& name) {
    for (const CLI::App* const inner : command.get_subcommands({})) {
        if (inner->get_name() == name) {
            return inner;
        }
    }
    return nullptr;
}

Words Commands(const CLI::App& command) {
    Words names;
    for (const CLI::App* const inner : command.get_subcommands({})) {
        if (!inner->get_group().empty()) {  // an empty group hides a command
            names.push_back(inner->get_name());
        }
    }
    return names;
}

// The values of the first argument that has no name of its own.
Words FirstValues(const CLI::App& command) {
    for (const CLI::Option* const option : command.get_options()) {
        if (option->get_positional()) {
            return ValuesOf(option->get_name(true, false));
        }
    }
    return {};
}

void Append(Words& all, const Words& more) {
    all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

Words Candidates(const CLI::App& program, const Words& words) {
    const CLI::App* command = &program;
    bool isFirst = true;
    for (const std::string& word : words) {
        const CLI::App* const inner = Inner(*command, word);
        isFirst = inner != nullptr;
        command = inner != nullptr ? inner : command;
    }
    const CLI::Option* const option =
        words.empty() ? nullptr : command->get_option_no_throw(words.back());
    if (option != nullptr && option->get_items_expected_max() > 0) {
        return ValuesOf(option->get_type_name());
    }
    Words all = Commands(*command);
    if (isFirst) {
        Append(all, FirstValues(*command));
    }
    Append(all, OptionNames(*command));
    return all;
}

}  // namespace PlenxKit
