#include "trace/merge.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "trace/host_line.h"

namespace PlenxTrace {
namespace {

// The ranks order lines of the same millisecond. A command of the host goes before the library's
// lines about it. A notification waits for the line with which the library begins to pass it on.
constexpr int kHostRank = -1;
constexpr int kLibraryRank = 1;
constexpr int kWaitingRank = 3;

// A service receives a request after the library has sent it, and the library hears a notification
// or an answer after the service has sent it.
int ServiceRank(std::string_view text) {
    const auto startsWith = [&](std::string_view start) {
        return text.substr(0, start.size()) == start;
    };
    return startsWith("sends ") || startsWith("answered ") ? kLibraryRank - 1 : kLibraryRank + 1;
}

std::ifstream Open(const std::string& path) {
    const std::filesystem::path name = std::filesystem::u8path(path);
    std::ifstream file(name, std::ios::binary);
    if (!file || std::filesystem::is_directory(name)) {
        throw FileError("cannot read " + path);
    }
    return file;
}

}  // namespace

EventStream::Source::Source(const LogFile& log, std::size_t place)
    : path(log.path),
      file(Open(log.path)),
      reader(file, log.bytes),
      index(place),
      writer(log.writer) {
    if (writer == Writer::kHost) {
        ReadHost();
    }
    Advance();
}

void EventStream::Source::ReadHost() {
    std::int64_t before = kNoTime;
    for (Line line; reader.Next(line);) {
        told.push_back(ClassifyHostLine(std::move(line), before));
        before = told.back().time;
    }
    std::stable_sort(told.begin(), told.end(),
                     [](const Event& one, const Event& other) { return one.time < other.time; });
    std::reverse(told.begin(), told.end());
}

void EventStream::Source::TakeHost() {
    done = told.empty();
    if (!done) {
        time = told.back().time;
    }
}

void EventStream::Source::Advance() {
    if (writer == Writer::kHost) {
        TakeHost();
        return;
    }
    if (!reader.Next(head)) {
        if (file.bad()) {
            throw FileError("cannot read all of " + path);
        }
        done = true;
        return;
    }
    headRank = kLibraryRank;
    if (writer == Writer::kService) {
        if (const auto parsed = ParseServiceLine(head.text)) {
            headTime = parsed->time;
            headRank = ServiceRank(parsed->text);
        }
    } else if (const auto parsed = ParseLibraryLine(head.text)) {
        headTime = parsed->time;
    }
    time = std::max(time, headTime);
}

EventStream::EventStream(const std::vector<LogFile>& logs) {
    for (const LogFile& log : logs) {
        sources_.push_back(std::make_unique<Source>(log, sources_.size()));
    }
}

bool EventStream::Next(Event& event) {
    Source* first = nullptr;
    const auto key = [&](const Source& source) {
        return std::make_tuple(source.time, RankOf(source), source.index);
    };
    for (const auto& source : sources_) {
        if (!source->done && (first == nullptr || key(*source) < key(*first))) {
            first = source.get();
        }
    }
    if (first == nullptr) {
        return false;
    }
    event = Classified(*first);
    event.source = first->index;
    Count(event);
    first->Advance();
    return true;
}

int EventStream::RankOf(const Source& source) const {
    if (source.writer != Writer::kHost) {
        return source.headRank;
    }
    const bool waits = source.told.back().kind == Kind::kHostTold && told_ >= begun_;
    return waits ? kWaitingRank : kHostRank;
}

Event EventStream::Classified(Source& source) {
    if (source.writer == Writer::kHost) {
        Event event = std::move(source.told.back());
        source.told.pop_back();
        return event;
    }
    return source.writer == Writer::kService
               ? ClassifyServiceLine(std::move(source.head), source.headTime)
               : classifier_.Classify(std::move(source.head), source.headTime);
}

void EventStream::Count(const Event& event) {
    begun_ += event.kind == Kind::kFanOut ? 1 : 0;
    told_ += event.kind == Kind::kHostTold ? 1 : 0;
}

}  // namespace PlenxTrace
