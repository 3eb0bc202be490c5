// Writes log lines for the tests, and classifies them.

#ifndef PLENXTRACE_TEST_STORY_H
#define PLENXTRACE_TEST_STORY_H

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "trace/classifier.h"

namespace PlenxTrace {

constexpr std::int64_t kNoon = 1795262400000;  // 2026-11-21 12:00:00.000
constexpr int kHostThread = 36;
constexpr int kWorkerThread = 240;
constexpr int kRpcThread = 392;

inline std::string At(int milliseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "2026-11-21 12:%02d:%02d.%03d", milliseconds / 60000,
                  milliseconds / 1000 % 60, milliseconds % 1000);
    return text;
}

inline std::string LibraryText(int milliseconds, const std::string& level, int thread,
                               const std::string& text, const std::string& function) {
    return At(milliseconds) + " [" + level + "] [" + std::to_string(thread) + "] [PLENXSDK] " +
           text + "(DistributedFs::" + function + ")";
}

inline std::string Info(int milliseconds, int thread, const std::string& text,
                        const std::string& function) {
    return LibraryText(milliseconds, "info", thread, text, function);
}

inline std::string Error(int milliseconds, int thread, const std::string& text,
                         const std::string& function) {
    return LibraryText(milliseconds, "error", thread, text, function);
}

inline std::string Pushed(int milliseconds, int service) {
    return Info(
        milliseconds, kHostThread,
        "plenx manager start service (" + std::to_string(service) + ") is pushed into thread pool",
        "PLENXManager::Start");
}

inline std::string Runs(int milliseconds, int service) {
    return Info(milliseconds, kWorkerThread,
                "plenx manager start service svcType(" + std::to_string(service) + ") is invoked",
                "PLENXManager::StartFunc");
}

inline std::string Told(int milliseconds, int service, int status, int value,
                        int thread = kWorkerThread) {
    return Info(milliseconds, thread,
                "plenx manager notify status invoked svcType:" + std::to_string(service) +
                    " sttsType:" + std::to_string(status) + " value:" + std::to_string(value),
                "PLENXManager::NotifyStatus");
}

inline Line AsLine(const std::string& text) {
    Line line;
    line.text = text;
    line.number = 1;
    return line;
}

inline std::vector<Event> Classified(const std::vector<std::string>& texts) {
    Classifier classifier;
    std::vector<Event> events;
    for (const std::string& text : texts) {
        const std::int64_t before = events.empty() ? kNoTime : events.back().time;
        events.push_back(classifier.Classify(AsLine(text), before));
    }
    return events;
}

inline Event ServiceEvent(const std::string& text) {
    return ClassifyServiceLine(AsLine(At(0) + " " + text), kNoTime);
}

}  // namespace PlenxTrace

#endif  // PLENXTRACE_TEST_STORY_H
