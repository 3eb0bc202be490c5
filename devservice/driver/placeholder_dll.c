/* A library that holds its place and offers nothing. */

#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* reserved) {
    (void)reason;
    (void)reserved;
    DisableThreadLibraryCalls(module);
    return TRUE;
}
