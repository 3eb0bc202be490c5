#include "rpc_interface/table_walker.h"

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "rpc/interface/rpc_memory.h"
#include "rpc_interface/table_layouts.h"

namespace PlenxTest {
namespace {

constexpr char kNdr20Uuid[] = "8a885d04-1ceb-11c9-9fe8-08002b104860";
constexpr char kNdr64Uuid[] = "71710533-beba-4937-8319-b5dbef9ccc36";

constexpr char kTypeBytes[] =
    "0000 1b0001002800080001 00015b 110c085c 11140200 12200200 1b0001002854180001 00015b 00";
constexpr char kProcBytes[] =
    "3248 00000000 0000 3000 1000 2400 47 06 0a 07 0100 0100 0000 0000 480000000800 "
    "480008000800 0b0010000200 502118000800 132020001200 700028001000 00";

// Returns the bytes of a text such as "12 34"; blanks do not count.
std::string FromHex(const std::string& text) {
    std::string bytes;
    std::string digits;
    for (const char character : text) {
        if (character != ' ' && character != '-') {
            digits += character;
        }
        if (digits.size() == 2) {
            bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
            digits.clear();
        }
    }
    return bytes;
}

std::string ToHex(const void* place, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        char byte[4];
        std::snprintf(byte, sizeof(byte), "%02x ", static_cast<const unsigned char*>(place)[i]);
        text += byte;
    }
    return text;
}

std::string UuidText(const GUID& id) {
    char text[40];
    std::snprintf(text, sizeof(text), "%08lx-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", id.Data1,
                  id.Data2, id.Data3, id.Data4[0], id.Data4[1], id.Data4[2], id.Data4[3],
                  id.Data4[4], id.Data4[5], id.Data4[6], id.Data4[7]);
    return text;
}

// In static data the address of an imported function is that of a jump through the import table,
// and a linker that links again and again puts another jump in front of it.
const void* BehindImportJump(const void* function) {
    const auto* code = static_cast<const unsigned char*>(function);
    if (code != nullptr && code[0] == 0xe9) {
        std::int32_t distance = 0;
        std::memcpy(&distance, code + 1, sizeof(distance));
        code += 5 + distance;
    }
    if (code == nullptr || code[0] != 0xff || code[1] != 0x25) {
        return function;
    }
    std::int32_t distance = 0;
    std::memcpy(&distance, code + 2, sizeof(distance));
    const void* target = nullptr;
    std::memcpy(&target, code + 6 + distance, sizeof(target));
    return target;
}

const void* RuntimeFunction(const char* name) {
    const HMODULE runtime = GetModuleHandleW(L"rpcrt4.dll");
    return reinterpret_cast<const void*>(GetProcAddress(runtime, name));
}

template <typename Function>
const void* Address(Function* function) {
    return reinterpret_cast<const void*>(function);
}

class Walker {
public:
    explicit Walker(const ExpectedTables& expected) : expected_(expected) {}

    std::vector<std::string> Walk(const void* descriptor) {
        if (expected_.role == Role::kClient) {
            WalkClient(static_cast<const RPC_CLIENT_INTERFACE*>(descriptor));
        } else {
            WalkServer(static_cast<const RPC_SERVER_INTERFACE*>(descriptor));
        }
        return faults_;
    }

private:
    void WalkClient(const RPC_CLIENT_INTERFACE* descriptor) {
        Equal("interface length", descriptor->Length, 96);
        Syntax("interface id", descriptor->InterfaceId, expected_.uuid, 1);
        Syntax("interface transfer syntax", descriptor->TransferSyntax, kNdr20Uuid, 2);
        Null("interface dispatch table", descriptor->DispatchTable);
        Equal("interface endpoints", descriptor->RpcProtseqEndpointCount, 0);
        Null("interface endpoint table", descriptor->RpcProtseqEndpoint);
        Equal("interface reserved", descriptor->Reserved, 0);
        Equal("interface flags", descriptor->Flags, 0x02000000);

        const auto* const info =
            static_cast<const MIDL_STUBLESS_PROXY_INFO*>(descriptor->InterpreterInfo);
        if (!There("proxy information", info)) {
            return;
        }
        StubDescriptor(info->pStubDesc, descriptor, info);
        Strings("proxy", info->ProcFormatString, info->FormatStringOffset);
        if (There("proxy transfer syntax", info->pTransferSyntax)) {
            Syntax("proxy transfer syntax", *info->pTransferSyntax, kNdr20Uuid, 2);
        }
        Equal("proxy syntaxes", info->nCount, 2);
        if (There("proxy syntaxes", info->pSyntaxInfo)) {
            Syntaxes(info->pSyntaxInfo);
            Null("NDR 2.0 dispatch table", info->pSyntaxInfo[0].DispatchTable);
            Null("NDR64 dispatch table", info->pSyntaxInfo[1].DispatchTable);
        }
    }

