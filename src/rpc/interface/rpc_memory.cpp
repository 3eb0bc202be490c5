#include "rpc/interface/rpc_memory.h"

#include <new>

// The runtime is C and must not get an exception, so a failure returns null.
void* MIDL_user_allocate(size_t size) {
    return new (std::nothrow) unsigned char[size];
}

void MIDL_user_free(void* block) {
    delete[] static_cast<unsigned char*>(block);
}
