// Walks through an interface's tables as the RPC runtime would and reports every wrong value. It is
// the only check of the NDR64 side, which does not run under Wine.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_WALKER_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_WALKER_H

#include <windows.h>

#include <rpc.h>

#include <string>
#include <vector>

#include "rpc_interface/table_image.h"

namespace PlenxTest {

/// The values in which the four descriptions differ.
struct ExpectedTables {
    Role role;
    const char* uuid;     // in the usual spelling
    const void* binding;  // for a client: the variable of the implicit handle
    long (*routine)(long, long, unsigned char*, long*, unsigned char**);  // for a server
};

/// Returns one line for each fault.
std::vector<std::string> WalkTables(const void* descriptor, const ExpectedTables& expected);

/// The formats that a description leads to. A pointer is null where the way to it is broken.
struct Formats {
    const unsigned char* procString = nullptr;
    const unsigned char* typeString = nullptr;
    const void* ndr64Procedure = nullptr;
};

Formats FindFormats(Role role, const void* descriptor);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_WALKER_H
