#include "trace/command.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <system_error>

#include "trace/file_error.h"

namespace PlenxTrace {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kLeastEvents = 100;
constexpr std::uint64_t kMostEvents = 200000;

constexpr char kFooter[] =
    "The page needs no network and no server: open it in a browser, send it to somebody. It holds\n"
    "the lines of the logs as they are, so first take out whatever must stay private.\n"
    "\n"
    "A large log does not make a large page: the summary counts every line, the diagram shows the\n"
    "most telling ones, and the page says which were left out.\n"
    "\n"
    "Examples:\n"
    "  plenxkit trace library.log\n"
    "  plenxkit trace library.log --service service.log --output trace.html\n"
    "  plenxkit trace library.log --service service.log --host host.jsonl --text\n"
    "  plenxkit trace library.2.log library.1.log library.log --title \"Friday's failure\"\n"
    "\n"
    "Exit codes: 0 success, 1 a file cannot be read or written, 2 wrong usage.";

bool IsSameFile(const std::string& one, const std::string& other) {
    std::error_code none;
    return fs::equivalent(fs::u8path(one), fs::u8path(other), none);
}

// Fills in the options that were not given. The page must not replace a log.
void Complete(Request& request) {
    const fs::path log = fs::u8path(request.libraryLogs.back());
    if (request.output.empty()) {
        request.output = fs::path(log).replace_extension(".html").u8string();
    }
    if (request.title.empty()) {
        request.title = log.filename().u8string();
    }
    for (const auto* logs : {&request.libraryLogs, &request.serviceLogs}) {
        for (const std::string& path : *logs) {
            if (IsSameFile(path, request.output)) {
                throw CLI::ValidationError("--output", "is one of the logs: " + path);
            }
        }
    }
}

void Tell(const Request& request, const Report& report, const PlenxKit::Streams& streams) {
    streams.out << request.output << ": " << report.shown << " of " << report.lines
                << (report.lines == 1 ? " line, " : " lines, ") << report.pageBytes / 1000
                << " kB\n";
    if (report.serviceLineInLibraryLog) {
        streams.err << "plenxkit trace: a service's log was given as the library's; give it with "
                       "--service, behind the library's log\n";
    } else if (report.lines != 0 && report.understood == 0) {
        streams.err
            << "plenxkit trace: no line looks like one of a log; the page shows them as they "
               "are\n";
    }
}

}  // namespace

CLI::App& Declare(CLI::App& program, Request& request) {
    CLI::App& command = *program.add_subcommand(
        "trace", "Make a page from a log: a sequence diagram with a summary");
    command
        .add_option("LOG", request.libraryLogs,
                    "The library's log; if it was rotated, all of its parts")
        ->type_name("")
        ->required();
    command
        .add_option("--service", request.serviceLogs,
                    "The services' log; may be given several times")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    command.add_option("--output", request.output, "The page; else LOG with the ending .html")
        ->type_name("FILE");
    command.add_option("--title", request.title, "Its heading; else the name of LOG")
        ->type_name("TEXT");
    command.add_option("--events", request.mostEvents, "Show at most this many lines")
        ->type_name("COUNT")
        ->check(CLI::Range(kLeastEvents, kMostEvents).description(""))
        ->capture_default_str();
    const auto text = command.add_flag("--text", request.asText,
                                       "Print the lanes as text instead of making a page");
    command
        .add_option(
            "--host", request.hostLogs,
            "With --text: what plenxkit host printed with --json; may be given several times")
        ->type_name("FILE")
        ->expected(1)
        ->take_all()
        ->needs(text);
    command.add_option("--width", request.textWidth, "With --text: the width of a line")
        ->type_name("COLUMNS")
        ->check(CLI::Range(kLeastTextWidth, kMostTextWidth).description(""))
        ->capture_default_str()
        ->needs(text);
    for (const char* const option : {"--output", "--title", "--events"}) {
        text->excludes(command.get_option(option));
    }
    command.footer(kFooter);
    return command;
}

int Run(Request request, const PlenxKit::Streams& streams) {
    try {
        if (request.asText) {
            PrintText(request, streams.out);
            return kFine;
        }
        Complete(request);
        Tell(request, MakePage(request), streams);
        return kFine;
    } catch (const FileError& error) {
        streams.err << "plenxkit trace: " << error.what() << "\n";
        return kFileFailed;
    }
}

}  // namespace PlenxTrace
