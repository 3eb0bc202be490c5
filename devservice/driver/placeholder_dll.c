/* An empty library, which takes the place of a real one and exports nothing. */

#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* reserved) {
    (void)reason;
    (void)reserved;
    DisableThreadLibraryCalls(module);
    return TRUE;
}
