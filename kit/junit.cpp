#include "junit.h"

#include <rapidxml/rapidxml.hpp>

// RapidXML as it is published calls these before it declares them. Debian has fixed its copy.
// NOLINTBEGIN(readability-identifier-naming)
namespace rapidxml::internal {
template <class Out, class Letter>
Out print_children(Out out, const xml_node<Letter>* node, int flags, int indent);
template <class Out, class Letter>
Out print_element_node(Out out, const xml_node<Letter>* node, int flags, int indent);
template <class Out, class Letter>
Out print_data_node(Out out, const xml_node<Letter>* node, int flags, int indent);
template <class Out, class Letter>
Out print_cdata_node(Out out, const xml_node<Letter>* node, int flags, int indent);
template <class Out, class Letter>
Out print_declaration_node(Out out, const xml_node<Letter>* node, int flags, int indent);
template <class Out, class Letter>
Out print_comment_node(Out out, const xml_node<Letter>* node, int flags, int indent);
template <class Out, class Letter>
Out print_doctype_node(Out out, const xml_node<Letter>* node, int flags, int indent);
template <class Out, class Letter>
Out print_pi_node(Out out, const xml_node<Letter>* node, int flags, int indent);
}  // namespace rapidxml::internal
// NOLINTEND(readability-identifier-naming)

#include <rapidxml/rapidxml_print.hpp>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace PlenxKit {
namespace {

using Node = rapidxml::xml_node<>;

class Document {
public:
    Document() {
        Node* const declaration = xml_.allocate_node(rapidxml::node_declaration);
        xml_.append_node(declaration);
        Put(*declaration, "version", "1.0");
        Put(*declaration, "encoding", "UTF-8");
    }

    Node& Top() { return xml_; }

    Node& Add(Node& parent, const char* name, const std::string& text = "") {
        Node* const node = xml_.allocate_node(rapidxml::node_element, name, Kept(text));
        parent.append_node(node);
        return *node;
    }

    void Put(Node& node, const char* name, const std::string& value) {
        node.append_attribute(xml_.allocate_attribute(name, Kept(value)));
    }

    std::string Text() const {
        std::string text;
        rapidxml::print(std::back_inserter(text), xml_);
        return text;
    }

private:
    // XML has no way to write most control characters.
    const char* Kept(std::string text) {
        std::replace_if(
            text.begin(), text.end(),
            [](char letter) { return static_cast<unsigned char>(letter) < 0x20 && letter != '\n'; },
            '?');
        return xml_.allocate_string(text.c_str());
    }

    rapidxml::xml_document<> xml_;
};

std::string Tenths(double seconds) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.1f", seconds);
    return text;
}

// A line break in an attribute would be read as a blank.
std::string InOneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::size_t CountOf(const std::vector<JunitCase>& cases, std::string JunitCase::* member) {
    return static_cast<std::size_t>(std::count_if(
        cases.begin(), cases.end(), [&](const JunitCase& one) { return !(one.*member).empty(); }));
}

}  // namespace

std::string JunitOf(const std::string& suite, const std::vector<JunitCase>& cases) {
    double seconds = 0;
    for (const JunitCase& one : cases) {
        seconds += one.seconds;
    }
    const std::size_t skipped = CountOf(cases, &JunitCase::skipped);
    Document document;
    Node& top = document.Add(document.Top(), "testsuite");
    document.Put(top, "name", suite);
    document.Put(top, "tests", std::to_string(cases.size()));
    document.Put(top, "failures", std::to_string(CountOf(cases, &JunitCase::failure)));
    if (skipped != 0) {
        document.Put(top, "skipped", std::to_string(skipped));
    }
    document.Put(top, "time", Tenths(seconds));
    for (const JunitCase& one : cases) {
        Node& node = document.Add(top, "testcase");
        document.Put(node, "classname", suite);
        document.Put(node, "name", one.name);
        document.Put(node, "time", Tenths(one.seconds));
        if (!one.failure.empty()) {
            document.Put(document.Add(node, "failure", one.details), "message",
                         InOneLine(one.failure));
        } else if (!one.skipped.empty()) {
            document.Put(document.Add(node, "skipped"), "message", InOneLine(one.skipped));
        } else if (!one.remark.empty()) {
            document.Add(node, "system-out", one.remark);
        }
    }
    return document.Text();
}

}  // namespace PlenxKit
