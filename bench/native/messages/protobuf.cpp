// Protocol Buffers: the message is made of copies of the values and serialised into a block of
// its exact size; what was parsed is moved out of the parsed message, not copied.

#include "messages/message_work.h"
#include "peer.pb.h"

namespace bench {
namespace {

namespace proto = peers::proto;

void Set(proto::Ping& to, const Ping& from) {
    to.set_number(from.number);
}
void Set(proto::Reply& to, const Reply& from) {
    to.set_value(from.value);
}
void Set(proto::CreateGroup& to, const CreateGroup& from) {
    to.set_name(from.name);
    to.set_kind(from.kind);
    to.set_argument(from.argument);
}
void Set(proto::DeviceOnline& to, const DeviceOnline& from) {
    to.set_group(from.group);
    to.set_device(from.device);
    to.set_is_remote(from.isRemote);
    to.set_data(from.data.data(), from.data.size());
}

void Take(proto::Ping& from, Ping& to) {
    to.number = from.number();
}
void Take(proto::Reply& from, Reply& to) {
    to.value = from.value();
}
void Take(proto::CreateGroup& from, CreateGroup& to) {
    to.name = std::move(*from.mutable_name());
    to.kind = from.kind();
    to.argument = std::move(*from.mutable_argument());
}
void Take(proto::DeviceOnline& from, DeviceOnlineWith<std::string>& to) {
    to.group = std::move(*from.mutable_group());
    to.device = std::move(*from.mutable_device());
    to.isRemote = from.is_remote();
    to.data = std::move(*from.mutable_data());
}

template <class Message>
struct Peer;
template <>
struct Peer<Ping> {
    using Type = proto::Ping;
};
template <>
struct Peer<Reply> {
    using Type = proto::Reply;
};
template <>
struct Peer<CreateGroup> {
    using Type = proto::CreateGroup;
};
template <class Bytes>
struct Peer<DeviceOnlineWith<Bytes>> {
    using Type = proto::DeviceOnline;
};

class Serialised {
public:
    const std::uint8_t* data() const { return block_.get(); }
    std::size_t size() const { return size_; }

protected:
    explicit Serialised(const google::protobuf::MessageLite& message)
        : size_(message.ByteSizeLong()) {
        block_.reset(new std::uint8_t[size_]);
        message.SerializeWithCachedSizesToArray(block_.get());
    }

private:
    std::unique_ptr<std::uint8_t[]> block_;
    std::size_t size_;
};

struct Fresh {
    using Bytes = std::string;

    class Encoded : public Serialised {
    public:
        template <class Message>
        explicit Encoded(const Message& message) : Serialised(Made(message)) {}

    private:
        template <class Message>
        static typename Peer<Message>::Type Made(const Message& message) {
            typename Peer<Message>::Type peer;
            Set(peer, message);
            return peer;
        }
    };

    template <class Message>
    static bool Decode(const std::uint8_t* bytes, std::size_t size, Message& out) {
        typename Peer<Message>::Type peer;
        if (!peer.ParseFromArray(bytes, static_cast<int>(size))) {
            return false;
        }
        Take(peer, out);
        return true;
    }
};

// One message object of each kind for all messages.
struct Reused {
    using Bytes = std::string;

    class Encoded : public Serialised {
    public:
        template <class Message>
        explicit Encoded(const Message& message) : Serialised(Made(message)) {}

    private:
        template <class Message>
        static const typename Peer<Message>::Type& Made(const Message& message) {
            static typename Peer<Message>::Type peer;
            peer.Clear();
            Set(peer, message);
            return peer;
        }
    };

    template <class Message>
    static bool Decode(const std::uint8_t* bytes, std::size_t size, Message& out) {
        static typename Peer<Message>::Type peer;
        if (!peer.ParseFromArray(bytes, static_cast<int>(size))) {
            return false;
        }
        Take(peer, out);
        return true;
    }
};

[[maybe_unused]] const int registered =
    RegisterMessages<Fresh>("protobuf") + RegisterMessages<Reused>("(protobuf, reused)");

}  // namespace
}  // namespace bench
