// plenxkit message: decodes, checks and builds the messages between the library and its services.

#ifndef PLENXKIT_MESSAGE_COMMAND_H
#define PLENXKIT_MESSAGE_COMMAND_H

#include "message/commands.h"
#include "streams.h"

namespace PlenxMessage {

struct Options {
    DecodeOptions decode;
    EncodeOptions encode;
    LogOptions log;
    ListOptions list;
    std::string command;  // which of the four
};

CLI::App& Declare(CLI::App& program, Options& options);
int Run(const Options& options, const PlenxKit::Streams& streams);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_COMMAND_H
