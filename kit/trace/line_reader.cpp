#include "trace/line_reader.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace PlenxTrace {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{64} * 1024;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

void Append(Line& line, const char* bytes, std::size_t count) {
    const std::size_t room = kMostLineBytes - line.text.size();
    const std::size_t taken = std::min(room, count);
    line.text.append(bytes, taken);
    line.cutBytes += count - taken;
}

void DropCarriageReturn(Line& line) {
    if (line.cutBytes == 0 && !line.text.empty() && line.text.back() == '\r') {
        line.text.pop_back();
    }
}

}  // namespace

LineReader::LineReader(std::istream& stream, std::uint64_t mostBytes)
    : stream_(stream), mostBytes_(mostBytes), buffer_(kBufferBytes) {}

bool LineReader::Next(Line& line) {
    line = {};
    bool any = false;
    while (begin_ != end_ || Fill()) {
        any = true;
        const char* const start = buffer_.data() + begin_;
        const auto* const stop = static_cast<const char*>(std::memchr(start, '\n', end_ - begin_));
        const std::size_t count =
            stop != nullptr ? static_cast<std::size_t>(stop - start) : end_ - begin_;
        Append(line, start, count);
        begin_ += count + (stop != nullptr ? 1 : 0);
        if (stop != nullptr) {
            DropCarriageReturn(line);
            line.number = ++number_;
            return true;
        }
    }
    line.torn = true;
    line.number = any ? ++number_ : number_;
    return any;
}

bool LineReader::Fill() {
    const std::uint64_t left = mostBytes_ - bytesRead_;
    const auto wanted = static_cast<std::streamsize>(std::min<std::uint64_t>(left, kBufferBytes));
    stream_.read(buffer_.data(), wanted);
    begin_ = 0;
    end_ = static_cast<std::size_t>(stream_.gcount());
    const bool first = bytesRead_ == 0;
    bytesRead_ += end_;
    if (first) {
        SkipByteOrderMark();
    }
    return begin_ != end_;
}

void LineReader::SkipByteOrderMark() {
    if (std::string_view(buffer_.data(), end_).substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        begin_ = kByteOrderMark.size();
    }
}

}  // namespace PlenxTrace
