// Measures MessagePack. It packs an array of the values into a buffer that is large enough from the
// start. It unpacks the array without copies and then copies the values out once.

#include <msgpack.hpp>
#include <tuple>

#include "messages/message_work.h"

namespace bench {
namespace {

std::size_t RoomFor(const Ping&) {
    return 32;
}
std::size_t RoomFor(const Reply&) {
    return 32;
}
std::size_t RoomFor(const CreateGroup& group) {
    return 32 + group.name.size() + group.argument.size();
}
std::size_t RoomFor(const DeviceOnline& online) {
    return 32 + online.group.size() + online.device.size() + online.data.size();
}

void Pack(msgpack::packer<msgpack::sbuffer>& packer, const Ping& ping) {
    packer.pack_array(1);
    packer.pack(ping.number);
}
void Pack(msgpack::packer<msgpack::sbuffer>& packer, const Reply& reply) {
    packer.pack_array(1);
    packer.pack(reply.value);
}
void Pack(msgpack::packer<msgpack::sbuffer>& packer, const CreateGroup& group) {
    packer.pack_array(3);
    packer.pack(group.name);
    packer.pack(group.kind);
    packer.pack(group.argument);
}
void Pack(msgpack::packer<msgpack::sbuffer>& packer, const DeviceOnline& online) {
    packer.pack_array(4);
    packer.pack(online.group);
    packer.pack(online.device);
    packer.pack(online.isRemote);
    packer.pack_bin(static_cast<std::uint32_t>(online.data.size()));
    packer.pack_bin_body(reinterpret_cast<const char*>(online.data.data()),
                         static_cast<std::uint32_t>(online.data.size()));
}

bool ReferToAll(msgpack::type::object_type, std::size_t, void*) {
    return true;
}

struct MessagePack {
    using Bytes = Block;

    class Encoded {
    public:
        template <class Message>
        explicit Encoded(const Message& message) : buffer_(RoomFor(message)) {
            msgpack::packer<msgpack::sbuffer> packer(buffer_);
            Pack(packer, message);
        }
        const std::uint8_t* data() const {
            return reinterpret_cast<const std::uint8_t*>(buffer_.data());
        }
        std::size_t size() const { return buffer_.size(); }

    private:
        msgpack::sbuffer buffer_;
    };

    // Throws when the bytes are not such a message.
    template <class Message>
    static bool Decode(const std::uint8_t* bytes, std::size_t size, Message& out) {
        bool refers = false;
        const msgpack::object_handle handle =
            msgpack::unpack(reinterpret_cast<const char*>(bytes), size, refers, ReferToAll);
        Take(handle.get(), out);
        return true;
    }

private:
    static void Take(const msgpack::object& from, Ping& out) {
        auto to = std::tie(out.number);
        from.convert(to);
    }
    static void Take(const msgpack::object& from, Reply& out) {
        auto to = std::tie(out.value);
        from.convert(to);
    }
    static void Take(const msgpack::object& from, CreateGroup& out) {
        auto to = std::tie(out.name, out.kind, out.argument);
        from.convert(to);
    }
    static void Take(const msgpack::object& from, DeviceOnlineWith<Bytes>& out) {
        msgpack::type::raw_ref data;
        auto to = std::tie(out.group, out.device, out.isRemote, data);
        from.convert(to);
        out.data = Block(data.ptr, data.size);
    }
};

[[maybe_unused]] const int kRegistered = RegisterMessages<MessagePack>("msgpack");

}  // namespace
}  // namespace bench