    void WalkServer(const RPC_SERVER_INTERFACE* descriptor) {
        Equal("interface length", descriptor->Length, 96);
        Syntax("interface id", descriptor->InterfaceId, expected_.uuid, 1);
        Syntax("interface transfer syntax", descriptor->TransferSyntax, kNdr20Uuid, 2);
        Equal("interface endpoints", descriptor->RpcProtseqEndpointCount, 0);
        Null("interface endpoint table", descriptor->RpcProtseqEndpoint);
        Null("interface entry points", descriptor->DefaultManagerEpv);
        Equal("interface flags", descriptor->Flags, 0x06000000);

        const auto* const info = static_cast<const MIDL_SERVER_INFO*>(descriptor->InterpreterInfo);
        if (!There("server information", info)) {
            return;
        }
        StubDescriptor(info->pStubDesc, descriptor, info);
        if (There("server routines", info->DispatchTable)) {
            Same("server routine", Address(info->DispatchTable[0]), Address(expected_.routine));
        }
        Strings("server", info->ProcString, info->FmtStringOffset);
        Null("thunk table", info->ThunkTable);
        if (There("server transfer syntax", info->pTransferSyntax)) {
            Syntax("server transfer syntax", *info->pTransferSyntax, kNdr64Uuid, 1);
        }
        Equal("server syntaxes", info->nCount, 2);
        if (There("server syntaxes", info->pSyntaxInfo)) {
            Syntaxes(info->pSyntaxInfo);
            ServerDispatch(descriptor, info->pSyntaxInfo);
        }
    }

    void ServerDispatch(const RPC_SERVER_INTERFACE* descriptor, const MIDL_SYNTAX_INFO* syntaxes) {
        Same("interface dispatch table", descriptor->DispatchTable, syntaxes[0].DispatchTable);
        Dispatch("NDR 2.0", syntaxes[0].DispatchTable, "NdrServerCall2");
        Dispatch("NDR64", syntaxes[1].DispatchTable, "NdrServerCallAll");
        Check("dispatch tables are distinct",
              syntaxes[0].DispatchTable != syntaxes[1].DispatchTable);
    }

    void Dispatch(const std::string& what, const RPC_DISPATCH_TABLE* table, const char* entry) {
        if (!There(what + " dispatch table", table)) {
            return;
        }
        Equal(what + " dispatch count", table->DispatchTableCount, 1);
        Equal(what + " dispatch reserved", static_cast<std::uint64_t>(table->Reserved), 0);
        if (There(what + " dispatch entries", table->DispatchTable)) {
            Same(what + " dispatch entry", BehindImportJump(Address(table->DispatchTable[0])),
                 RuntimeFunction(entry));
            Null(what + " dispatch end", Address(table->DispatchTable[1]));
        }
    }

