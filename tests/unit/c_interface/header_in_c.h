/* With these functions the C source tells the C++ test what it found. */

#ifndef UNIT_C_INTERFACE_HEADER_IN_C_H
#define UNIT_C_INTERFACE_HEADER_IN_C_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

size_t EventSizeInC(void);
size_t ObserverSizeInC(void);
size_t LastEventMemberInC(void);
size_t LastObserverMemberInC(void);
int32_t StartInC(const char* group);

#ifdef __cplusplus
}
#endif

#endif
