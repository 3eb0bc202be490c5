// The tests of the plain C interface share this code.

#ifndef UNIT_C_INTERFACE_C_FIXTURE_H
#define UNIT_C_INTERFACE_C_FIXTURE_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "facade/facade_fixture.h"
#include "fake_process.h"
#include "plenxsdk/plenx.h"
#include "rpc/manager_calls.h"

/// Returns the text of plenx_last_error on this thread.
inline std::string LastError() {
    char text[1024];
    std::size_t length = 0;
    EXPECT_EQ(plenx_last_error(text, sizeof(text), &length), 0);
    return {text, length};
}

/// Returns a line such as "10 service 1 type 0 msg_len 0 value 0 lost 0: text".
inline std::string Show(const plenx_event& event) {
    return std::to_string(event.kind) + " service " + std::to_string(event.service) + " type " +
           std::to_string(event.type) + " msg_len " + std::to_string(event.msg_len) + " value " +
           std::to_string(event.value) + " lost " + std::to_string(event.lost) + ": " +
           std::string(event.text, event.text_length);
}

inline std::string ShowConnect(const std::string& group, std::uint64_t lost = 0) {
    return "10 service 1 type 0 msg_len 0 value 0 lost " + std::to_string(lost) + ": " + group;
}

inline void Connect(const std::string& group) {
    CallManager(10, MessageOf({StringArg(group + "_1")}));
}

/// A queue that closes itself when it is destroyed.
class OpenQueue {
public:
    explicit OpenQueue(std::uint32_t capacity = 1000) {
        EXPECT_EQ(plenx_queue_open(capacity, &queue_), 0);
    }
    ~OpenQueue() { plenx_queue_close(queue_); }
    OpenQueue(const OpenQueue&) = delete;
    OpenQueue& operator=(const OpenQueue&) = delete;

    plenx_queue* Get() const { return queue_; }

    /// Takes everything that the queue holds.
    std::vector<std::string> Drain() const {
        std::vector<std::string> events;
        const plenx_event* event = nullptr;
        while (plenx_queue_next(queue_, 0, &event) == 0 && event != nullptr) {
            events.push_back(Show(*event));
            plenx_event_free(event);
        }
        return events;
    }

private:
    plenx_queue* queue_ = nullptr;
};

#endif  // UNIT_C_INTERFACE_C_FIXTURE_H
