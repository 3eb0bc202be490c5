// Tests the worked examples on the page: their bytes are those that the library's own writer makes,
// and the page explains each of them correctly.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "message/hex.h"
#include "page.h"
#include "rpc/rpc_message_writer.h"
#include "tool.h"
#include "wire/catalog.h"
#include "wire/inspect.h"

namespace WirePage {
namespace {

using DistributedFs::RpcMessageWriter;
using PlenxWire::Bytes;

constexpr char kIndent[] = "    ";
constexpr char kCommand[] = "    $ plenxkit message encode ";

bool StartsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

struct Example {
    std::vector<std::string> words;
    std::string hex;
    Lines table;
};

// Splits the text as a shell does: a word may stand in single quotes.
std::vector<std::string> WordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        const bool quoted = word.size() > 1 && word.front() == '\'' && word.back() == '\'';
        words.push_back(quoted ? word.substr(1, word.size() - 2) : word);
    }
    return words;
}

std::vector<Example> ExamplesOn(const Lines& page) {
    std::vector<Example> examples;
    for (const std::string& line : Section(page, "## Worked examples")) {
        if (StartsWith(line, kCommand)) {
            examples.push_back({WordsOf(line.substr(sizeof kCommand - 1)), "", {}});
        } else if (StartsWith(line, kIndent)) {
            examples.back().hex += line.substr(sizeof kIndent - 1) + "\n";
        } else if (StartsWith(line, "|")) {
            examples.back().table.push_back(line);
        }
    }
    return examples;
}

const PlenxWire::MessageShape& ShapeOf(const Example& example) {
    const std::string& name = example.words.front();
    return name == "reply" ? PlenxWire::ReplyShape() : *PlenxWire::FindMessage(name);
}

// Gives the library's own writer the values that the tool's decoder finds in the bytes.
Bytes WrittenByTheLibrary(const PlenxWire::Arguments& arguments, std::size_t size) {
    RpcMessageWriter writer(static_cast<std::int32_t>(size),
                            static_cast<std::int32_t>(arguments.size()));
    std::uint32_t index = 0;
    for (const PlenxWire::Argument& argument : arguments) {
        if (const auto* const number = std::get_if<std::int32_t>(&argument)) {
            EXPECT_EQ(writer.WriteInt32(index, *number), 0);
        } else if (const auto* const wide = std::get_if<std::int64_t>(&argument)) {
            EXPECT_EQ(writer.WriteInt64(index, *wide), 0);
        } else if (const auto* const text = std::get_if<std::string>(&argument)) {
            EXPECT_EQ(writer.WriteString(index, *text), 0);
        } else {
            const Bytes& bytes = std::get<Bytes>(argument);
            EXPECT_EQ(
                writer.WriteInt8Array(index, bytes.data(), static_cast<std::int32_t>(bytes.size())),
                0);
        }
        ++index;
    }
    return Bytes(writer.Buffer(), writer.Buffer() + writer.Size());
}

struct ValueText {
    std::string operator()(std::int32_t value) const { return std::to_string(value); }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(const std::string& value) const { return "\"" + value + "\""; }
    std::string operator()(const Bytes& value) const {
        return std::to_string(value.size()) + " bytes";
    }
};

// Returns the table that the page must have for a message.
class Explanation {
public:
    Explanation(const PlenxWire::MessageShape& shape, const Bytes& message) : message_(message) {
        const PlenxWire::Layout layout = InspectAs(shape, message.data(), message.size());
        EXPECT_TRUE(layout.problems.empty());
        Add(4, "total size: " + std::to_string(message.size()));
        Add(4, "number of arguments: " + std::to_string(layout.fields.size()));
        for (std::size_t i = 0; i < layout.fields.size(); ++i) {
            AddDescriptor("argument " + std::to_string(i) + ", ", layout.fields[i]);
        }
        for (std::size_t i = 0; i < layout.fields.size(); ++i) {
            const PlenxWire::Field& field = layout.fields[i];
            Add(field.size, "argument " + std::to_string(i) + ", `" + shape.arguments[i].name +
                                "`: " + std::visit(ValueText{}, *field.value));
        }
        EXPECT_EQ(offset_, message.size());
    }

    const std::vector<Cells>& Rows() const { return rows_; }

private:
    void AddDescriptor(const std::string& who, const PlenxWire::Field& field) {
        const auto type = static_cast<PlenxWire::ArgumentType>(field.tag);
        Add(4, who + "type: " + std::to_string(field.tag) + ", " + PlenxWire::NameOf(type));
        Add(4, who + "offset: " + std::to_string(field.offset));
        Add(4, who + "size: " + std::to_string(field.size));
    }

    void Add(std::size_t size, const std::string& meaning) {
        const auto begin = message_.begin() + static_cast<std::ptrdiff_t>(offset_);
        const Bytes bytes(begin, begin + static_cast<std::ptrdiff_t>(size));
        rows_.push_back({std::to_string(offset_), "`" + PlenxMessage::ToHex(bytes) + "`", meaning});
        offset_ += size;
    }

    const Bytes& message_;
    std::size_t offset_ = 0;
    std::vector<Cells> rows_;
};

TEST(WirePage, EachExample_IsWhatPlenxmsgPrints) {
    const std::vector<Example> examples = ExamplesOn(Page());
    EXPECT_EQ(examples.size(), 6u);
    for (const Example& example : examples) {
        EXPECT_EQ(PlenxMessage::Encoded(example.words).out, example.hex) << example.words.front();
    }
}

TEST(WirePage, EachExample_HasTheBytesOfTheLibrarysWriter) {
    for (const Example& example : ExamplesOn(Page())) {
        const Bytes message = PlenxMessage::FromHex(example.hex);
        const PlenxWire::Decoded decoded =
            DecodeAs(ShapeOf(example), message.data(), message.size());
        ASSERT_EQ(decoded.error, "") << example.words.front();
        EXPECT_EQ(WrittenByTheLibrary(decoded.arguments, message.size()), message);
    }
}

TEST(WirePage, EachExample_IsExplainedByteByByte) {
    for (const Example& example : ExamplesOn(Page())) {
        const Bytes message = PlenxMessage::FromHex(example.hex);
        EXPECT_EQ(RowsOf(example.table), Explanation(ShapeOf(example), message).Rows());
    }
}

TEST(WirePage, TheSmallestReply_IsOne) {
    const Bytes reply = PlenxWire::Encode({std::int32_t{0}});
    std::string words = PlenxMessage::ToHex(reply);
    words.erase(std::remove(words.begin(), words.end(), ' '), words.end());
    for (std::size_t blank = 8; blank < words.size(); blank += 9) {
        words.insert(blank, " ");
    }
    EXPECT_NE(TextOf(DOCS "/wire-protocol.md").find("`" + words + "`"), std::string::npos) << words;
}

// The picture shows the bytes of one message from its first to its last.
TEST(WirePage, ThePicture_ShowsAMessage) {
    const std::string cell = "<text class=\"t mono c\"";
    std::string hex;
    for (const std::string& line : LinesOf(TextOf(DOCS "/images/wire-message.svg"))) {
        if (StartsWith(line, cell)) {
            const std::size_t begin = line.find('>') + 1;
            hex += line.substr(begin, line.find('<', begin) - begin) + " ";
        }
    }
    EXPECT_EQ(PlenxMessage::FromHex(hex),
              PlenxWire::Encode({std::string("photos_1"), std::int32_t{2}, std::string("café")}));
}

}  // namespace
}  // namespace WirePage
