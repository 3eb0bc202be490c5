#include "common/log_stream.h"

#include <atomic>
#include <locale>
#include <string>

#include "common/process_life.h"

namespace DistributedFs {
namespace {

std::atomic_flag keptIsTaken = ATOMIC_FLAG_INIT;

struct KeptStream {
    KeptStream() {
        stream.imbue(std::locale::classic());
        stream.str(std::wstring(LogStream::kMostKept, L' '));  // most libraries keep this room
    }
    ~KeptStream() { keptIsTaken.test_and_set(); }  // later lines make their own
    void OnProcessEnd() noexcept {}

    std::wostringstream stream;
};

std::wostringstream& Kept() {
    static ModuleObject<KeptStream> kept;
    return kept.Get().stream;
}

}  // namespace

LogStream::LogStream(std::size_t length) {
    if (length <= kMostKept) {
        std::wostringstream& kept = Kept();
        if (!keptIsTaken.test_and_set(std::memory_order_acquire)) {
            stream_ = &kept;
            stream_->str({});
            return;
        }
    }
    stream_ = &own_.emplace();
    stream_->imbue(std::locale::classic());
}

LogStream::~LogStream() {
    if (!own_) {
        keptIsTaken.clear(std::memory_order_release);
    }
}

void LogStream::Keep() {
    Kept();
}

}  // namespace DistributedFs
