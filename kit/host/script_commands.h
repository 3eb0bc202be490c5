// The commands that a script is made of besides the library's operations; see commands.h.

#ifndef PLENXKIT_HOST_SCRIPT_COMMANDS_H
#define PLENXKIT_HOST_SCRIPT_COMMANDS_H

#include "host/arguments.h"
#include "host/session.h"

namespace PlenxHost {

Action ParseAnswer(Arguments& arguments);
Action ParseAnswerLink(Arguments& arguments);
Action ParseSlow(Arguments& arguments);
Action ParseThrow(Arguments& arguments);
Action ParseExpect(Arguments& arguments);
Action ParseExpectNone(Arguments& arguments);
Action ParseExpectResult(Arguments& arguments);
Action ParseExpectResultText(Arguments& arguments);
Action ParseForget(Arguments& arguments);
Action ParseSleep(Arguments& arguments);
Action ParseEcho(Arguments& arguments);
Action ParseHelp(Arguments& arguments);
Action ParseQuit(Arguments& arguments);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_SCRIPT_COMMANDS_H
