/* A fresh process of row 13: loads the DLL that its argument names and calls its first operation.
 * It is plain C, so that nothing that the DLL needs is loaded before. Its exit code is the time in
 * nanoseconds; 0 is a failure. */

#include <windows.h>

typedef void* (*GetInstance)(void);

int wmain(int argc, wchar_t** argv) {
    LARGE_INTEGER start, end, perSecond;
    HMODULE module;
    GetInstance call;
    void* instance = NULL;

    if (argc != 2) {
        return 0;
    }
    QueryPerformanceCounter(&start);
    module = LoadLibraryW(argv[1]);
    if (module != NULL) {
        call = (GetInstance)(void*)GetProcAddress(
            module, "_ZN13DistributedFs12PLENXManager11GetInstanceEv");
        instance = call != NULL ? call() : NULL;
    }
    QueryPerformanceCounter(&end);
    QueryPerformanceFrequency(&perSecond);
    TerminateProcess(GetCurrentProcess(), instance == NULL
                                              ? 0
                                              : (UINT)((double)(end.QuadPart - start.QuadPart) *
                                                       1e9 / (double)perSecond.QuadPart));
    return 0;
}
