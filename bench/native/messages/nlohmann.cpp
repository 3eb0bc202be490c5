// JSON for Modern C++, as CBOR: an array of the values; what was parsed is moved out.

#include <nlohmann/json.hpp>

#include "messages/message_work.h"

namespace bench {
namespace {

using nlohmann::json;

json ValueOf(const Ping& ping) {
    return json::array({ping.number});
}
json ValueOf(const Reply& reply) {
    return json::array({reply.value});
}
json ValueOf(const CreateGroup& group) {
    return json::array({group.name, group.kind, group.argument});
}
json ValueOf(const DeviceOnline& online) {
    return json::array({online.group, online.device, online.isRemote, json::binary(online.data)});
}

struct Cbor {
    using Bytes = std::vector<std::uint8_t>;

    class Encoded {
    public:
        template <class Message>
        explicit Encoded(const Message& message) : bytes_(json::to_cbor(ValueOf(message))) {}
        const std::uint8_t* data() const { return bytes_.data(); }
        std::size_t size() const { return bytes_.size(); }

    private:
        std::vector<std::uint8_t> bytes_;
    };

    // Throws when the bytes are not such a message.
    template <class Message>
    static bool Decode(const std::uint8_t* bytes, std::size_t size, Message& out) {
        json value = json::from_cbor(bytes, bytes + size);
        Take(value, out);
        return true;
    }

private:
    static void Take(json& from, Ping& out) { out.number = from.at(0).get<std::int64_t>(); }
    static void Take(json& from, Reply& out) { out.value = from.at(0).get<std::int32_t>(); }
    static void Take(json& from, CreateGroup& out) {
        out.name = std::move(from.at(0).get_ref<std::string&>());
        out.kind = from.at(1).get<std::int32_t>();
        out.argument = std::move(from.at(2).get_ref<std::string&>());
    }
    static void Take(json& from, DeviceOnlineWith<Bytes>& out) {
        out.group = std::move(from.at(0).get_ref<std::string&>());
        out.device = std::move(from.at(1).get_ref<std::string&>());
        out.isRemote = from.at(2).get<std::int32_t>();
        out.data = std::move(from.at(3).get_binary());
    }
};

[[maybe_unused]] const int registered = RegisterMessages<Cbor>("nlohmann CBOR");

}  // namespace
}  // namespace bench
