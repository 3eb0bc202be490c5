#include "trace/merge.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace PlenxTrace {
namespace {

constexpr int kLibraryRank = 1;

// Of two lines of the same millisecond: a service receives after the library has asked, and the
// library hears after a service has sent or answered.
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
      ofService(log.ofService) {
    Advance();
}

void EventStream::Source::Advance() {
    if (!reader.Next(head)) {
        if (file.bad()) {
            throw FileError("cannot read all of " + path);
        }
        done = true;
        return;
    }
    headRank = kLibraryRank;
    if (ofService) {
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
    const auto key = [](const Source& source) {
        return std::make_tuple(source.time, source.headRank, source.index);
    };
    for (const auto& source : sources_) {
        if (!source->done && (first == nullptr || key(*source) < key(*first))) {
            first = source.get();
        }
    }
    if (first == nullptr) {
        return false;
    }
    event = first->ofService ? ClassifyServiceLine(std::move(first->head), first->headTime)
                             : classifier_.Classify(std::move(first->head), first->headTime);
    event.source = first->index;
    first->Advance();
    return true;
}

}  // namespace PlenxTrace
