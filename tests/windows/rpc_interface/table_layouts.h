// Lists the values and pointers of each kind of table with their places. Padding is left out.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_LAYOUTS_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_LAYOUTS_H

#include <windows.h>

#include <rpc.h>
#include <rpcndr.h>

#include <ndr64types.h>

#include <cstddef>
#include <string>
#include <vector>

// mingw-w64 gives members of the runtime's tables names that differ from those of the Windows SDK.
#if defined(__MINGW32__)
#define ProxyServerInfo Reserved4
#define pExprInfo Reserved5
#define pMethodProperties pReserved1
#endif

namespace PlenxTest {

enum TableKind : int {
    kValue,   // not a pointer
    kOpaque,  // a pointer out of the tables, or one that should be null
    kClientInterface,
    kServerInterface,
    kClientStub,
    kServerStub,
    kProxyInfo,
    kServerInfo,
    kClientSyntaxes,
    kServerSyntaxes,
    kDispatchTable,
    kEntries,
    kRoutines,
    kSyntaxId,
    kTypeString,
    kProcString,
    kProcOffsets,
    kProcTable,
    kProcedure,
    kBaseType,
    kMsgArray,
    kRespArray,
    kMsgSize,
    kRespSize,
    kRefPointer,
    kUniquePointer,
};

struct TableMember {
    const char* name;
    std::size_t offset;
    std::size_t size;
    TableKind kind;
};

struct TableLayout {
    const char* name;
    std::size_t lead;  // the bytes before the place that a pointer names
    std::size_t size;  // including the lead
    std::vector<TableMember> members;
};

const TableLayout& LayoutOf(TableKind kind);

// A procedure with its parameters.
struct Ndr64Procedure {
    NDR64_PROC_FORMAT procedure;
    NDR64_PARAM_FORMAT parameters[6];
};

struct Ndr64Array {
    NDR64_CONF_ARRAY_HEADER_FORMAT header;
    NDR64_ARRAY_ELEMENT_INFO element;
};

// The size of an array is a word, then the expression.
struct Ndr64MsgSize {
    NDR64_UINT32 early;
    NDR64_EXPR_VAR variable;
};

struct Ndr64RespSize {
    NDR64_UINT32 early;
    NDR64_EXPR_OPERATOR indirection;
    NDR64_EXPR_VAR variable;
};

constexpr std::size_t kTypeStringSize = 39;
constexpr std::size_t kProcStringSize = 63;
constexpr std::size_t kStringLead = 2;

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_LAYOUTS_H
