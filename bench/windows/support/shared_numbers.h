// A host of the library passes numbers to the benchmark that started it, in memory that both see.

#ifndef PLENXBENCH_WINDOWS_SUPPORT_SHARED_NUMBERS_H
#define PLENXBENCH_WINDOWS_SUPPORT_SHARED_NUMBERS_H

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace PlenxBench {

class SharedNumbers {
public:
    /// Both use the same name, and whoever comes first makes it. A number that nobody has set is 0.
    explicit SharedNumbers(const std::wstring& name)
        : mapping_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      kCount * sizeof(Number), name.c_str())),
          numbers_(static_cast<Number*>(MapViewOfFile(mapping_, FILE_MAP_WRITE, 0, 0, 0))) {
        if (numbers_ == nullptr) {
            throw std::runtime_error("no shared memory");
        }
    }
    ~SharedNumbers() {
        UnmapViewOfFile(numbers_);
        CloseHandle(mapping_);
    }
    SharedNumbers(const SharedNumbers&) = delete;
    SharedNumbers& operator=(const SharedNumbers&) = delete;

    std::atomic<std::int64_t>& operator[](std::size_t which) const { return numbers_[which]; }

private:
    using Number = std::atomic<std::int64_t>;
    static_assert(Number::is_always_lock_free);
    static constexpr DWORD kCount = 8;

    HANDLE mapping_;
    Number* numbers_;
};

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_SUPPORT_SHARED_NUMBERS_H
