// clang knows these words in every mode, and Visual C++ does not know them. Every source of the
// check sees this first. Outside the system's headers, each of the words causes a warning.

#define __attribute__ PLENX_GNU_ATTRIBUTE
#define PLENX_GNU_ATTRIBUTE __attribute__
#pragma clang deprecated(PLENX_GNU_ATTRIBUTE, "Visual C++ does not know it")
#define __extension__ PLENX_GNU_EXTENSION
#define PLENX_GNU_EXTENSION __extension__
#pragma clang deprecated(PLENX_GNU_EXTENSION, "Visual C++ does not know it")
#define __asm__ PLENX_GNU_ASM
#define PLENX_GNU_ASM __asm__
#pragma clang deprecated(PLENX_GNU_ASM, "Visual C++ does not know it")
#define __typeof__ PLENX_GNU_TYPEOF
#define PLENX_GNU_TYPEOF __typeof__
#pragma clang deprecated(PLENX_GNU_TYPEOF, "Visual C++ does not know it")
#define __PRETTY_FUNCTION__ PLENX_GNU_PRETTY_FUNCTION
#define PLENX_GNU_PRETTY_FUNCTION __PRETTY_FUNCTION__
#pragma clang deprecated(PLENX_GNU_PRETTY_FUNCTION, "Visual C++ does not know it")
#define __builtin_expect __builtin_expect
#pragma clang deprecated(__builtin_expect, "Visual C++ does not know it")
#define __builtin_unreachable __builtin_unreachable
#pragma clang deprecated(__builtin_unreachable, "Visual C++ does not know it")
#define __builtin_trap __builtin_trap
#pragma clang deprecated(__builtin_trap, "Visual C++ does not know it")
#define __builtin_memcpy __builtin_memcpy
#pragma clang deprecated(__builtin_memcpy, "Visual C++ does not know it")
#define __builtin_add_overflow __builtin_add_overflow
#pragma clang deprecated(__builtin_add_overflow, "Visual C++ does not know it")
#define __builtin_mul_overflow __builtin_mul_overflow
#pragma clang deprecated(__builtin_mul_overflow, "Visual C++ does not know it")
#define __builtin_popcount __builtin_popcount
#pragma clang deprecated(__builtin_popcount, "Visual C++ does not know it")
#define __builtin_clz __builtin_clz
#pragma clang deprecated(__builtin_clz, "Visual C++ does not know it")
#define __builtin_bswap32 __builtin_bswap32
#pragma clang deprecated(__builtin_bswap32, "Visual C++ does not know it")
#define __builtin_bswap64 __builtin_bswap64
#pragma clang deprecated(__builtin_bswap64, "Visual C++ does not know it")
