// Measures FlatBuffers. It verifies the bytes and then copies the values out of them.

#include "flatbuffers/flatbuffers.h"

#include "messages/message_work.h"
#include "peer_generated.h"

namespace bench {
namespace {

namespace flat = peers::flat;
using flatbuffers::FlatBufferBuilder;

void Build(FlatBufferBuilder& builder, const Ping& ping) {
    builder.Finish(flat::CreatePing(builder, ping.number));
}
void Build(FlatBufferBuilder& builder, const Reply& reply) {
    builder.Finish(flat::CreateReply(builder, reply.value));
}
void Build(FlatBufferBuilder& builder, const CreateGroup& group) {
    const auto name = builder.CreateString(group.name);
    const auto argument = builder.CreateString(group.argument);
    builder.Finish(flat::CreateCreateGroup(builder, name, group.kind, argument));
}
void Build(FlatBufferBuilder& builder, const DeviceOnline& online) {
    const auto group = builder.CreateString(online.group);
    const auto device = builder.CreateString(online.device);
    const auto data = builder.CreateVector(online.data.data(), online.data.size());
    builder.Finish(flat::CreateDeviceOnline(builder, group, device, online.isRemote, data));
}

// The first block is large enough, so the builder never moves what it has built.
std::size_t RoomFor(const Ping&) {
    return 64;
}
std::size_t RoomFor(const Reply&) {
    return 64;
}
std::size_t RoomFor(const CreateGroup&) {
    return 256;
}
std::size_t RoomFor(const DeviceOnline& online) {
    return 256 + online.data.size();
}

// Returns null when the bytes are not a table of this kind.
template <class Table>
const Table* Verified(const std::uint8_t* bytes, std::size_t size) {
    flatbuffers::Verifier verifier(bytes, size);
    return verifier.VerifyBuffer<Table>(nullptr) ? flatbuffers::GetRoot<Table>(bytes) : nullptr;
}

void Assign(std::string& out, const flatbuffers::String* text) {
    if (text != nullptr) {
        out.assign(text->c_str(), text->size());
    }
}

struct Decoder {
    using Bytes = Block;

    static bool Decode(const std::uint8_t* bytes, std::size_t size, Ping& out) {
        const auto* const ping = Verified<flat::Ping>(bytes, size);
        if (ping == nullptr) {
            return false;
        }
        out.number = ping->number();
        return true;
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, Reply& out) {
        const auto* const reply = Verified<flat::Reply>(bytes, size);
        if (reply == nullptr) {
            return false;
        }
        out.value = reply->value();
        return true;
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, CreateGroup& out) {
        const auto* const group = Verified<flat::CreateGroup>(bytes, size);
        if (group == nullptr) {
            return false;
        }
        Assign(out.name, group->name());
        out.kind = group->kind();
        Assign(out.argument, group->argument());
        return true;
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, DeviceOnlineWith<Bytes>& out) {
        const auto* const online = Verified<flat::DeviceOnline>(bytes, size);
        if (online == nullptr || online->data() == nullptr) {
            return false;
        }
        Assign(out.group, online->group());
        Assign(out.device, online->device());
        out.isRemote = online->is_remote();
        out.data = Block(online->data()->data(), online->data()->size());
        return true;
    }
};

struct Fresh : Decoder {
    class Encoded {
    public:
        template <class Message>
        explicit Encoded(const Message& message) : builder_(RoomFor(message)) {
            Build(builder_, message);
        }
        const std::uint8_t* data() const { return builder_.GetBufferPointer(); }
        std::size_t size() const { return builder_.GetSize(); }

    private:
        FlatBufferBuilder builder_;
    };
};

[[maybe_unused]] const int kRegistered = RegisterMessages<Fresh>("flatbuffers");

}  // namespace
}  // namespace bench
