// Every source of the check sees this first. LLVM's C++ library and the libraries that we use ask
// the C run time of Visual C++ for these. The headers of Wine, which stand in for it, do not have
// them, or only since Wine 10.

#ifndef PLENXSDK_CMAKE_VISUAL_CPP_GAPS_H
#define PLENXSDK_CMAKE_VISUAL_CPP_GAPS_H

#include <corecrt.h>
#include <locale.h>
#include <share.h>
#include <stdarg.h>
#include <stdlib.h>
#include <time.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifndef PLENX_WINE_IS_NEW
struct timespec {
    time_t tv_sec;
    long tv_nsec;
};
errno_t __cdecl localtime_s(struct tm* parts, const time_t* time);
errno_t __cdecl getenv_s(size_t* length, char* value, size_t capacity, const char* name);
unsigned int __cdecl _set_abort_behavior(unsigned int flags, unsigned int mask);
int __cdecl ___mb_cur_max_func(void);
#define MB_CUR_MAX ((size_t)___mb_cur_max_func())
int __cdecl _islower_l(int character, _locale_t locale);
float __cdecl _strtof_l(const char* text, char** end, _locale_t locale);
#endif

int __cdecl timespec_get(struct timespec* time, int base);
errno_t __cdecl gmtime_s(struct tm* parts, const time_t* time);
errno_t __cdecl _dupenv_s(char** value, size_t* length, const char* name);
int __cdecl vsnprintf_s(char* text, size_t capacity, size_t most, const char* format,
                        va_list values);
intptr_t __cdecl _get_heap_handle(void);
int __cdecl _isupper_l(int character, _locale_t locale);
double __cdecl _strtod_l(const char* text, char** end, _locale_t locale);
#define _CRTDBG_FILE_STDERR ((void*)-5)
void* __cdecl _CrtSetReportFile(int kind, void* file);

#ifdef __cplusplus
}

#include <math.h>

#ifndef PLENX_WINE_IS_NEW
template <class Number>
bool isnan(Number value) {
    return __builtin_isnan(value);
}
template <class Number>
bool isinf(Number value) {
    return __builtin_isinf(value);
}
template <class Number>
bool isfinite(Number value) {
    return __builtin_isfinite(value);
}
template <class Number>
int fpclassify(Number value) {
    return __builtin_fpclassify(0, 1, 2, 3, 4, value);
}
#endif
template <class Number>
bool isnormal(Number value) {
    return __builtin_isnormal(value);
}
#endif

#define GetExceptionCode _exception_code
#define GetExceptionInformation (struct _EXCEPTION_POINTERS*)_exception_info

// Visual C++ does not have __has_attribute. GoogleTest asks for it, and relies on the one answer.
#define PLENX_HAS_disable_tail_calls 1
#define __has_attribute(name) PLENX_HAS_##name

#endif  // PLENXSDK_CMAKE_VISUAL_CPP_GAPS_H
