// Cap'n Proto: a message of one segment, large enough for the values, whose bytes are handed
// over as they are; the reader checks the bounds of all that it follows, and the values are then
// copied out.

#include <capnp/message.h>
#include <capnp/serialize.h>

#include "messages/message_work.h"
#include "peer.capnp.h"

namespace bench {
namespace {

namespace cap = peers::cap;

kj::StringPtr Text(const std::string& text) {
    return {text.c_str(), text.size()};
}

void Assign(std::string& out, capnp::Text::Reader text) {
    out.assign(text.begin(), text.size());
}

// In words of 8 bytes, with the root pointer.
unsigned WordsFor(const Ping&) {
    return 2;
}
unsigned WordsFor(const Reply&) {
    return 2;
}
unsigned WordsFor(const CreateGroup& group) {
    return static_cast<unsigned>(8 + group.name.size() / 8 + group.argument.size() / 8);
}
unsigned WordsFor(const DeviceOnline& online) {
    return static_cast<unsigned>(12 + online.group.size() / 8 + online.device.size() / 8 +
                                 online.data.size() / 8);
}

struct CapnProto {
    using Bytes = Block;

    class Encoded {
    public:
        template <class Message>
        explicit Encoded(const Message& message)
            : builder_(WordsFor(message), capnp::AllocationStrategy::FIXED_SIZE) {
            Set(message);
            segment_ = builder_.getSegmentsForOutput()[0];
        }
        const std::uint8_t* data() const {
            return reinterpret_cast<const std::uint8_t*>(segment_.begin());
        }
        std::size_t size() const { return segment_.size() * sizeof(capnp::word); }

    private:
        void Set(const Ping& ping) { builder_.initRoot<cap::Ping>().setNumber(ping.number); }
        void Set(const Reply& reply) { builder_.initRoot<cap::Reply>().setValue(reply.value); }
        void Set(const CreateGroup& group) {
            auto root = builder_.initRoot<cap::CreateGroup>();
            root.setName(Text(group.name));
            root.setKind(group.kind);
            root.setArgument(Text(group.argument));
        }
        void Set(const DeviceOnline& online) {
            auto root = builder_.initRoot<cap::DeviceOnline>();
            root.setGroup(Text(online.group));
            root.setDevice(Text(online.device));
            root.setIsRemote(online.isRemote);
            root.setData(kj::arrayPtr(online.data.data(), online.data.size()));
        }

        capnp::MallocMessageBuilder builder_;
        kj::ArrayPtr<const capnp::word> segment_;
    };

    template <class Message>
    static bool Decode(const std::uint8_t* bytes, std::size_t size, Message& out) {
        const kj::ArrayPtr<const capnp::word> segment(reinterpret_cast<const capnp::word*>(bytes),
                                                      size / sizeof(capnp::word));
        const kj::ArrayPtr<const capnp::word> segments[] = {segment};
        capnp::ReaderOptions options;
        options.traversalLimitInWords = std::uint64_t{1} << 30;
        capnp::SegmentArrayMessageReader reader(kj::arrayPtr(segments, 1), options);
        Take(reader, out);  // throws when the bytes are not such a message
        return true;
    }

private:
    static void Take(capnp::MessageReader& reader, Ping& out) {
        out.number = reader.getRoot<cap::Ping>().getNumber();
    }
    static void Take(capnp::MessageReader& reader, Reply& out) {
        out.value = reader.getRoot<cap::Reply>().getValue();
    }
    static void Take(capnp::MessageReader& reader, CreateGroup& out) {
        const auto root = reader.getRoot<cap::CreateGroup>();
        Assign(out.name, root.getName());
        out.kind = root.getKind();
        Assign(out.argument, root.getArgument());
    }
    static void Take(capnp::MessageReader& reader, DeviceOnlineWith<Bytes>& out) {
        const auto root = reader.getRoot<cap::DeviceOnline>();
        Assign(out.group, root.getGroup());
        Assign(out.device, root.getDevice());
        out.isRemote = root.getIsRemote();
        const auto data = root.getData();
        out.data = Block(data.begin(), data.size());
    }
};

[[maybe_unused]] const int registered = RegisterMessages<CapnProto>("Cap'n Proto");

}  // namespace
}  // namespace bench
