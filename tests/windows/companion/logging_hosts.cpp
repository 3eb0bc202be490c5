#include "companion/logging_hosts.h"

#include <windows.h>

#include <sstream>
#include <thread>
#include <vector>

#include "companion/late_caller.h"
#include "distributed_file_manager.h"
#include "log_helper.h"

namespace PlenxTest {
namespace {

constexpr DWORD kDeadline = 10000;  // shorter than the parent waits

void Log(LOG_MESSAGE_LEVEL level, const std::wstring& text) {
    std::wostringstream stream;
    stream << text;
    OvLogger::GetInstance()->Log(level, stream);
}

void LogNothing() {}

void LogFromThreads() {
    std::vector<std::thread> threads;
    for (int t = 0; t != kThreads; ++t) {
        threads.emplace_back([t] {
            for (int n = 0; n != kLinesPerThread; ++n) {
                Log(LOG_MESSAGE_LEVEL_INFO,
                    L"thread " + std::to_wstring(t) + L" line " + std::to_wstring(n));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

// The system ends these threads wherever they are, and one of them nearly always owns a lock.
void ReturnWhileThreadsCall() {
    constexpr int kLinesUntilBusy = 20;
    const HANDLE busy = CreateSemaphoreW(nullptr, 0, kThreads + 1, nullptr);
    const auto keepCalling = [busy](auto call) {
        std::thread([busy, call] {
            for (int n = 1;; ++n) {
                call();
                if (n == kLinesUntilBusy) {
                    ReleaseSemaphore(busy, 1, nullptr);
                }
            }
        }).detach();
    };
    for (int t = 0; t != kThreads; ++t) {
        keepCalling([] { Log(LOG_MESSAGE_LEVEL_INFO, L"busy"); });
    }
    keepCalling([] { LateOffice().Start(); });
    for (int t = 0; t != kThreads + 1; ++t) {
        WaitForSingleObject(busy, kDeadline);
    }
}

void LogEachLevel() {
    Log(LOG_MESSAGE_LEVEL_INFO, L"a\r\nb");
    Log(LOG_MESSAGE_LEVEL_ERROR, L"\x4E2D\xD83D\xDE00 \xD83D");
    Log(static_cast<LOG_MESSAGE_LEVEL>(2), L"two");
}

// Between the two lines, the parent changes what is in the way.
void LogTwice() {
    Log(LOG_MESSAGE_LEVEL_INFO, L"one");
    SetEvent(OpenEventW(EVENT_MODIFY_STATE, FALSE, kOneIsWritten));
    WaitForSingleObject(OpenEventW(SYNCHRONIZE, FALSE, kGoOn), kDeadline);
    Log(LOG_MESSAGE_LEVEL_INFO, L"two");
}

constexpr LoggingHost kHosts[] = {
    {"nothing", 40, LogNothing},
    {"threads", 41, LogFromThreads},
    {"busy", 42, ReturnWhileThreadsCall},
    {"levels", 43, LogEachLevel},
    {"twice", 44, LogTwice},
};

}  // namespace

const LoggingHost* FindLoggingHost(const std::string& name) {
    for (const LoggingHost& host : kHosts) {
        if (name == host.name) {
            return &host;
        }
    }
    return nullptr;
}

}  // namespace PlenxTest
