// Tests that the interfaces on the page are those that the stubs are made from.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "page.h"

namespace WirePage {
namespace {

// Removes the remarks in front of the interface.
std::string InterfaceText(const std::string& name) {
    const std::string text = TextOf(INTERFACES "/" + name);
    return text.substr(text.find("[\n"));
}

std::vector<std::string> InterfacesOf(const Lines& page) {
    std::vector<std::string> texts;
    bool inside = false;
    for (const std::string& line : page) {
        if (line == "```idl") {
            inside = true;
            texts.emplace_back();
        } else if (line == "```") {
            inside = false;
        } else if (inside) {
            texts.back() += line + "\n";
        }
    }
    return texts;
}

TEST(WirePage, QuotesBothInterfacesWordForWord) {
    EXPECT_EQ(InterfacesOf(Page()), (std::vector<std::string>{InterfaceText("service.idl"),
                                                              InterfaceText("manager.idl")}));
}

}  // namespace
}  // namespace WirePage
