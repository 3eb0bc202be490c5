/* A driver that loads and unloads and does nothing: it stands where the file-system driver
 * will be, so that it can be registered, started and upgraded. */

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
