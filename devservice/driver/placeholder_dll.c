/* A library that takes its place and exports nothing. */

#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* reserved) {
    (void)reason;
    (void)reserved;
    DisableThreadLibraryCalls(module);
    return TRUE;
}
