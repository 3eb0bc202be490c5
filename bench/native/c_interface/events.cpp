// Measures the queue of the plain C interface, and the memory that it leaves.

#include <cstdint>
#include <string>

#include "c_interface/event_work.h"
#include "event_queue.h"
#include "layer.h"
#include "plenxsdk/plenx.h"

namespace bench {
namespace {

class Ours {
public:
    Ours() {
        plenx_queue_open(1000, &handle_);
        queue_ = &*PlenxC::Layer::Get().Find<PlenxC::EventQueue>(handle_);
    }
    ~Ours() { plenx_queue_close(handle_); }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    void Push(const std::string& group) {
        plenx_event event{};
        event.kind = PLENX_EVENT_CONNECT;
        event.text = group.c_str();
        event.text_length = group.size();
        queue_->Take(event);
    }
    bool TakeOne() {
        const plenx_event* event = nullptr;
        const bool open = plenx_queue_next(handle_, UINT32_MAX, &event) == PLENX_OK;
        plenx_event_free(event);
        return open;
    }
    void Stop() { plenx_queue_cancel(handle_); }

private:
    plenx_queue* handle_ = nullptr;
    PlenxC::EventQueue* queue_;
};

void MemoryAfterEvents(benchmark::State& state) {
    const std::string group(40, 'g');
    Ours queue;
    queue.Push(group);
    queue.TakeOne();
    const std::size_t before = BytesInUse();
    for (auto _ : state) {
        for (int i = 0; i != 1000000; ++i) {
            queue.Push(group);
            queue.TakeOne();
        }
    }
    state.counters["bytes_left"] = static_cast<double>(BytesInUse()) - static_cast<double>(before);
}

[[maybe_unused]] const int kRegisteredEvents = RegisterEvents<Ours>("ours");
[[maybe_unused]] const auto* const kRegisteredMemory =
    benchmark::RegisterBenchmark("16 memory after events/ours", MemoryAfterEvents)
        ->Iterations(1)
        ->Repetitions(1);

}  // namespace
}  // namespace bench
