#include "rpc/message_bytes.h"

#include <cctype>
#include <cstddef>

namespace {

void PutInteger(Bytes& out, std::uint64_t value, int bytes) {
    for (int i = 0; i != bytes; ++i) {
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

}  // namespace

Bytes FromHex(const std::string& digits) {
    Bytes out;
    std::string pair;
    for (const char digit : digits) {
        if (std::isxdigit(static_cast<unsigned char>(digit)) != 0) {
            pair += digit;
        }
        if (pair.size() == 2) {
            out.push_back(static_cast<std::uint8_t>(std::stoi(pair, nullptr, 16)));
            pair.clear();
        }
    }
    return out;
}

Bytes FromWords(const std::vector<std::uint32_t>& words) {
    Bytes out;
    for (const std::uint32_t word : words) {
        PutInteger(out, word, 4);
    }
    return out;
}

MessageArg Int32Arg(std::int32_t value) {
    MessageArg argument{2, {}};
    PutInteger(argument.data, static_cast<std::uint32_t>(value), 4);
    return argument;
}

MessageArg Int64Arg(std::int64_t value) {
    MessageArg argument{3, {}};
    PutInteger(argument.data, static_cast<std::uint64_t>(value), 8);
    return argument;
}

MessageArg StringArg(const std::string& text) {
    MessageArg argument{4, Bytes(text.begin(), text.end())};
    argument.data.push_back(0);
    return argument;
}

MessageArg ArrayArg(const Bytes& bytes) {
    return {5, bytes};
}

Bytes MessageOf(const std::vector<MessageArg>& arguments) {
    Bytes table;
    Bytes data;
    const std::size_t begin = 8 + 12 * arguments.size();
    for (const MessageArg& argument : arguments) {
        PutInteger(table, argument.tag, 4);
        PutInteger(table, begin + data.size(), 4);
        PutInteger(table, argument.data.size(), 4);
        data.insert(data.end(), argument.data.begin(), argument.data.end());
    }
    Bytes out;
    PutInteger(out, begin + data.size(), 4);
    PutInteger(out, arguments.size(), 4);
    out.insert(out.end(), table.begin(), table.end());
    out.insert(out.end(), data.begin(), data.end());
    return out;
}

Bytes Int32Message(std::int32_t value) {
    return MessageOf({Int32Arg(value)});
}
