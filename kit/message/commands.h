// The commands of plenxkit message. Each returns an exit code and throws UsageError.

#ifndef PLENXKIT_MESSAGE_COMMANDS_H
#define PLENXKIT_MESSAGE_COMMANDS_H

#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace PlenxMessage {

struct DecodeOptions {
    std::vector<std::string> hex;
    std::string file = "-";  // used when hex is not given
    std::string as;
    bool json = false;
};

struct EncodeOptions {
    std::string message;
    std::vector<std::string> fields;
    std::string from;  // JSON, in place of the two above
    std::string output = "-";
    bool binary = false;
};

struct LogOptions {
    std::string file = "-";
    bool brokenOnly = false;
    bool json = false;
};

struct ListOptions {
    std::string message;
    bool json = false;
};

int RunDecode(const DecodeOptions& options, std::istream& in, std::ostream& out);
int RunEncode(const EncodeOptions& options, std::istream& in, std::ostream& out);
/// Hints go to err.
int RunLog(const LogOptions& options, std::istream& in, std::ostream& out, std::ostream& err);
int RunList(const ListOptions& options, std::ostream& out);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_COMMANDS_H
