/* The functions of the Windows C runtime's <io.h> that the product uses. */

#ifndef PLENXSDK_FAKES_IO_H
#define PLENXSDK_FAKES_IO_H

#include <stdint.h>
#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

#define _A_NORMAL 0x00
#define _A_RDONLY 0x01
#define _A_HIDDEN 0x02
#define _A_SYSTEM 0x04
#define _A_SUBDIR 0x10
#define _A_ARCH 0x20

struct _wfinddata64i32_t {
    unsigned attrib;
    int64_t time_create;
    int64_t time_access;
    int64_t time_write;
    uint32_t size;
    wchar_t name[260];
};

int _waccess(const wchar_t* path, int mode);
int _wunlink(const wchar_t* path);
intptr_t _wfindfirst64i32(const wchar_t* pattern, struct _wfinddata64i32_t* data);
int _wfindnext64i32(intptr_t listing, struct _wfinddata64i32_t* data);
int _findclose(intptr_t listing);

#ifdef __cplusplus
}
#endif

#endif
