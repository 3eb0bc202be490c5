// Compiled when a host is configured. A class crosses the border of plenxsdk.dll, so the host must
// share its compiler's rules and its C++ run time; a mismatch would only show as a crash.

#include <bits/c++config.h>

#ifdef _WIN32
#include <bits/gthr.h>
#endif

#if !defined(_WIN32)
#error \
    "plenxsdk: this compiler builds for another system; plenxsdk.dll is for 64-bit Windows. On Debian, begin an empty build folder with --toolchain cmake/mingw-w64-host.cmake of the package"
#elif !defined(__x86_64__)
#error "plenxsdk: this compiler builds for another processor; plenxsdk.dll is for 64-bit Windows"
#elif defined(_UCRT)
#error \
    "plenxsdk: this compiler uses the C run time ucrtbase.dll (MSYS2 UCRT64, say); plenxsdk.dll was built for msvcrt.dll (MSYS2 MINGW64, Debian)"
#elif !defined(__SEH__)
#error "plenxsdk: this compiler does not unwind by SEH, as plenxsdk.dll does"
#elif !defined(_GLIBCXX_GCC_GTHR_POSIX_H)
#error \
    "plenxsdk: this compiler has the thread model win32; plenxsdk.dll was built with posix (x86_64-w64-mingw32-g++-posix on Debian)"
#elif !_GLIBCXX_USE_CXX11_ABI
#error "plenxsdk: _GLIBCXX_USE_CXX11_ABI=0 gives std::string another layout than in plenxsdk.dll"
#elif _GLIBCXX_RELEASE > PLENXSDK_LIBSTDCXX && !defined(PLENXSDK_OWN_CXX_RUNTIME)
#error \
    "plenxsdk: this compiler's libstdc++ is newer than the one in the package; set plenxsdk_CXX_RUNTIME_DIR to the folder of its libstdc++-6.dll, and ship that one"
#endif
