#include "common/log.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <iterator>
#include <locale>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "common/process_life.h"
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

// Lines of up to this many characters need no allocation.
constexpr std::size_t kMostKept = 512;

// Room for the characters of a line.
class LineRoom {
public:
    explicit LineRoom(std::size_t characters) {
        if (characters > kMostKept) {
            long_ = std::make_unique<wchar_t[]>(characters);
        }
    }
    wchar_t* Begin() noexcept { return long_ ? long_.get() : short_; }

private:
    wchar_t short_[kMostKept];
    std::unique_ptr<wchar_t[]> long_;
};

std::atomic_flag keptIsTaken = ATOMIC_FLAG_INIT;

struct KeptStream {
    KeptStream() {
        stream.imbue(std::locale::classic());
        stream.str(std::wstring(kMostKept, L' '));  // clearing it later keeps this capacity
    }
    ~KeptStream() { keptIsTaken.test_and_set(); }  // later lines use their own
    void OnProcessEnd() noexcept {}

    std::wostringstream stream;
};

std::wostringstream& Kept() {
    static ModuleObject<KeptStream> kept;
    return kept.Get().stream;
}

// The stream in which a line is handed to the logger, empty at first. Making a stream takes longer
// than writing a line, so one is kept. A line that finds it in use, by another thread or by a
// logger that logs, makes one of its own. So nobody ever waits, not even for a thread that has
// ended in the middle of a line.
class LineStream {
public:
    explicit LineStream(std::size_t length) {
        std::wostringstream& kept = Kept();
        if (length <= kMostKept && !keptIsTaken.test_and_set(std::memory_order_acquire)) {
            kept.str({});
            stream_ = &kept;
        } else {
            stream_ = &own_.emplace();
            stream_->imbue(std::locale::classic());
        }
    }
    ~LineStream() {
        if (!own_) {
            keptIsTaken.clear(std::memory_order_release);
        }
    }
    LineStream(const LineStream&) = delete;
    LineStream& operator=(const LineStream&) = delete;

    std::wostringstream& Get() noexcept { return *stream_; }

private:
    std::optional<std::wostringstream> own_;
    std::wostringstream* stream_;
};

template <class Number>
wchar_t* WriteDecimal(wchar_t* out, Number number) noexcept {
    char digits[20];
    return std::copy(digits, std::to_chars(digits, std::end(digits), number).ptr, out);
}

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
        return WriteDecimal(out, static_cast<std::int64_t>(number_));
    case Kind::kUnsigned:
        break;
    }
    return WriteDecimal(out, number_);
}

void TouchLogger() noexcept {
    try {
        OvLogger::GetInstance();
        Kept();
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

        LineStream stream(most);
        stream.Get().rdbuf()->sputn(line.Begin(), end - line.Begin());
        logger->Log(level, stream.Get());
    } catch (...) {
        // A line that cannot be written must not fail the operation that it describes.
    }
}

}  // namespace DistributedFs
