// The compiler's checks call this when a function has overwritten its frame or a buffer of known
// size. The compiler's own library has the same functions. But it asks the system's cryptography
// for the guard while the module is being loaded, which loads more modules under the loader lock.

#include <windows.h>

#include <stdint.h>

uintptr_t __stack_chk_guard;
void __stack_chk_fail(void);
void __chk_fail(void);

static uint64_t Mixed(uint64_t value, uint64_t more) {
    value = (value ^ more) * 0x9e3779b97f4a7c15u;
    return value ^ (value >> 29);
}

// Runs before every other constructor. It makes the guard from values that a remote attacker does
// not know: the exact time, and the addresses of stack and module. A zero byte in the guard stops
// functions that copy strings.
__attribute__((constructor(101), no_stack_protector)) static void SeedStackGuard(void) {
    FILETIME time;
    LARGE_INTEGER counter;
    GetSystemTimeAsFileTime(&time);
    QueryPerformanceCounter(&counter);
    uint64_t seed = Mixed(__builtin_ia32_rdtsc(), (uint64_t)counter.QuadPart);
    seed = Mixed(seed, ((uint64_t)time.dwHighDateTime << 32) | time.dwLowDateTime);
    seed = Mixed(seed, ((uint64_t)GetCurrentProcessId() << 32) | GetCurrentThreadId());
    seed = Mixed(seed, (uintptr_t)&time);
    seed = Mixed(seed, (uintptr_t)&__stack_chk_guard);
    __stack_chk_guard = (uintptr_t)seed & ~(uintptr_t)0xff;
}

// Ends the process at once, with STATUS_STACK_BUFFER_OVERRUN (0xC0000409), and calls no handler.
static __attribute__((noreturn)) void FailFast(void) {
    __asm__ volatile("int $0x29" : : "c"(2));
    __builtin_unreachable();
}

__attribute__((noreturn)) void __stack_chk_fail(void) {
    FailFast();
}

__attribute__((noreturn)) void __chk_fail(void) {
    FailFast();
}