    void StubDescriptor(const MIDL_STUB_DESC* stub, const void* descriptor, const void* info) {
        if (!There("stub descriptor", stub)) {
            return;
        }
        Same("stub interface", stub->RpcInterfaceInformation, descriptor);
        Same("stub allocation", Address(stub->pfnAllocate), Address(&MIDL_user_allocate));
        Same("stub release", Address(stub->pfnFree), Address(&MIDL_user_free));
        Same("stub implicit handle", stub->IMPLICIT_HANDLE_INFO.pPrimitiveHandle,
             expected_.binding);
        Null("stub rundown routines", stub->apfnNdrRundownRoutines);
        Null("stub binding routines", stub->aGenericBindingRoutinePairs);
        Null("stub expressions", stub->apfnExprEval);
        Null("stub transmitted types", stub->aXmitQuintuple);
        Bytes("stub types", stub->pFormatTypes, kTypeBytes, kStringLead);
        Equal("stub bounds check", static_cast<std::uint64_t>(stub->fCheckBounds), 1);
        Equal("stub version", stub->Version, 0x60001);
        Null("stub allocation structure", stub->pMallocFreeStruct);
        Equal("stub compiler", static_cast<std::uint64_t>(stub->MIDLVersion), 0x801026e);
        Null("stub fault offsets", stub->CommFaultOffsets);
        Null("stub marshalled types", stub->aUserMarshalQuadruple);
        Null("stub notify routines", stub->NotifyRoutineTable);
        Equal("stub flags", stub->mFlags, 0x2000001);
        Null("stub code sets", stub->CsRoutineTables);
        Same("stub information", stub->ProxyServerInfo, info);
        Zero("stub end", stub->pExprInfo);
    }

    void Syntaxes(const MIDL_SYNTAX_INFO* syntaxes) {
        Syntax("NDR 2.0 syntax", syntaxes[0].TransferSyntax, kNdr20Uuid, 2);
        Strings("NDR 2.0", syntaxes[0].ProcString, syntaxes[0].FmtStringOffset);
        Bytes("NDR 2.0 types", syntaxes[0].TypeString, kTypeBytes, kStringLead);
        Syntax("NDR64 syntax", syntaxes[1].TransferSyntax, kNdr64Uuid, 1);
        Null("NDR64 procedure string", syntaxes[1].ProcString);
        Null("NDR64 types", syntaxes[1].TypeString);
        for (const int i : {0, 1}) {
            Null("syntax marshalled types", syntaxes[i].aUserMarshalQuadruple);
            Zero("syntax reserved 1", syntaxes[i].pMethodProperties);
            Equal("syntax reserved 2", syntaxes[i].pReserved2, 0);
        }
        const auto* const procedures =
            reinterpret_cast<const FormatInfoRef*>(syntaxes[1].FmtStringOffset);
        if (There("NDR64 procedure table", procedures)) {
            Procedure(static_cast<const Ndr64Procedure*>(procedures[0]));
        }
    }

    void Strings(const std::string& what, const unsigned char* procedures,
                 const unsigned short* offsets) {
        Bytes(what + " procedures", procedures, kProcBytes, kStringLead);
        if (There(what + " procedure offsets", offsets)) {
            Equal(what + " procedure offset", offsets[0], 0);
        }
    }

    void Procedure(const Ndr64Procedure* procedure) {
        if (!Bytes("NDR64 procedure", procedure,
                   "42006e00 30000000 10000000 28000000 0000 0000 0600 0000")) {
            return;
        }
        const NDR64_PARAM_FORMAT* const parameters = procedure->parameters;
        Bytes("NDR64 msgType", &parameters[0].Attributes, "c800 0000 00000000");
        Bytes("NDR64 msgType type", parameters[0].Type, "05");
        Bytes("NDR64 msgSize", &parameters[1].Attributes, "c800 0000 08000000");
        Bytes("NDR64 msgSize type", parameters[1].Type, "05");
        Bytes("NDR64 msg", &parameters[2].Attributes, "0b00 0000 10000000");
        Array("NDR64 msg type", parameters[2].Type, "01000000 03050000 08000000");
        Bytes("NDR64 respSize", &parameters[3].Attributes, "5081 0000 18000000");
        Bytes("NDR64 respSize type", parameters[3].Type, "05");
        Bytes("NDR64 resp", &parameters[4].Attributes, "1380 0000 20000000");
        RespPointer(static_cast<const NDR64_POINTER_FORMAT*>(parameters[4].Type));
        Bytes("NDR64 result", &parameters[5].Attributes, "f000 0000 28000000");
        Bytes("NDR64 result type", parameters[5].Type, "13");
    }

