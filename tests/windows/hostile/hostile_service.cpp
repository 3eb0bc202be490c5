#include "hostile/hostile_service.h"

#include <rpc.h>

#include <cstdlib>
#include <mutex>

#include "hostile/expectation.h"
#include "hostile/message_maker.h"
#include "hostile/scale.h"
#include "support/system_habits.h"

namespace PlenxTest {
namespace {

constexpr wchar_t kServingName[] = L"plenx-hostile-service-serves";
constexpr DWORD kStartMilliseconds = 60 * 1000;

std::mutex mutex;
ReplyMaker* maker = nullptr;
unsigned repliesLeft = 0;

RawReply NextReply() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (repliesLeft == 0) {
        const Bytes honest = PlenxWire::Encode({0});
        return {AnswerBytes(static_cast<std::int32_t>(honest.size()), honest, 0), 0};
    }
    --repliesLeft;
    return maker->Next().raw;
}

std::wstring CommandLine(std::uint32_t seed, unsigned replies) {
    return ChildProcess::Self(L"--hostile-service " + std::to_wstring(seed) + L" " +
                              std::to_wstring(replies));
}

}  // namespace

std::int32_t ServiceReply::Outcome() const {
    return exception != 0 ? static_cast<std::int32_t>(exception)
           : result != 0  ? result
                          : number.value_or(0);
}

ServiceReply ReplyMaker::Next() {
    ++made_;
    const std::size_t choice = random_.Below(100);
    if (choice < 75) {
        return WithBlock(0);
    }
    if (choice < 80) {
        return WithBlock(static_cast<std::int32_t>(random_.Word() | 1));
    }
    if (choice < 86) {
        return WithoutBlock();
    }
    if (choice < 90) {
        return Understated();
    }
    return choice < 95 ? Broken() : Fault();
}

Bytes ReplyMaker::Block() {
    if (made_ % 500 == 20) {
        return Huge(random_);
    }
    Bytes good = PlenxWire::Encode({static_cast<std::int32_t>(random_.Word())});
    switch (random_.Below(8)) {
    case 0:
        return good;
    case 1:
        return RandomTable(random_);
    case 2:
        return random_.Bytes(random_.Below(100));
    case 3:
        return OfSpecialSize(random_);
    default:
        return Damaged(random_, good);
    }
}

ServiceReply ReplyMaker::WithBlock(std::int32_t result) {
    const Bytes block = Block();
    ServiceReply reply;
    reply.raw.bytes = AnswerBytes(static_cast<std::int32_t>(block.size()), block, result);
    reply.result = result;
    reply.number = NumberInReply(block.data(), block.size());
    return reply;
}

// The reply states any size and has no bytes.
ServiceReply ReplyMaker::WithoutBlock() {
    constexpr std::uint32_t kSizes[] = {0, 1, 24, 0x10000, 0x7fffffff, 0x80000000, 0xffffffff};
    ServiceReply reply;
    reply.raw.bytes =
        AnswerBytes(static_cast<std::int32_t>(random_.OneOf(kSizes)), std::nullopt, 0);
    return reply;
}

// The reply has more bytes than its size says, and the size may be negative.
ServiceReply ReplyMaker::Understated() {
    const Bytes block = PlenxWire::Encode({1, std::string("more")});
    const auto size = static_cast<std::int32_t>(random_.Below(block.size() + 1)) - 1;
    ServiceReply reply;
    reply.raw.bytes = AnswerBytes(size, block, 0);
    if (RuntimeComparesSizes()) {
        reply.exception = RPC_X_BAD_STUB_DATA;
    } else {
        reply.number = NumberInReply(block.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    }
    return reply;
}

// The reply has fewer bytes than the link itself was promised.
ServiceReply ReplyMaker::Broken() {
    ServiceReply reply;
    reply.raw.bytes = AnswerBytes(24, PlenxWire::Encode({1}), 0);
    reply.raw.bytes.resize(random_.Below(reply.raw.bytes.size() / 4) * 4);
    reply.exception = RPC_X_BAD_STUB_DATA;
    return reply;
}

ServiceReply ReplyMaker::Fault() {
    constexpr unsigned long kCodes[] = {5, RPC_S_CALL_FAILED, 0xE0001234, 0x7fffffff, 0xffffffff};
    ServiceReply reply;
    reply.raw.fault = random_.OneOf(kCodes);
    if (IsOpen(Habits::kCodeThatTheServerRaises)) {
        reply.raw.fault = RPC_S_CALL_FAILED;
    }
    reply.exception = reply.raw.fault;
    return reply;
}

HostileService::HostileService(std::uint32_t seed, unsigned replies)
    : serving_(PlenxSupport::MakeEvent(kServingName)),
      process_(CommandLine(seed, replies)),
      serves_(WaitForSingleObject(serving_.Get(), kStartMilliseconds) == WAIT_OBJECT_0) {}

std::optional<int> RunAsHostileService(int argc, char** argv) {
    if (argc != 4 || std::string(argv[1]) != "--hostile-service") {
        return std::nullopt;
    }
    maker = new ReplyMaker(static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10)));
    repliesLeft = static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10));
    if (const long status = ServePcServiceRaw(NextReply); status != 0) {
        return static_cast<int>(status);
    }
    SetEvent(PlenxSupport::MakeEvent(kServingName).Get());
    Sleep(2 * LongestStorm());  // the parent ends this process earlier
    return 1;
}

}  // namespace PlenxTest
