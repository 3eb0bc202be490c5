// A peer without Windows: it reads requests from its input and answers as the development service
// does. "subject reply=garbage" makes it misbehave as [[on]] would.

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "answers.h"
#include "judge/caller_wire.h"

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
                              const PlenxService::Values& told) {
    const auto decoded =
        PlenxService::DecodeRequest(id, bytes.data(), static_cast<std::int32_t>(bytes.size()));
    const std::int32_t honest = PlenxService::HonestCode(id, decoded);
    return PlenxService::AnswerWith(static_cast<std::int32_t>(told.Number("answer", honest)), told);
}

void WriteAnswer(const PlenxService::Answer& answer) {
    PlenxJudge::AnswerHead head;
    head.raised = answer.fault != 0 ? 1 : 0;
    head.exception = static_cast<std::uint32_t>(answer.fault);
    head.result = static_cast<std::int32_t>(answer.result);
    head.statedSize = static_cast<std::int32_t>(answer.statedSize);
    head.hasReply = answer.reply ? 1 : 0;
    head.size = answer.reply ? static_cast<std::uint32_t>(answer.reply->size()) : 0;
    Write(head);
    if (answer.reply) {
        std::cout.write(reinterpret_cast<const char*>(answer.reply->data()),
                        static_cast<std::streamsize>(answer.reply->size()));
    }
}

// "key=5" becomes a number, "key=word" a text.
PlenxService::Values Told(int count, char** words) {
    PlenxService::Values::Map map;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        const std::size_t equals = word.find('=');
        const std::string value = word.substr(equals + 1);
        if (value.find_first_not_of("0123456789") == std::string::npos) {
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
            WriteAnswer(AnswerTo(head.id, bytes, told));
        }
        std::cout << std::flush;
    }
    return 0;
}
