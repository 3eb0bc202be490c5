// Does the least work: it composes the line on the stack and makes one call that takes it. To a
// file it makes one fwrite and one fflush.

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>

#include "log/log_line.h"

namespace bench {
namespace {

constexpr std::size_t kRoom = 256;

std::size_t Print(char* line, const LineValues& values) {
    const int length = std::snprintf(
        line, kRoom,
        "[PLENXSDK] Invalid Args offset:%u rpcReqArgSize:%u rpcMsgSize_:%d argLen:%d(%s)",
        values.offset, values.argumentSize, values.messageSize, values.length, kLineFunction);
    return static_cast<std::size_t>(length);
}

// The text of a second is made once in that second.
class Clock {
public:
    std::size_t Print(char* out, std::size_t room) {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        if (now.tv_sec != second_) {
            second_ = now.tv_sec;
            tm parts{};
            localtime_r(&second_, &parts);
            std::strftime(text_, sizeof(text_), "%Y-%m-%d %H:%M:%S", &parts);
        }
        return static_cast<std::size_t>(std::snprintf(out, room, "%s.%03ld [info] [%ld] ", text_,
                                                      now.tv_nsec / 1000000, thread_));
    }

private:
    const long thread_ = syscall(SYS_gettid);
    time_t second_ = 0;
    char text_[32];
};

class Limit {
public:
    explicit Limit(const Destination& there) : text_(there.text) {
        if (!there.file.empty()) {
            file_ = std::fopen(there.file.c_str(), "w");
        }
    }
    ~Limit() {
        if (file_ != nullptr) {
            std::fclose(file_);
        }
    }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

    void Line(const LineValues& values) {
        char line[2 * kRoom];
        if (file_ == nullptr) {
            Take(line, Print(line, values));
            return;
        }
        std::size_t size = clock_.Print(line, kRoom);
        size += Print(line + size, values);
        line[size++] = '\n';
        std::fwrite(line, 1, size, file_);
        std::fflush(file_);
    }

private:
    __attribute__((noinline)) void Take(const char* line, std::size_t size) {
        Escape(line);
        if (text_ != nullptr) {
            text_->assign(line, size);
        }
    }

    std::string* text_;
    std::FILE* file_ = nullptr;
    Clock clock_;
};

[[maybe_unused]] const int kRegistered = RegisterLogger<Limit>("limit");

}  // namespace
}  // namespace bench
