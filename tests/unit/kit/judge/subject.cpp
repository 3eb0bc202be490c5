// A peer without Windows: it reads requests from its input, answers as the development service
// does, and adds the notifications that follow. "subject reply=garbage" makes it misbehave as
// [[on]] would, "subject quiet" makes it send no notifications, and "subject mute" makes it send
// none once a broken request has come.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "answers.h"
#include "judge/caller_wire.h"
#include "peer_state.h"
#include "reactions.h"

namespace {

template <class Value>
bool Read(Value& value) {
    return static_cast<bool>(std::cin.read(reinterpret_cast<char*>(&value), sizeof value));
}

template <class Value>
void Write(const Value& value) {
    std::cout.write(reinterpret_cast<const char*>(&value), sizeof value);
}

PlenxService::Answer AnswerTo(std::int32_t id, const PlenxWire::Bytes& bytes,
                              const PlenxService::Values& told,
                              PlenxService::Notifications& notifications) {
    static PlenxService::PeerState state;
    const auto decoded =
        PlenxService::DecodeRequest(id, bytes.data(), static_cast<std::int32_t>(bytes.size()));
    const std::int32_t honest = PlenxService::HonestCode(id, decoded);
    static bool isMute = told.Has("quiet");
    isMute = isMute || (honest != PlenxService::kTaken && told.Has("mute"));
    if (honest == PlenxService::kTaken && !isMute) {
        state.Apply(id, decoded.arguments);
        notifications = PlenxService::ReactionsTo(id, decoded.arguments, state, L"C:\\data");
    }
    return PlenxService::AnswerWith(static_cast<std::int32_t>(told.Number("answer", honest)), told);
}

void WriteAnswer(const PlenxService::Answer& answer) {
    PlenxJudge::AnswerHead head;
    head.raised = answer.fault != 0 ? 1 : 0;
    head.exception = static_cast<std::uint32_t>(answer.fault);
    head.result = static_cast<std::int32_t>(answer.result);
    head.statedSize = static_cast<std::int32_t>(answer.statedSize);
    head.hasReply = answer.reply ? 1 : 0;
    // The runtime sends as many bytes as are stated.
    head.size = answer.reply ? static_cast<std::uint32_t>(answer.statedSize) : 0;
    Write(head);
    if (answer.reply) {
        std::cout.write(reinterpret_cast<const char*>(answer.reply->data()),
                        static_cast<std::streamsize>(head.size));
    }
}

void WriteNotifications(const PlenxService::Notifications& notifications) {
    Write(static_cast<std::uint32_t>(notifications.size()));
    for (const PlenxService::Notification& notification : notifications) {
        const auto size = static_cast<std::uint32_t>(notification.message.size());
        Write(PlenxJudge::RequestHead{notification.id, size});
        std::cout.write(reinterpret_cast<const char*>(notification.message.data()),
                        static_cast<std::streamsize>(size));
    }
}

// "key=5" becomes a number, "key=word" a text.
PlenxService::Values Told(int count, char** words) {
    PlenxService::Values::Map map;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        const std::size_t equals = std::min(word.find('='), word.size());
        const std::string value = word.substr(std::min(equals + 1, word.size()));
        if (!value.empty() && value.find_first_not_of("0123456789") == std::string::npos) {
            map.emplace(word.substr(0, equals), std::int64_t{std::stoll(value)});
        } else {
            map.emplace(word.substr(0, equals), value);
        }
    }
    return PlenxService::Values(map);
}

}  // namespace

int main(int count, char** words) {
    const PlenxService::Values told = Told(count, words);
    for (std::uint32_t requests = 0; Read(requests);) {
        for (; requests != 0; --requests) {
            PlenxJudge::RequestHead head;
            Read(head);
            PlenxWire::Bytes bytes(head.size);
            std::cin.read(reinterpret_cast<char*>(bytes.data()),
                          static_cast<std::streamsize>(head.size));
            PlenxService::Notifications notifications;
            WriteAnswer(AnswerTo(head.id, bytes, told, notifications));
            WriteNotifications(notifications);
        }
        std::cout << std::flush;
    }
    return 0;
}
