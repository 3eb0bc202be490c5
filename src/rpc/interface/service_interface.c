#include "rpc/interface/service_interface.h"

#define INTERFACE_ID PLENX_SERVICE_INTERFACE_ID
#define INTERFACE_ROUTINE PlenxHandleServiceMessage
#include "rpc/interface/server_tables.inc"

RPC_IF_HANDLE plenxServiceInterface = (RPC_IF_HANDLE)&serverInterface;
