/* The functions of the Windows C runtime's <direct.h> that the product uses. */

#ifndef PLENXSDK_FAKES_DIRECT_H
#define PLENXSDK_FAKES_DIRECT_H

#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

int _wmkdir(const wchar_t* path);
int _wrmdir(const wchar_t* path);

#ifdef __cplusplus
}
#endif

#endif
