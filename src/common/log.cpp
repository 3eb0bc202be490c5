#include "common/log.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <memory>

#include "common/log_stream.h"
#include "common/utf8.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace DistributedFs {
namespace {

// Building a line allocates, which may change the error values that the caller has yet to report.
class KeepErrors {
public:
    KeepErrors() noexcept : errno_(errno) {}
    ~KeepErrors() {
#ifdef _WIN32
        SetLastError(lastError_);
#endif
        errno = errno_;
    }
    KeepErrors(const KeepErrors&) = delete;
    KeepErrors& operator=(const KeepErrors&) = delete;

private:
#ifdef _WIN32
    DWORD lastError_ = GetLastError();
#endif
    int errno_;
};

template <std::size_t Most, class Number>
wchar_t* WriteDecimal(wchar_t* out, Number number) noexcept {
    char digits[Most];
    return std::copy(digits, std::to_chars(digits, digits + Most, number).ptr, out);
}

// Room for the characters of a line. Most lines fit without an allocation.
class LineRoom {
public:
    explicit LineRoom(std::size_t characters) {
        if (characters > LogStream::kMostKept) {
            long_ = std::make_unique<wchar_t[]>(characters);
        }
    }
    wchar_t* Begin() noexcept { return long_ ? long_.get() : short_; }

private:
    wchar_t short_[LogStream::kMostKept];
    std::unique_ptr<wchar_t[]> long_;
};

}  // namespace

wchar_t* LogValue::Write(wchar_t* out) const noexcept {
    switch (kind_) {
    case Kind::kNarrow:
        return WriteLenientUtf8(out, {narrow_, most_});
    case Kind::kWide:
        return std::copy_n(wide_, most_, out);
    case Kind::kLetter:
        *out = static_cast<wchar_t>(static_cast<unsigned char>(letter_));
        return out + 1;
    case Kind::kSigned:
        return WriteDecimal<kMostDigits>(out, static_cast<std::int64_t>(number_));
    case Kind::kUnsigned:
        break;
    }
    return WriteDecimal<kMostDigits>(out, number_);
}

void TouchLogger() noexcept {
    try {
        OvLogger::GetInstance();
        LogStream::Keep();
    } catch (...) {
        // The next line tries again.
    }
}

void WriteLogLine(LOG_MESSAGE_LEVEL level, std::string_view function, const LogValue* parts,
                  std::size_t count) noexcept {
    const KeepErrors keep;
    try {
        OvLogger* const logger = OvLogger::GetInstance();
        if (logger == nullptr) {
            return;
        }
        std::size_t most = function.size() + 2;
        for (std::size_t i = 0; i != count; ++i) {
            most += parts[i].MostCharacters();
        }
        LineRoom line(most);
        wchar_t* end = line.Begin();
        for (std::size_t i = 0; i != count; ++i) {
            end = parts[i].Write(end);
        }
        *end++ = L'(';
        end = LogValue(function).Write(end);
        *end++ = L')';

        LogStream stream(most);
        stream.Get().rdbuf()->sputn(line.Begin(), end - line.Begin());
        logger->Log(level, stream.Get());
    } catch (...) {
        // A line that cannot be written must not fail the operation that it describes.
    }
}

}  // namespace DistributedFs
