#include "rpc/interface/rpc_memory.h"

#include <new>

// The runtime is C: an exception must not get there, so a failure is a null pointer.
void* MIDL_user_allocate(size_t size) {
    return new (std::nothrow) unsigned char[size];
}

void MIDL_user_free(void* block) {
    delete[] static_cast<unsigned char*>(block);
}
