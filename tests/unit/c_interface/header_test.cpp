// Tests the header's layout and its numbers, which every binding repeats.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "c_fixture.h"
#include "header_in_c.h"

namespace {

TEST(Header, EventIsLaidOutAsEveryBindingTakesIt) {
    EXPECT_EQ(sizeof(plenx_event), 48U);
    EXPECT_EQ(offsetof(plenx_event, size), 0U);
    EXPECT_EQ(offsetof(plenx_event, kind), 4U);
    EXPECT_EQ(offsetof(plenx_event, service), 8U);
    EXPECT_EQ(offsetof(plenx_event, type), 12U);
    EXPECT_EQ(offsetof(plenx_event, msg_len), 16U);
    EXPECT_EQ(offsetof(plenx_event, value), 20U);
    EXPECT_EQ(offsetof(plenx_event, lost), 24U);
    EXPECT_EQ(offsetof(plenx_event, text), 32U);
    EXPECT_EQ(offsetof(plenx_event, text_length), 40U);
}

TEST(Header, ObserverIsLaidOutAsEveryBindingTakesIt) {
    EXPECT_EQ(sizeof(plenx_observer), 80U);
    EXPECT_EQ(offsetof(plenx_observer, user), 8U);
    EXPECT_EQ(offsetof(plenx_observer, send_local_message), 16U);
    EXPECT_EQ(offsetof(plenx_observer, notify_connect), 24U);
    EXPECT_EQ(offsetof(plenx_observer, notify_disconnect), 32U);
    EXPECT_EQ(offsetof(plenx_observer, notify_reconnect), 40U);
    EXPECT_EQ(offsetof(plenx_observer, query_link_status), 48U);
    EXPECT_EQ(offsetof(plenx_observer, notify_status), 56U);
    EXPECT_EQ(offsetof(plenx_observer, notify_error), 64U);
    EXPECT_EQ(offsetof(plenx_observer, notify_disk_name), 72U);
}

TEST(Header, IsTheSameInC) {
    EXPECT_EQ(EventSizeInC(), sizeof(plenx_event));
    EXPECT_EQ(ObserverSizeInC(), sizeof(plenx_observer));
    EXPECT_EQ(LastEventMemberInC(), offsetof(plenx_event, text_length));
    EXPECT_EQ(LastObserverMemberInC(), offsetof(plenx_observer, notify_disk_name));
    EXPECT_EQ(StartInC("g"), 0);
    EXPECT_EQ(StartInC(""), PLENX_INVALID_PARAMETER);
    EXPECT_EQ(StartInC(nullptr), PLENX_E_ARGUMENT);
}

// Returns the file from the folder of the sources as one text.
std::string Read(const std::string& path) {
    std::ifstream stream(std::string(PLENX_SOURCES) + "/" + path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(Header, DeclaresWhatTheDllExportsAndNothingElse) {
    std::set<std::string> exported;
    std::istringstream definition(Read("c_interface/plenxsdk_c.def"));
    for (std::string word; definition >> word;) {
        if (word.rfind("plenx_", 0) == 0) {
            exported.insert(word);
        }
    }
    std::set<std::string> declared;
    const std::string header = Read("include/plenxsdk/plenx.h");
    const std::string mark = "PLENX_CALL plenx_";
    for (auto at = header.find(mark); at != std::string::npos; at = header.find(mark, at + 1)) {
        const auto begin = at + mark.size() - 6;
        declared.insert(header.substr(begin, header.find('(', begin) - begin));
    }
    EXPECT_EQ(declared, exported);
    EXPECT_EQ(declared.size(), 28U);
}

}  // namespace
