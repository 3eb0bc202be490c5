/* A driver that loads, unloads and does nothing else. It takes the place of the file-system driver,
 * so that the library can register, start and upgrade it. */

#include <ntddk.h>

DRIVER_INITIALIZE DriverEntry;
static DRIVER_UNLOAD Unload;

static void NTAPI Unload(DRIVER_OBJECT* driver) {
    (void)driver;
}

NTSTATUS NTAPI DriverEntry(DRIVER_OBJECT* driver, UNICODE_STRING* registryPath) {
    (void)registryPath;
    driver->DriverUnload = Unload;
    return STATUS_SUCCESS;
}
