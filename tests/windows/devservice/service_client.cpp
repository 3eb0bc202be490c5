#include "devservice/service_client.h"

#include <limits>
#include <string>

#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_call.h"
#include "support/child_process.h"
#include "support/wide_text.h"
#include "wire/catalog.h"
#include "wire/local_binding.h"

namespace PlenxTest {

std::int32_t ServiceAnswer::Code() const {
    const PlenxWire::Decoded decoded = PlenxWire::DecodeReply(reply.data(), reply.size());
    return decoded.Ok() ? std::get<std::int32_t>(decoded.arguments[0])
                        : std::numeric_limits<std::int32_t>::min();
}

ServiceAnswer CallServiceWith(const std::wstring& endpoint, std::int32_t id,
                              const PlenxWire::Bytes& message) {
    const PlenxWire::LocalBinding binding(endpoint);
    plenxServiceBinding = binding.Get();
    PlenxServiceReply reply = {};
    const unsigned char nothing[1] = {};
    PlenxCallService(id, static_cast<long>(message.size()),
                     message.empty() ? nothing : message.data(), &reply);

    ServiceAnswer answer;
    answer.exception = reply.raised ? reply.exceptionCode : 0;
    answer.result = reply.result;
    answer.statedSize = reply.size;
    answer.hasBlock = reply.block != nullptr;
    if (reply.block && reply.size > 0) {
        answer.reply.assign(reply.block, reply.block + reply.size);
    }
    MIDL_user_free(reply.block);
    return answer;
}

ServiceAnswer CallService(const std::wstring& endpoint, std::int32_t id,
                          const PlenxWire::Arguments& arguments) {
    return CallServiceWith(endpoint, id, PlenxWire::Encode(arguments));
}

std::wstring CallerOf(const std::wstring& endpoint, std::int32_t id) {
    return ChildProcess::Self(L"--call " + endpoint + L" " + std::to_wstring(id));
}

std::optional<DWORD> ExceptionOfCall(const std::wstring& endpoint, std::int32_t id) {
    return ChildProcess(CallerOf(endpoint, id)).WaitForExit(10000);
}

std::optional<int> RunCaller(int argc, char** argv) {
    if (argc != 4 || std::string(argv[1]) != "--call") {
        return std::nullopt;
    }
    const ServiceAnswer answer =
        CallService(PlenxSupport::ToWide(argv[2]), std::stoi(argv[3]), {std::string("g_1")});
    return static_cast<int>(answer.exception);
}

}  // namespace PlenxTest
