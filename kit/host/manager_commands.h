// The commands for the operations of the library; see commands.h.

#ifndef PLENXKIT_HOST_MANAGER_COMMANDS_H
#define PLENXKIT_HOST_MANAGER_COMMANDS_H

#include "host/arguments.h"
#include "host/session.h"

namespace PlenxHost {

Action ParseInit(Arguments& arguments);
Action ParseDestroy(Arguments& arguments);
Action ParseGetInt(Arguments& arguments);
Action ParseGetString(Arguments& arguments);
Action ParseSetString(Arguments& arguments);
Action ParseSetInt(Arguments& arguments);
Action ParseStart(Arguments& arguments);
Action ParseStop(Arguments& arguments);
Action ParseEndProcess(Arguments& arguments);
Action ParseLocalOnline(Arguments& arguments);
Action ParseRemoteOnline(Arguments& arguments);
Action ParseLocalOffline(Arguments& arguments);
Action ParseRemoteOffline(Arguments& arguments);
Action ParseRename(Arguments& arguments);
Action ParseMessage(Arguments& arguments);
Action ParseOfficeDir(Arguments& arguments);
Action ParseRegister(Arguments& arguments);
Action ParseUnregister(Arguments& arguments);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_MANAGER_COMMANDS_H
