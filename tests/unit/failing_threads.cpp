#include "failing_threads.h"

#include <dlfcn.h>

#include <cerrno>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/fake_scope.h"

namespace {

struct State {
    std::mutex mutex;
    int startsLeft = FailingThreads::kAll;
    std::vector<int> refusals;
    std::vector<pthread_t> started;
    std::vector<FailingThreads::Join> joins;
    int ended = 0;
};

// It is never destroyed, because threads may end after the program's objects.
State& Threads() {
    static State& state = *new State;
    return state;
}

struct Function {
    void* (*run)(void*);
    void* argument;
};

void* RunAndCount(void* argument) {
    const std::unique_ptr<const Function> function(static_cast<const Function*>(argument));
    void* const result = function->run(function->argument);
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    ++Threads().ended;
    return result;
}

bool MayStart() {
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    int& left = Threads().startsLeft;
    if (left > 0) {
        --left;
        return true;
    }
    return left != 0;
}

int NextRefusal() {
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    std::vector<int>& refusals = Threads().refusals;
    if (refusals.empty()) {
        return 0;
    }
    const int error = refusals.front();
    refusals.erase(refusals.begin());
    return error;
}

using Create = int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
using JoinThread = int(pthread_t, void**);

template <class F>
F* Next(const char* name) {
    return reinterpret_cast<F*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// A sanitizer that is linked into the program must learn of each thread, and these are its own
// names for the functions that this program replaces.
extern "C" __attribute__((weak)) Create __interceptor_pthread_create;    // NOLINT(*-identifier*)
extern "C" __attribute__((weak)) JoinThread __interceptor_pthread_join;  // NOLINT(*-identifier*)

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*run)(void*), void* argument) noexcept {
    static Create* const real = __interceptor_pthread_create != nullptr
                                    ? __interceptor_pthread_create
                                    : Next<Create>("pthread_create");
    const FakeScope inside;  // what this takes is no memory of the product's
    if (!MayStart()) {
        return EAGAIN;
    }
    auto function = std::make_unique<Function>(Function{run, argument});
    const int result = real(thread, attributes, RunAndCount, function.get());
    if (result == 0) {
        static_cast<void>(function.release());  // the thread has it now
        const std::lock_guard<std::mutex> lock(Threads().mutex);
        Threads().started.push_back(*thread);
    }
    return result;
}

extern "C" int pthread_join(pthread_t thread, void** value) {
    static JoinThread* const real = __interceptor_pthread_join != nullptr
                                        ? __interceptor_pthread_join
                                        : Next<JoinThread>("pthread_join");
    int result = NextRefusal();
    if (result == 0) {
        result = real(thread, value);
    }
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    Threads().joins.push_back({thread, result});
    return result;
}

namespace FailingThreads {

void SetStartsLeft(int count) {
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    Threads().startsLeft = count;
}

void RefuseJoins(std::vector<int> errors) {
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    Threads().refusals = std::move(errors);
}

std::vector<pthread_t> Started() {
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    return Threads().started;
}

std::vector<Join> Joins() {
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    return Threads().joins;
}

int Ended() {
    const std::lock_guard<std::mutex> lock(Threads().mutex);
    return Threads().ended;
}

}  // namespace FailingThreads
