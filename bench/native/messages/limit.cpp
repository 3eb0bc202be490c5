// Does the least work: it puts the values one after the other into one fresh block, and looks at
// the block's size once before it takes them out again.

#include <cstring>

#include "messages/message_work.h"

namespace bench {
namespace {

class Cursor {
public:
    explicit Cursor(std::uint8_t* at) : at_(at) {}

    void Put(const void* bytes, std::size_t size) {
        std::memcpy(at_, bytes, size);
        at_ += size;
    }
    void PutSized(const void* bytes, std::size_t size) {
        const auto length = static_cast<std::uint32_t>(size);
        Put(&length, sizeof(length));
        Put(bytes, size);
    }

private:
    std::uint8_t* at_;
};

class Limited {
public:
    Limited(const std::uint8_t* bytes, std::size_t size) : at_(bytes), left_(size) {}

    bool Take(void* out, std::size_t size) {
        if (size > left_) {
            return false;
        }
        std::memcpy(out, at_, size);
        Skip(size);
        return true;
    }
    bool Take(std::string& out) {
        std::uint32_t size = 0;
        if (!Take(&size, sizeof(size)) || size > left_) {
            return false;
        }
        out.assign(reinterpret_cast<const char*>(at_), size);
        Skip(size);
        return true;
    }
    bool Take(Block& out) {
        std::uint32_t size = 0;
        if (!Take(&size, sizeof(size)) || size > left_) {
            return false;
        }
        out = Block(at_, size);
        Skip(size);
        return true;
    }

private:
    void Skip(std::size_t size) {
        at_ += size;
        left_ -= size;
    }

    const std::uint8_t* at_;
    std::size_t left_;
};

struct Limit {
    using Bytes = Block;

    class Encoded {
    public:
        explicit Encoded(const Ping& ping) : Encoded(sizeof(ping.number)) {
            Cursor(block_.get()).Put(&ping.number, sizeof(ping.number));
        }
        explicit Encoded(const Reply& reply) : Encoded(sizeof(reply.value)) {
            Cursor(block_.get()).Put(&reply.value, sizeof(reply.value));
        }
        explicit Encoded(const CreateGroup& group)
            : Encoded(12 + group.name.size() + group.argument.size()) {
            Cursor cursor(block_.get());
            cursor.PutSized(group.name.data(), group.name.size());
            cursor.Put(&group.kind, sizeof(group.kind));
            cursor.PutSized(group.argument.data(), group.argument.size());
        }
        explicit Encoded(const DeviceOnline& online)
            : Encoded(16 + online.group.size() + online.device.size() + online.data.size()) {
            Cursor cursor(block_.get());
            cursor.PutSized(online.group.data(), online.group.size());
            cursor.PutSized(online.device.data(), online.device.size());
            cursor.Put(&online.isRemote, sizeof(online.isRemote));
            cursor.PutSized(online.data.data(), online.data.size());
        }
        const std::uint8_t* data() const { return block_.get(); }
        std::size_t size() const { return size_; }

    private:
        explicit Encoded(std::size_t size) : block_(new std::uint8_t[size]), size_(size) {}

        std::unique_ptr<std::uint8_t[]> block_;
        std::size_t size_;
    };

    static bool Decode(const std::uint8_t* bytes, std::size_t size, Ping& out) {
        return Limited(bytes, size).Take(&out.number, sizeof(out.number));
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, Reply& out) {
        return Limited(bytes, size).Take(&out.value, sizeof(out.value));
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, CreateGroup& out) {
        Limited in(bytes, size);
        return in.Take(out.name) && in.Take(&out.kind, sizeof(out.kind)) && in.Take(out.argument);
    }
    static bool Decode(const std::uint8_t* bytes, std::size_t size, DeviceOnlineWith<Bytes>& out) {
        Limited in(bytes, size);
        return in.Take(out.group) && in.Take(out.device) &&
               in.Take(&out.isRemote, sizeof(out.isRemote)) && in.Take(out.data);
    }
};

[[maybe_unused]] const int kRegistered =
    RegisterMessages<Limit>("limit") + RegisterGrowth<Limit>("12 messages, the limit");

}  // namespace
}  // namespace bench
