#include "trace/code_meaning.h"

namespace PlenxTrace {
namespace {

struct Meaning {
    std::int64_t code;
    std::string_view text;
};

constexpr Meaning kMeanings[] = {
    {1, "the Service Control Manager was not opened"},
    {2, "the service was not opened"},
    {3, "the service was not created"},
    {4, "the service's status could not be asked"},
    {5, "the service did not start"},
    {6, "the service refused to stop"},
    {7, "the service was not deleted or not stopped"},
    {16, "no such service type or group name"},
    {19, "an argument could not be written into the message"},
    {20, "an argument could not be read from the message"},
    {21, "a broken message"},
    {22, "no memory for the reply"},
    {24, "a driver file could not be replaced"},
    {26, "an empty text where one is needed"},
    {27, "a folder could not be made"},
    {28, "a file or folder could not be removed"},
    {30, "a path is absent"},
    {31, "no working folder could be made"},
    {32, "the services' folders could not be made"},
    {998, "the service failed inside the call"},
    {1722, "nobody serves the endpoint"},
    {1723, "the service is too busy"},
    {1726, "the service went away during the call"},
    {1727, "the call was not carried out"},
    {1728, "RPC protocol error"},
    {1753, "no endpoint of that name"},
    {1783, "a bad message for the stub"},
};

}  // namespace

std::string_view CodeMeaning(std::int64_t code) {
    for (const Meaning& meaning : kMeanings) {
        if (meaning.code == code) {
            return meaning.text;
        }
    }
    return {};
}

}  // namespace PlenxTrace