    void RespPointer(const NDR64_POINTER_FORMAT* ref) {
        if (!Bytes("NDR64 resp type", ref, "20140000")) {
            return;
        }
        const auto* const unique = static_cast<const NDR64_POINTER_FORMAT*>(ref->Pointee);
        if (Bytes("NDR64 resp pointee", unique, "21200000")) {
            Array("NDR64 resp array", unique->Pointee, "01000000 04050500 03070000 18000000");
        }
    }

    void Array(const std::string& what, const void* fragment, const char* sizeExpression) {
        const auto* const array = static_cast<const Ndr64Array*>(fragment);
        if (Bytes(what, array, "41000000 01000000")) {
            Bytes(what + ", size", array->header.ConfDescriptor, sizeExpression);
            Bytes(what + ", element size", &array->element.ElementMemSize, "01000000");
            Bytes(what + ", element", array->element.Element, "02");
        }
    }

    bool Check(const std::string& what, bool right) {
        if (!right) {
            faults_.push_back(what);
        }
        return right;
    }
    bool There(const std::string& what, const void* place) {
        return Check(what + " is missing", place != nullptr);
    }
    void Null(const std::string& what, const void* place) {
        Check(what + " is not null", place == nullptr);
    }
    // Some headers have an integer where others have a pointer.
    template <typename Value>
    void Zero(const std::string& what, Value value) {
        Check(what + " is not zero", value == Value{});
    }
    void Same(const std::string& what, const void* place, const void* expected) {
        Check(what + " leads elsewhere", place == expected);
    }
    void Equal(const std::string& what, std::uint64_t value, std::uint64_t expected) {
        Check(what + " is " + std::to_string(value) + ", not " + std::to_string(expected),
              value == expected);
    }
    void Syntax(const std::string& what, const RPC_SYNTAX_IDENTIFIER& id, const char* uuid,
                unsigned major) {
        Check(what + " is " + UuidText(id.SyntaxGUID), UuidText(id.SyntaxGUID) == uuid);
        Equal(what + " major", id.SyntaxVersion.MajorVersion, major);
        Equal(what + " minor", id.SyntaxVersion.MinorVersion, 0);
    }
    // Compares the bytes at the place, and checks that so many bytes before it are 0.
    bool Bytes(const std::string& what, const void* place, const char* hex, std::size_t zeros = 0) {
        if (!There(what, place)) {
            return false;
        }
        const std::string bytes = std::string(zeros, '\0') + FromHex(hex);
        const auto* const start = static_cast<const unsigned char*>(place) - zeros;
        return Check(what + " is " + ToHex(start, bytes.size()),
                     std::memcmp(start, bytes.data(), bytes.size()) == 0);
    }

    const ExpectedTables& expected_;
    std::vector<std::string> faults_;
};

}  // namespace

std::vector<std::string> WalkTables(const void* descriptor, const ExpectedTables& expected) {
    return Walker(expected).Walk(descriptor);
}

Formats FindFormats(Role role, const void* descriptor) {
    const MIDL_SYNTAX_INFO* syntaxes = nullptr;
    if (role == Role::kClient) {
        const auto* const info = static_cast<const MIDL_STUBLESS_PROXY_INFO*>(
            static_cast<const RPC_CLIENT_INTERFACE*>(descriptor)->InterpreterInfo);
        syntaxes = info != nullptr ? info->pSyntaxInfo : nullptr;
    } else {
        const auto* const info = static_cast<const MIDL_SERVER_INFO*>(
            static_cast<const RPC_SERVER_INTERFACE*>(descriptor)->InterpreterInfo);
        syntaxes = info != nullptr ? info->pSyntaxInfo : nullptr;
    }
    Formats formats;
    if (syntaxes != nullptr) {
        formats.procString = syntaxes[0].ProcString;
        formats.typeString = syntaxes[0].TypeString;
        const auto* const procedures =
            reinterpret_cast<const FormatInfoRef*>(syntaxes[1].FmtStringOffset);
        formats.ndr64Procedure = procedures != nullptr ? procedures[0] : nullptr;
    }
    return formats;
}

}  // namespace PlenxTest
