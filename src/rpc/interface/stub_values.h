/* The descriptions of clients and servers share these values, and rely on these layouts. */

#ifndef PLENXSDK_RPC_INTERFACE_STUB_VALUES_H
#define PLENXSDK_RPC_INTERFACE_STUB_VALUES_H

#include <stddef.h>

#include "rpc/interface/message_formats.h"

/* The member of a stub descriptor that has its proxy or server information. */
#if defined(__MINGW32__)
#define PLENX_STUB_DESC_INFO Reserved4
#else
#define PLENX_STUB_DESC_INFO ProxyServerInfo
#endif

enum {
    PLENX_STUB_VERSION = 0x60001,
    PLENX_STUB_COMPILER = 0x801026e, /* the IDL compiler that the tables are modelled on */
    PLENX_STUB_FLAGS = 0x2000001,    /* the usual ones, and multiple transfer syntaxes */
};

_Static_assert(sizeof(RPC_CLIENT_INTERFACE) == 96, "client interface");
_Static_assert(offsetof(RPC_CLIENT_INTERFACE, InterpreterInfo) == 80, "client interface");
_Static_assert(offsetof(RPC_CLIENT_INTERFACE, Flags) == 88, "client interface");
_Static_assert(sizeof(RPC_SERVER_INTERFACE) == 96, "server interface");
_Static_assert(offsetof(RPC_SERVER_INTERFACE, InterpreterInfo) == 80, "server interface");
_Static_assert(offsetof(RPC_SERVER_INTERFACE, Flags) == 88, "server interface");
_Static_assert(sizeof(MIDL_STUB_DESC) == 152, "stub descriptor");
_Static_assert(offsetof(MIDL_STUB_DESC, Version) == 76, "stub descriptor");
_Static_assert(offsetof(MIDL_STUB_DESC, mFlags) == 120, "stub descriptor");
_Static_assert(offsetof(MIDL_STUB_DESC, PLENX_STUB_DESC_INFO) == 136, "stub descriptor");
_Static_assert(sizeof(MIDL_SYNTAX_INFO) == 80, "syntax information");
_Static_assert(sizeof(MIDL_STUBLESS_PROXY_INFO) == 48, "proxy information");
_Static_assert(sizeof(MIDL_SERVER_INFO) == 64, "server information");

#endif
