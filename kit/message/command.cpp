#include "message/command.h"

#include <CLI/CLI.hpp>

#include "ending.h"

namespace PlenxMessage {
namespace {

constexpr char kFooter[] =
    "Examples:\n"
    "  plenxkit message encode CreateGroup groupName=g_1 groupArg=a\n"
    "  plenxkit message encode PingService number=7 --binary --output ping.bin\n"
    "  plenxkit message decode --as PingService --file ping.bin\n"
    "  plenxkit message decode --as reply 18000000 01000000 02000000 14000000 04000000 00000000\n"
    "  plenxkit message log --broken service.log\n"
    "\n"
    "Exit codes: 0 all messages are good, 1 a message is broken, 2 wrong usage.";

constexpr char kDecodeFooter[] =
    "The bytes do not show which message they are, because the id travels beside them. Give it\n"
    "with --as. Without it, only the layout is checked, and the messages that fit are listed.\n"
    "\n"
    "Hex may be in one piece or in groups, over several lines, with 0x and commas. A file may\n"
    "hold hex or the message itself.\n"
    "\n"
    "Examples:\n"
    "  plenxkit message decode --as ErrorNotify 18000000 01000000 02000000 14000000 04000000 "
    "05000000\n"
    "  plenxkit message decode --as 15 --file message.bin --json\n"
    "  plenxkit message encode ErrorNotify errCode=5 | plenxkit message decode --as ErrorNotify";

constexpr char kEncodeFooter[] =
    "Text is taken as it is. An array is hex, or utf16: and a text, to which a NUL is added.\n"
    "You may leave out kind of CreateGroup and the length before an array, because each can\n"
    "have only one value.\n"
    "\n"
    "JSON is {\"message\": \"NameChanged\", \"arguments\": {\"name\": \"desk\"}}, or the output "
    "of\n"
    "\"decode --json\". Write arrays, and text that is not UTF-8, as {\"hex\": \"00 ff\"}.\n"
    "\n"
    "Examples:\n"
    "  plenxkit message encode StatusNotify grpName=g_1 sttsType=100 value=1\n"
    "  plenxkit message encode DeviceOnline groupName=g_1 deviceId=d isRemote=0 data=01,02,ff\n"
    "  plenxkit message encode UpdateWindowsExplore 'path=utf16:C:\\Data'\n"
    "  plenxkit message encode --from message.json --binary --output message.bin";

constexpr char kListFooter[] =
    "Examples:\n"
    "  plenxkit message list\n"
    "  plenxkit message list DeviceOnline";

constexpr char kLogFooter[] =
    "Lines without a message are skipped. The log cuts long texts and long arrays. A message that\n"
    "was cut is named, but counts neither as good nor as broken.\n"
    "\n"
    "Example:\n"
    "  plenxkit message log service.log --json";

void DeclareDecode(CLI::App& app, DecodeOptions& options) {
    CLI::App& command = *app.add_subcommand("decode", "Show a message and its mistakes");
    auto* const hex =
        command.add_option("HEX", options.hex, "The message in hex, instead of --file");
    command.add_option("--file", options.file, "Read the message from this file; - is the input")
        ->capture_default_str()
        ->excludes(hex);
    command.add_option("--as", options.as, "The kind of message: a name, a number, or reply")
        ->type_name("MESSAGE");
    command.add_flag("--json", options.json, "Print JSON");
    command.footer(kDecodeFooter);
}

void DeclareEncode(CLI::App& app, EncodeOptions& options) {
    CLI::App& command = *app.add_subcommand("encode", "Build a message");
    command.add_option("MESSAGE", options.message,
                       "The kind of message: a name, a number, or reply");
    command.add_option("FIELD", options.fields, "Its arguments as FIELD=VALUE, in any order");
    command.add_option("--from", options.from,
                       "Read a description in JSON from this file; - is the input");
    command.add_flag("--binary", options.binary, "Write the bytes themselves, not hex");
    command.add_option("--output", options.output, "Write to this file; - is the output")
        ->capture_default_str();
    command.footer(kEncodeFooter);
}

void DeclareLog(CLI::App& app, LogOptions& options) {
    CLI::App& command =
        *app.add_subcommand("log", "Show the messages in the log of a development service");
    command.add_option("FILE", options.file, "The log; - is the input")->capture_default_str();
    command.add_flag("--broken", options.brokenOnly, "Show broken messages only");
    command.add_flag("--json", options.json, "Print one JSON object per message and line");
    command.footer(kLogFooter);
}

void DeclareList(CLI::App& app, ListOptions& options) {
    CLI::App& command = *app.add_subcommand("list", "Show all messages with their arguments");
    command.add_option("MESSAGE", options.message, "Show only this message: a name or a number");
    command.add_flag("--json", options.json, "Print JSON");
    command.footer(kListFooter);
}

int RunChosen(const Options& options, const PlenxKit::Streams& streams) {
    if (options.command == "decode") {
        return RunDecode(options.decode, streams.in, streams.out);
    }
    if (options.command == "encode") {
        return RunEncode(options.encode, streams.in, streams.out);
    }
    if (options.command == "log") {
        return RunLog(options.log, streams.in, streams.out, streams.err);
    }
    return RunList(options.list, streams.out);
}

}  // namespace

CLI::App& Declare(CLI::App& program, Options& options) {
    CLI::App& command = *program.add_subcommand(
        "message", "Decode, check and build the messages between plenxsdk and its services");
    command.require_subcommand(1);
    DeclareDecode(command, options.decode);
    DeclareEncode(command, options.encode);
    DeclareLog(command, options.log);
    DeclareList(command, options.list);
    command.footer(kFooter);
    command.callback([&] { options.command = command.get_subcommands().front()->get_name(); });
    return command;
}

int Run(const Options& options, const PlenxKit::Streams& streams) {
    return PlenxKit::Concluded("message", streams.err, [&] { return RunChosen(options, streams); });
}

}  // namespace PlenxMessage
