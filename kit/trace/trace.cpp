#include "trace/trace.h"

#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "trace/file_error.h"
#include "trace/log_line.h"
#include "trace/page.h"
#include "trace/summary.h"

namespace PlenxTrace {
namespace {

namespace fs = std::filesystem;

LogFile LogAt(const std::string& path, Writer writer) {
    std::error_code error;
    const std::uintmax_t bytes = fs::file_size(fs::u8path(path), error);
    if (error) {
        throw FileError("cannot read " + path);
    }
    return {path, writer, bytes};
}

std::vector<LogFile> LogsOf(const Request& request) {
    std::vector<LogFile> logs;
    const auto add = [&](const std::vector<std::string>& paths, Writer writer) {
        for (const std::string& path : paths) {
            logs.push_back(LogAt(path, writer));
        }
    };
    add(request.hostLogs, Writer::kHost);
    add(request.libraryLogs, Writer::kLibrary);
    add(request.serviceLogs, Writer::kService);
    return logs;
}

// The page has another name until it is complete.
class PartFile {
public:
    explicit PartFile(const std::string& path)
        : path_(path), part_(fs::u8path(path + ".part")), stream_(part_, std::ios::binary) {
        Check();
    }
    ~PartFile() {
        if (!done_) {
            stream_.close();
            std::error_code ignored;
            fs::remove(part_, ignored);
        }
    }
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    std::ostream& Stream() { return stream_; }
    void Check() const {
        if (!stream_) {
            throw FileError("cannot write " + path_);
        }
    }
    std::uint64_t Complete() {
        const auto bytes = static_cast<std::uint64_t>(stream_.tellp());
        stream_.close();
        Check();
        std::error_code error;
        fs::rename(part_, fs::u8path(path_), error);
        if (error) {
            throw FileError("cannot write " + path_);
        }
        done_ = true;
        return bytes;
    }

private:
    std::string path_;
    fs::path part_;
    std::ofstream stream_;
    bool done_ = false;
};

void WriteEvents(const std::vector<LogFile>& logs, Selection selection, PageWriter& page,
                 PartFile& file, Report& report) {
    EventStream stream(logs);
    std::vector<Shown> shown;
    const auto write = [&] {
        for (const Shown& one : shown) {
            page.Write(one);
            report.shown += one.leftOut == 0 ? 1 : 0;
        }
        shown.clear();
        file.Check();
    };
    for (Event event; stream.Next(event);) {
        selection.Take(std::move(event), shown);
        write();
    }
    selection.Finish(shown);
    write();
}

}  // namespace

Report MakePage(const Request& request) {
    const std::vector<LogFile> logs = LogsOf(request);
    Summary summary;
    Totals totals;
    Report report;
    EventStream stream(logs);
    for (Event event; stream.Next(event);) {
        summary.Add(event, totals.lines);
        totals.Count(event);
        report.serviceLineInLibraryLog =
            report.serviceLineInLibraryLog ||
            (event.kind == Kind::kForeign && logs[event.source].writer == Writer::kLibrary &&
             ParseServiceLine(event.line));
    }
    const Plan plan = MakePlan(totals, request.mostEvents);
    PartFile file(request.output);
    PageWriter page(file.Stream(), {request.title, logs, summary, totals, plan});
    report.lines = totals.lines;
    report.understood = totals.lines - summary.foreign;
    WriteEvents(logs, Selection(totals, plan, summary.Sequences()), page, file, report);
    page.Finish();
    report.pageBytes = file.Complete();
    return report;
}

void PrintText(const Request& request, std::ostream& out) {
    WriteTextView(LogsOf(request), request.textWidth, out);
}

}  // namespace PlenxTrace
