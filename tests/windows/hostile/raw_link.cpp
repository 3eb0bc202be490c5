#include "hostile/raw_link.h"

#include <rpc.h>
#include <rpcdcep.h>
#include <rpcndr.h>

#include <algorithm>
#include <cstring>

#include "hostile/raw_routine.h"
#include "rpc/interface/interface_identity.h"
#include "support/system_habits.h"
#include "wire/local_binding.h"

namespace PlenxTest {
namespace {

constexpr std::uint32_t kSomePointer = 0x20000;
constexpr unsigned kMaximumCalls = 10;

RPC_CLIENT_INTERFACE managerInterface = {sizeof(RPC_CLIENT_INTERFACE),
                                         PLENX_MANAGER_INTERFACE_ID,
                                         PLENX_NDR20_SYNTAX_ID,
                                         nullptr,
                                         0,
                                         nullptr,
                                         0,
                                         nullptr,
                                         0};

RPC_DISPATCH_FUNCTION routines[] = {PlenxRawRoutine, nullptr};
RPC_DISPATCH_TABLE dispatchTable = {1, routines, 0};
RPC_SERVER_INTERFACE serviceInterface = {sizeof(RPC_SERVER_INTERFACE),
                                         PLENX_SERVICE_INTERFACE_ID,
                                         PLENX_NDR20_SYNTAX_ID,
                                         &dispatchTable,
                                         0,
                                         nullptr,
                                         nullptr,
                                         nullptr,
                                         0};

RawReply (*answerOfService)() = nullptr;

void Append(Bytes& bytes, std::uint32_t word) {
    const auto* const begin = reinterpret_cast<const std::uint8_t*>(&word);
    bytes.insert(bytes.end(), begin, begin + sizeof(word));
}

class Cursor {
public:
    Cursor(const void* data, std::size_t size)
        : data_(static_cast<const std::uint8_t*>(data)), left_(size) {}

    bool Take(void* out, std::size_t size) {
        if (size > left_) {
            return false;
        }
        std::memcpy(out, data_, size);
        data_ += size;
        left_ -= size;
        return true;
    }
    bool Take(std::uint32_t& word) { return Take(&word, sizeof(word)); }

private:
    const std::uint8_t* data_;
    std::size_t left_;
};

// The library behaves honestly at this level. A failed call reports anything else.
RawAnswer Parse(const void* data, std::size_t length) {
    RawAnswer answer;
    RawAnswer broken;
    broken.status = RPC_X_BAD_STUB_DATA;
    Cursor cursor(data, length);
    std::uint32_t word = 0;
    std::uint32_t pointer = 0;
    if (!cursor.Take(word) || !cursor.Take(pointer)) {
        return broken;
    }
    answer.size = static_cast<std::int32_t>(word);
    if (pointer != 0) {
        std::uint32_t count = 0;
        if (!cursor.Take(count) || count > length) {
            return broken;
        }
        answer.block.emplace(count);
        std::uint32_t padding = 0;
        if (!cursor.Take(answer.block->data(), count) || !cursor.Take(&padding, -count % 4)) {
            return broken;
        }
    }
    if (!cursor.Take(word)) {
        return broken;
    }
    answer.result = static_cast<std::int32_t>(word);
    return answer;
}

}  // namespace

bool RuntimeComparesSizes() {
    return !IsUsual(Habits::kSizeBeyondTheBytes, "0");
}

Bytes RequestBytes(std::int32_t id, std::int32_t size, std::uint32_t count, const Bytes& message) {
    Bytes bytes;
    bytes.reserve(12 + message.size());
    Append(bytes, static_cast<std::uint32_t>(id));
    Append(bytes, static_cast<std::uint32_t>(size));
    Append(bytes, count);
    bytes.insert(bytes.end(), message.begin(), message.end());
    return bytes;
}

Bytes AnswerBytes(std::int32_t size, const std::optional<Bytes>& block, std::int32_t result) {
    Bytes bytes;
    Append(bytes, static_cast<std::uint32_t>(size));
    Append(bytes, block ? kSomePointer : 0);
    if (block) {
        Append(bytes, static_cast<std::uint32_t>(block->size()));
        bytes.insert(bytes.end(), block->begin(), block->end());
        bytes.resize((bytes.size() + 3) / 4 * 4);
    }
    Append(bytes, static_cast<std::uint32_t>(result));
    return bytes;
}

RawAnswer CallManagerRaw(const Bytes& request) {
    RawAnswer failed;
    const PlenxWire::LocalBinding binding(L"Manager");
    failed.status = binding.Status();
    if (failed.status != RPC_S_OK) {
        return failed;
    }
    RPC_MESSAGE message{};
    message.Handle = binding.Get();
    message.DataRepresentation = NDR_LOCAL_DATA_REPRESENTATION;
    message.BufferLength = static_cast<unsigned>(request.size());
    message.RpcInterfaceInformation = &managerInterface;
    failed.status = I_RpcGetBuffer(&message);
    if (failed.status != RPC_S_OK) {
        return failed;
    }
    std::copy(request.begin(), request.end(), static_cast<std::uint8_t*>(message.Buffer));
    failed.status = I_RpcSendReceive(&message);
    const RawAnswer answer =
        failed.status == RPC_S_OK ? Parse(message.Buffer, message.BufferLength) : failed;
    I_RpcFreeBuffer(&message);
    return answer;
}

long ServePcServiceRaw(RawReply (*answer)()) {
    answerOfService = answer;
    wchar_t protocol[] = L"ncalrpc";
    wchar_t endpoint[] = L"PLENXPCService";
    RPC_STATUS status = RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol), kMaximumCalls,
                                               reinterpret_cast<RPC_WSTR>(endpoint), nullptr);
    if (status == RPC_S_OK) {
        status = RpcServerRegisterIf(&serviceInterface, nullptr, nullptr);
    }
    if (status == RPC_S_OK) {
        status = RpcServerListen(1, kMaximumCalls, TRUE);
    }
    return status;
}

}  // namespace PlenxTest

unsigned long PlenxAnswerRaw(PRPC_MESSAGE message) {
    const PlenxTest::RawReply reply = PlenxTest::answerOfService();
    if (reply.fault != 0) {
        return reply.fault;
    }
    message->BufferLength = static_cast<unsigned>(reply.bytes.size());
    if (const RPC_STATUS status = I_RpcGetBuffer(message); status != RPC_S_OK) {
        return static_cast<unsigned long>(status);
    }
    std::copy(reply.bytes.begin(), reply.bytes.end(), static_cast<std::uint8_t*>(message->Buffer));
    return 0;
}
