#include "rpc_interface/table_layouts.h"

#include <map>

namespace PlenxTest {
namespace {

#define VALUE(type, member) {#member, offsetof(type, member), sizeof(type::member), kValue}
#define POINTER(type, member, kind) {#member, offsetof(type, member), sizeof(void*), kind}

TableLayout ClientInterface() {
    using T = RPC_CLIENT_INTERFACE;
    return {"client interface",
            0,
            sizeof(T),
            {VALUE(T, Length), VALUE(T, InterfaceId), VALUE(T, TransferSyntax),
             POINTER(T, DispatchTable, kOpaque), VALUE(T, RpcProtseqEndpointCount),
             POINTER(T, RpcProtseqEndpoint, kOpaque), VALUE(T, Reserved),
             POINTER(T, InterpreterInfo, kProxyInfo), VALUE(T, Flags)}};
}

TableLayout ServerInterface() {
    using T = RPC_SERVER_INTERFACE;
    return {"server interface",
            0,
            sizeof(T),
            {VALUE(T, Length), VALUE(T, InterfaceId), VALUE(T, TransferSyntax),
             POINTER(T, DispatchTable, kDispatchTable), VALUE(T, RpcProtseqEndpointCount),
             POINTER(T, RpcProtseqEndpoint, kOpaque), POINTER(T, DefaultManagerEpv, kOpaque),
             POINTER(T, InterpreterInfo, kServerInfo), VALUE(T, Flags)}};
}

TableLayout StubDescriptor(const char* name, TableKind descriptor, TableKind info) {
    using T = MIDL_STUB_DESC;
    return {name,
            0,
            sizeof(T),
            {POINTER(T, RpcInterfaceInformation, descriptor),
             POINTER(T, pfnAllocate, kOpaque),
             POINTER(T, pfnFree, kOpaque),
             POINTER(T, IMPLICIT_HANDLE_INFO, kOpaque),
             POINTER(T, apfnNdrRundownRoutines, kOpaque),
             POINTER(T, aGenericBindingRoutinePairs, kOpaque),
             POINTER(T, apfnExprEval, kOpaque),
             POINTER(T, aXmitQuintuple, kOpaque),
             POINTER(T, pFormatTypes, kTypeString),
             VALUE(T, fCheckBounds),
             VALUE(T, Version),
             POINTER(T, pMallocFreeStruct, kOpaque),
             VALUE(T, MIDLVersion),
             POINTER(T, CommFaultOffsets, kOpaque),
             POINTER(T, aUserMarshalQuadruple, kOpaque),
             POINTER(T, NotifyRoutineTable, kOpaque),
             VALUE(T, mFlags),
             POINTER(T, CsRoutineTables, kOpaque),
             POINTER(T, ProxyServerInfo, info),
             VALUE(T, pExprInfo)}};
}

TableLayout ProxyInfo() {
    using T = MIDL_STUBLESS_PROXY_INFO;
    return {"proxy information",
            0,
            sizeof(T),
            {POINTER(T, pStubDesc, kClientStub), POINTER(T, ProcFormatString, kProcString),
             POINTER(T, FormatStringOffset, kProcOffsets), POINTER(T, pTransferSyntax, kSyntaxId),
             VALUE(T, nCount), POINTER(T, pSyntaxInfo, kClientSyntaxes)}};
}

TableLayout ServerInfo() {
    using T = MIDL_SERVER_INFO;
    return {"server information",
            0,
            sizeof(T),
            {POINTER(T, pStubDesc, kServerStub), POINTER(T, DispatchTable, kRoutines),
             POINTER(T, ProcString, kProcString), POINTER(T, FmtStringOffset, kProcOffsets),
             POINTER(T, ThunkTable, kOpaque), POINTER(T, pTransferSyntax, kSyntaxId),
             VALUE(T, nCount), POINTER(T, pSyntaxInfo, kServerSyntaxes)}};
}

TableLayout Syntaxes(const char* name, TableKind dispatch) {
    using T = MIDL_SYNTAX_INFO;
    struct Pair {
        T ndr20;
        T ndr64;
    };
    return {
        name,
        0,
        sizeof(Pair),
        {VALUE(Pair, ndr20.TransferSyntax), POINTER(Pair, ndr20.DispatchTable, dispatch),
         POINTER(Pair, ndr20.ProcString, kProcString),
         POINTER(Pair, ndr20.FmtStringOffset, kProcOffsets),
         POINTER(Pair, ndr20.TypeString, kTypeString),
         POINTER(Pair, ndr20.aUserMarshalQuadruple, kOpaque), VALUE(Pair, ndr20.pMethodProperties),
         VALUE(Pair, ndr20.pReserved2), VALUE(Pair, ndr64.TransferSyntax),
         POINTER(Pair, ndr64.DispatchTable, dispatch), POINTER(Pair, ndr64.ProcString, kOpaque),
         POINTER(Pair, ndr64.FmtStringOffset, kProcTable), POINTER(Pair, ndr64.TypeString, kOpaque),
         POINTER(Pair, ndr64.aUserMarshalQuadruple, kOpaque), VALUE(Pair, ndr64.pMethodProperties),
         VALUE(Pair, ndr64.pReserved2)}};
}

TableLayout DispatchTable() {
    using T = RPC_DISPATCH_TABLE;
    return {
        "dispatch table",
        0,
        sizeof(T),
        {VALUE(T, DispatchTableCount), POINTER(T, DispatchTable, kEntries), VALUE(T, Reserved)}};
}

TableLayout Pointers(const char* name, std::size_t count, TableKind kind) {
    TableLayout layout{name, 0, count * sizeof(void*), {}};
    for (std::size_t i = 0; i < count; ++i) {
        layout.members.push_back({"pointer", i * sizeof(void*), sizeof(void*), kind});
    }
    return layout;
}

TableLayout OneValue(const char* name, std::size_t size, std::size_t lead = 0) {
    return {name, lead, size + lead, {{"bytes", 0, size + lead, kValue}}};
}

TableLayout Procedure() {
    using P = Ndr64Procedure;
    TableLayout layout{"NDR64 procedure", 0, sizeof(P), {VALUE(P, procedure)}};
    const TableKind types[] = {kBaseType, kBaseType, kMsgArray, kBaseType, kRefPointer, kBaseType};
    std::size_t offset = offsetof(P, parameters);
    for (const TableKind type : types) {
        using T = NDR64_PARAM_FORMAT;
        layout.members.push_back({"parameter type", offset + offsetof(T, Type), 8, type});
        layout.members.push_back({"parameter", offset + offsetof(T, Attributes), 8, kValue});
        offset += sizeof(T);
    }
    return layout;
}

TableLayout Array(const char* name, TableKind size) {
    using A = Ndr64Array;
    return {name,
            0,
            sizeof(A),
            {{"array header", 0, 8, kValue},
             POINTER(A, header.ConfDescriptor, size),
             VALUE(A, element.ElementMemSize),
             POINTER(A, element.Element, kBaseType)}};
}

TableLayout Pointer(const char* name, TableKind pointee) {
    using T = NDR64_POINTER_FORMAT;
    return {name, 0, sizeof(T), {{"pointer header", 0, 4, kValue}, POINTER(T, Pointee, pointee)}};
}

std::map<TableKind, TableLayout> AllLayouts() {
    return {
        {kClientInterface, ClientInterface()},
        {kServerInterface, ServerInterface()},
        {kClientStub, StubDescriptor("client stub descriptor", kClientInterface, kProxyInfo)},
        {kServerStub, StubDescriptor("server stub descriptor", kServerInterface, kServerInfo)},
        {kProxyInfo, ProxyInfo()},
        {kServerInfo, ServerInfo()},
        {kClientSyntaxes, Syntaxes("client syntaxes", kOpaque)},
        {kServerSyntaxes, Syntaxes("server syntaxes", kDispatchTable)},
        {kDispatchTable, DispatchTable()},
        {kEntries, Pointers("dispatch entries", 2, kOpaque)},
        {kRoutines, Pointers("server routines", 1, kOpaque)},
        {kSyntaxId, OneValue("transfer syntax", sizeof(RPC_SYNTAX_IDENTIFIER))},
        {kTypeString, OneValue("NDR 2.0 types", kTypeStringSize, kStringLead)},
        {kProcString, OneValue("NDR 2.0 procedures", kProcStringSize, kStringLead)},
        {kProcOffsets, OneValue("procedure offsets", sizeof(unsigned short))},
        {kProcTable, Pointers("NDR64 procedure table", 1, kProcedure)},
        {kProcedure, Procedure()},
        {kBaseType, OneValue("NDR64 base type", 1)},
        {kMsgArray, Array("NDR64 msg", kMsgSize)},
        {kRespArray, Array("NDR64 resp array", kRespSize)},
        {kMsgSize, OneValue("NDR64 size of msg", sizeof(Ndr64MsgSize))},
        {kRespSize, OneValue("NDR64 size of resp", sizeof(Ndr64RespSize))},
        {kRefPointer, Pointer("NDR64 ref pointer", kUniquePointer)},
        {kUniquePointer, Pointer("NDR64 unique pointer", kRespArray)},
    };
}

}  // namespace

const TableLayout& LayoutOf(TableKind kind) {
    static const std::map<TableKind, TableLayout> layouts = AllLayouts();
    return layouts.at(kind);
}

}  // namespace PlenxTest
