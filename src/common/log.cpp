#include "common/log.h"

#include <cerrno>
#include <locale>

#include "common/utf8.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace DistributedFs {
namespace {

// Building a line allocates, which may disturb the values that the caller has still to
// report.
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

void AppendDecimal(std::wstring& line, std::uint64_t number) {
    wchar_t digits[20];
    wchar_t* const end = digits + 20;
    wchar_t* first = end;
    do {
        *--first = static_cast<wchar_t>(L'0' + number % 10);
        number /= 10;
    } while (number != 0);
    line.append(first, end);
}

}  // namespace

void LogValue::AppendTo(std::wstring& line) const {
    switch (kind_) {
    case Kind::kNarrow:
        AppendLenientUtf8(line, narrow_);
        break;
    case Kind::kWide:
        line.append(wide_);
        break;
    case Kind::kLetter:
        line.push_back(static_cast<wchar_t>(static_cast<unsigned char>(letter_)));
        break;
    case Kind::kSigned:
        if (static_cast<std::int64_t>(number_) < 0) {
            line.push_back(L'-');
            AppendDecimal(line, 0 - number_);
            break;
        }
        [[fallthrough]];
    case Kind::kUnsigned:
        AppendDecimal(line, number_);
        break;
    }
}

void TouchLogger() noexcept {
    try {
        OvLogger::GetInstance();
    } catch (...) {
        // Each line tries again.
    }
}

void WriteLogLine(LOG_MESSAGE_LEVEL level, const char* function, const LogValue* parts,
                  std::size_t count) noexcept {
    const KeepErrors keep;
    try {
        OvLogger* const logger = OvLogger::GetInstance();
        if (logger == nullptr) {
            return;
        }
        std::wstring line;
        for (std::size_t i = 0; i != count; ++i) {
            parts[i].AppendTo(line);
        }
        line.push_back(L'(');
        LogValue(function).AppendTo(line);
        line.push_back(L')');

        std::wostringstream stream;
        stream.imbue(std::locale::classic());
        stream << line;
        logger->Log(level, stream);
    } catch (...) {
        // A line that cannot be written must not fail the operation it tells about.
    }
}

}  // namespace DistributedFs
