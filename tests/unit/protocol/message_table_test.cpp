// Tests that the messages on the page are those of the catalogue that the tools work with.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "page.h"
#include "wire/catalog.h"

namespace WirePage {
namespace {

using PlenxWire::Direction;

// Returns a text such as "### 1 DeleteGroup", with a line for each argument below it.
std::vector<std::string> MessagesOn(const Lines& section) {
    std::vector<std::string> messages;
    for (const std::string& line : section) {
        if (line.compare(0, 4, "### ") != 0) {
            continue;
        }
        messages.push_back(line);
        for (const Cells& row : RowsOf(Section(section, line))) {
            const std::string always = row.at(3).compare(0, 7, "always ") == 0 ? row[3] : "";
            messages.push_back(row[0] + " " + Unmarked(row[1]) + " " + row[2] + " " + always);
        }
    }
    return messages;
}

std::vector<std::string> MessagesInCatalog(Direction direction) {
    std::vector<std::string> messages;
    for (const PlenxWire::MessageShape& shape : PlenxWire::Catalog()) {
        if (shape.direction != direction) {
            continue;
        }
        messages.push_back("### " + std::to_string(shape.id) + " " + shape.name);
        int index = 0;
        for (const PlenxWire::ArgumentShape& argument : shape.arguments) {
            messages.push_back(
                std::to_string(index++) + " " + argument.name + " " +
                PlenxWire::NameOf(argument.type) + " " +
                (argument.always ? "always " + std::to_string(*argument.always) : ""));
        }
    }
    return messages;
}

TEST(WirePage, TellsOfEachRequestWithItsArguments) {
    EXPECT_EQ(MessagesOn(Section(Page(), "## Requests: library to service")),
              MessagesInCatalog(Direction::kRequest));
}

TEST(WirePage, TellsOfEachNotificationWithItsArguments) {
    EXPECT_EQ(MessagesOn(Section(Page(), "## Notifications: service to library")),
              MessagesInCatalog(Direction::kNotification));
}

}  // namespace
}  // namespace WirePage
