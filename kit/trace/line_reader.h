// Reads the lines of a log of any size, one at a time. It needs memory for one buffer and one line.
// It cuts a very long line.

#ifndef PLENXKIT_TRACE_LINE_READER_H
#define PLENXKIT_TRACE_LINE_READER_H

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <vector>

namespace PlenxTrace {

constexpr std::size_t kMostLineBytes = 4000;

struct Line {
    std::string text;            // without its end, CR LF or LF
    std::uint64_t cutBytes = 0;  // the number of bytes left out at the end of text
    std::uint64_t number = 0;
    bool torn = false;  // the log ended before the line did
};

class LineReader {
public:
    /// Reads no more than that many bytes, so that a log that grows meanwhile is the same log
    /// when it is read again. The stream must outlive the reader.
    LineReader(std::istream& stream, std::uint64_t mostBytes);

    /// Returns false at the end.
    bool Next(Line& line);

    std::uint64_t BytesRead() const { return bytesRead_; }

private:
    bool Fill();
    void SkipByteOrderMark();

    std::istream& stream_;
    std::uint64_t mostBytes_;
    std::uint64_t bytesRead_ = 0;
    std::uint64_t number_ = 0;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_LINE_READER_H
