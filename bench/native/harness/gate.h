// Keeps a worker busy until it is opened. The gate may be gone before the worker has left it.

#ifndef PLENXSDK_BENCH_HARNESS_GATE_H
#define PLENXSDK_BENCH_HARNESS_GATE_H

#include <future>
#include <memory>

namespace bench {

class Gate {
public:
    /// The worker calls this. It says that it is here, then waits.
    void Pass() {
        const std::shared_ptr<Ends> ends = ends_;
        ends->entered.set_value();
        ends->opened.get_future().wait();
    }
    void WaitUntilEntered() { ends_->entered.get_future().wait(); }
    void Open() { ends_->opened.set_value(); }

private:
    struct Ends {
        std::promise<void> entered;
        std::promise<void> opened;
    };

    const std::shared_ptr<Ends> ends_ = std::make_shared<Ends>();
};

}  // namespace bench

#endif  // PLENXSDK_BENCH_HARNESS_GATE_H
