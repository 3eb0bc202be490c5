// Walks through an interface's tables as the RPC runtime would and tells every value that is
// not as it has to be. It is the only guard of the NDR64 side, which does not run under Wine.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_WALKER_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_WALKER_H

#include <windows.h>

#include <rpc.h>

#include <string>
#include <vector>

#include "rpc_interface/table_image.h"

namespace PlenxTest {

/// What differs among the four descriptions.
struct ExpectedTables {
    Role role;
    const char* uuid;     // in its usual spelling
    const void* binding;  // client: the variable of the implicit handle
    long (*routine)(long, long, unsigned char*, long*, unsigned char**);  // server
};

/// One line for each fault; none when all is right.
std::vector<std::string> WalkTables(const void* descriptor, const ExpectedTables& expected);

/// The formats that a description leads to; null where the way to them is broken.
struct Formats {
    const unsigned char* procString = nullptr;
    const unsigned char* typeString = nullptr;
    const void* ndr64Procedure = nullptr;
};

Formats FindFormats(Role role, const void* descriptor);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_WALKER_H
