#include "rpc/interface/manager_interface.h"

#define INTERFACE_ID PLENX_MANAGER_INTERFACE_ID
#define INTERFACE_ROUTINE PlenxHandleManagerMessage
#include "rpc/interface/server_tables.inc"

RPC_IF_HANDLE plenxManagerInterface = (RPC_IF_HANDLE)&serverInterface;
