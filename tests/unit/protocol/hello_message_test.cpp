// The small service in C judges requests as plenxkit message does, and it builds those that
// plenxkit message accepts.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "wire/catalog.h"

extern "C" {
#include "message.h"
}

namespace WirePage {
namespace {

using namespace std::string_literals;
using PlenxWire::Arguments;
using PlenxWire::Bytes;
using PlenxWire::Encode;
using PlenxWire::MessageShape;

Arguments GoodArguments(std::int32_t id) {
    switch (id) {
    case PlenxWire::kCreateGroup:
        return {"g_1"s, 2, "a"s};
    case PlenxWire::kDeviceOnline:
        return {"g_1"s, "dev"s, 0, 3, Bytes{1, 2, 255}};
    case PlenxWire::kDeviceOffline:
        return {"g_1"s, "dev"s, 1, -1};
    case PlenxWire::kRecvRemoteMessage:
        return {3, 2, "hi"s};
    case PlenxWire::kSetStringConfig:
        return {1, "en_US"s};
    case PlenxWire::kSetInt64Config:
        return {2, std::int64_t{-9000000000}};
    case PlenxWire::kPingService:
        return {std::int64_t{7}};
    default:
        return {"g_1"s};
    }
}

std::vector<const MessageShape*> Requests() {
    std::vector<const MessageShape*> requests;
    for (const MessageShape& shape : PlenxWire::Catalog()) {
        if (shape.direction == PlenxWire::Direction::kRequest) {
            requests.push_back(&shape);
        }
    }
    return requests;
}

// The buffer has exactly the message's size, so that a sanitizer finds a read past its end.
std::int32_t Judged(std::int32_t id, const Bytes& message) {
    const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[message.size()]);
    std::copy(message.begin(), message.end(), exact.get());
    return Judge(id, exact.get(), static_cast<std::uint32_t>(message.size()));
}

void ExpectTheSameVerdict(const MessageShape& shape, const Bytes& message) {
    const bool good = PlenxWire::DecodeAs(shape, message.data(), message.size()).Ok();
    EXPECT_EQ(Judged(shape.id, message), good ? TAKEN : BROKEN_MESSAGE)
        << shape.name << ", " << message.size() << " bytes";
}

TEST(HelloMessage, TakesEachGoodRequest) {
    for (const MessageShape* const shape : Requests()) {
        EXPECT_EQ(Judged(shape->id, Encode(GoodArguments(shape->id))), TAKEN) << shape->name;
    }
    EXPECT_EQ(Judged(PlenxWire::kDeviceOnline, Encode({"g"s, "d"s, 1, 0, Bytes{}})), TAKEN);
}

TEST(HelloMessage, OfAnyLengthOrWithAnyOtherBit_IsJudgedAsPlenxmsgJudgesIt) {
    for (const MessageShape* const shape : Requests()) {
        const Bytes message = Encode(GoodArguments(shape->id));
        for (std::size_t size = 0; size <= message.size() + 1; ++size) {
            Bytes cut = message;
            cut.resize(size);
            ExpectTheSameVerdict(*shape, cut);
        }
        for (std::size_t offset = 0; offset < message.size(); ++offset) {
            for (unsigned bit = 0; bit < 8; ++bit) {
                Bytes changed = message;
                changed[offset] = static_cast<std::uint8_t>(changed[offset] ^ 1u << bit);
                ExpectTheSameVerdict(*shape, changed);
            }
        }
    }
}

TEST(HelloMessage, WithoutARequestOfThatId_IsUnknown) {
    for (std::int32_t id = -1; id <= 21; ++id) {
        const MessageShape* const shape = PlenxWire::FindMessage(id);
        const bool request = shape && shape->direction == PlenxWire::Direction::kRequest;
        EXPECT_EQ(Judged(id, {}), request ? BROKEN_MESSAGE : UNKNOWN_REQUEST) << id;
    }
}

TEST(HelloMessage, GivesTheGroupOfCreateGroupBackInConnectNotify) {
    const Bytes request = Encode(GoodArguments(PlenxWire::kCreateGroup));
    const char* text = nullptr;
    std::uint32_t length = 0;
    FirstText(request.data(), &text, &length);
    std::uint32_t size = 0;
    const std::unique_ptr<unsigned char, decltype(&free)> message(
        NewTextMessage(text, length, &size), &free);
    EXPECT_EQ(Bytes(message.get(), message.get() + size), Encode({"g_1"s}));
}

TEST(HelloMessage, WritesTheReply) {
    Bytes reply(REPLY_SIZE);
    WriteReply(reply.data(), UNKNOWN_REQUEST);
    EXPECT_EQ(reply, Encode({1002}));
}

}  // namespace
}  // namespace WirePage
