/* Compiles the header as a C99 host does. C++ must find the same values as this source. */

#include "header_in_c.h"

#include "plenxsdk/plenx.h"

size_t EventSizeInC(void) {
    return sizeof(plenx_event);
}

size_t ObserverSizeInC(void) {
    return sizeof(plenx_observer);
}

size_t LastEventMemberInC(void) {
    return offsetof(plenx_event, text_length);
}

size_t LastObserverMemberInC(void) {
    return offsetof(plenx_observer, notify_disk_name);
}

plenx_result StartInC(const char* group) {
    return plenx_start(PLENX_PC, PLENX_TEXT(group), PLENX_TEXT("argument"));
}
