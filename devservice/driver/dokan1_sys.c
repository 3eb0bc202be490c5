/* A driver that loads, unloads and does nothing else. It takes the place of the file-system driver,
 * so that the library can register, start and upgrade it. */

#include <windows.h>

#include <winternl.h>

#include <stddef.h>

/* The beginning of the system's driver object. The headers for drivers come in a separate kit,
 * which not every machine with a compiler has. Source:
 * https://learn.microsoft.com/windows-hardware/drivers/ddi/wdm/ns-wdm-_driver_object */
typedef struct DriverObject {
    SHORT type;
    SHORT objectSize;
    void* deviceObject;
    ULONG flags;
    void* driverStart;
    ULONG driverSize;
    void* driverSection;
    void* driverExtension;
    UNICODE_STRING driverName;
    UNICODE_STRING* hardwareDatabase;
    void* fastIoDispatch;
    void* driverInit;
    void* driverStartIo;
    void(NTAPI* driverUnload)(struct DriverObject*);
} DriverObject;

_Static_assert(offsetof(DriverObject, driverUnload) == 0x68, "the system's layout");

static void NTAPI Unload(DriverObject* driver) {
    (void)driver;
}

NTSTATUS NTAPI DriverEntry(DriverObject* driver, UNICODE_STRING* registryPath);

NTSTATUS NTAPI DriverEntry(DriverObject* driver, UNICODE_STRING* registryPath) {
    (void)registryPath;
    driver->driverUnload = Unload;
    return 0;
}
