/* The part of <shlobj.h> that the product uses. */

#ifndef PLENXSDK_FAKES_SHLOBJ_H
#define PLENXSDK_FAKES_SHLOBJ_H

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

#define SHCNE_DRIVEADD 0x00000100
#define SHCNE_UPDATEDIR 0x00001000

#define SHCNF_PATHW 0x0005

void WINAPI SHChangeNotify(LONG eventId, UINT flags, LPCVOID item1, LPCVOID item2);

#ifdef __cplusplus
}
#endif

#endif
