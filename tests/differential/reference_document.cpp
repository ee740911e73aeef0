#include "reference_document.h"

#include <map>
#include <set>
#include <utility>

namespace {

using Scope = std::map<std::string, std::string>; // from prefix to namespace

bool IsPlainName(const std::string& name) {
    return !name.empty() && name.find(':') == std::string::npos && (name[0] < '0' || name[0] > '9');
}

/// An attribute without prefix is in no namespace.
bool IsNameRight(const std::string& name, const Scope& scope) {
    const std::size_t colon = name.find(':');
    if (colon == std::string::npos) {
        return true;
    }
    return IsPlainName(name.substr(0, colon)) && IsPlainName(name.substr(colon + 1)) &&
           scope.count(name.substr(0, colon)) == 1;
}

bool AreNamesRight(const RefNode& node, Scope scope) {
    if (node.kind != RefNode::Kind::Element) {
        return true;
    }
    for (const RefAttribute& attribute : node.attributes) {
        if (attribute.name.rfind("xmlns:", 0) == 0) {
            if (attribute.text.empty()) {
                return false;
            }
            scope[attribute.name.substr(6)] = attribute.text;
        }
    }
    std::set<std::pair<std::string, std::string>> expandedNames;
    for (const RefAttribute& attribute : node.attributes) {
        const std::size_t colon = attribute.name.find(':');
        if (attribute.name.rfind("xmlns", 0) == 0 || colon == std::string::npos) {
            continue;
        }
        const std::string name = attribute.name.substr(colon + 1);
        if (!IsNameRight(attribute.name, scope) ||
            !expandedNames.emplace(scope[attribute.name.substr(0, colon)], name).second) {
            return false;
        }
    }
    if (!IsNameRight(node.name, scope)) {
        return false;
    }
    for (const RefNode& child : node.children) {
        if (!AreNamesRight(child, scope)) {
            return false;
        }
    }
    return true;
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '&':
            escaped += "&amp;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':
            escaped += "&#" + std::to_string(static_cast<int>(character)) + ";";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

void Write(const RefNode& node, std::string& xml) {
    switch (node.kind) {
    case RefNode::Kind::Text:
        xml += Escaped(node.text);
        return;
    case RefNode::Kind::Comment:
        xml += "<!--" + node.text + "-->";
        return;
    case RefNode::Kind::Instruction:
        xml += "<?" + node.name + " " + node.text + "?>";
        return;
    case RefNode::Kind::Cdata:
        xml += "<![CDATA[" + node.text + "]]>";
        return;
    case RefNode::Kind::Element:
        break;
    }
    xml += "<" + node.name;
    for (const RefAttribute& attribute : node.attributes) {
        xml += " " + attribute.name + "=\"" + Escaped(attribute.text) + "\"";
    }
    xml += ">";
    for (const RefNode& child : node.children) {
        Write(child, xml);
    }
    xml += "</" + node.name + ">";
}

RefNode::Kind KindOf(pugi::xml_node_type type) {
    switch (type) {
    case pugi::node_pcdata:
        return RefNode::Kind::Text;
    case pugi::node_comment:
        return RefNode::Kind::Comment;
    case pugi::node_pi:
        return RefNode::Kind::Instruction;
    case pugi::node_cdata:
        return RefNode::Kind::Cdata;
    default:
        return RefNode::Kind::Element;
    }
}

pugi::xml_node_type TypeOf(RefNode::Kind kind) {
    switch (kind) {
    case RefNode::Kind::Text:
        return pugi::node_pcdata;
    case RefNode::Kind::Comment:
        return pugi::node_comment;
    case RefNode::Kind::Instruction:
        return pugi::node_pi;
    case RefNode::Kind::Cdata:
        return pugi::node_cdata;
    case RefNode::Kind::Element:
        break;
    }
    return pugi::node_element;
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

} // namespace

std::string WriteXml(const RefNode& root) {
    std::string xml;
    Write(root, xml);
    return xml;
}

bool AreNamesRight(const RefNode& root) { return AreNamesRight(root, {}); }

void DeclareOutsideNamespace(RefNode& node) {
    if (node.bOutsideNamespace) {
        node.attributes.push_back({"xmlns", ""});
    }
    for (RefNode& child : node.children) {
        DeclareOutsideNamespace(child);
    }
}

RefNode ReadTree(pugi::xml_node node) {
    RefNode read;
    read.kind = KindOf(node.type());
    read.name = node.name();
    read.text = node.value();
    for (const pugi::xml_attribute attribute : node.attributes()) {
        read.attributes.push_back({attribute.name(), attribute.value()});
    }
    for (const pugi::xml_node child : node.children()) {
        read.children.push_back(ReadTree(child));
    }
    return read;
}

std::string Difference(const RefNode& expected, pugi::xml_node actual) {
    const std::string place = "<" + expected.name + ">: ";
    if (actual.empty()) {
        return place + "a node is missing";
    }
    if (actual.type() != TypeOf(expected.kind) || actual.name() != expected.name || actual.value() != expected.text) {
        return place + "another node stands there: " + Quoted(actual.name()) + " " + Quoted(actual.value());
    }
    pugi::xml_attribute attribute = actual.first_attribute();
    for (const RefAttribute& wanted : expected.attributes) {
        if (attribute.empty() || wanted.name != attribute.name() || wanted.text != attribute.value()) {
            return place + wanted.name + " should be " + Quoted(wanted.text) + ", and there is " + attribute.name() +
                   " = " + Quoted(attribute.value());
        }
        attribute = attribute.next_attribute();
    }
    if (!attribute.empty()) {
        return place + "surplus attribute " + attribute.name();
    }
    pugi::xml_node child = actual.first_child();
    for (const RefNode& wanted : expected.children) {
        const std::string below = Difference(wanted, child);
        if (!below.empty()) {
            return place + below;
        }
        child = child.next_sibling();
    }
    return child.empty() ? "" : place + "surplus child " + Quoted(child.name());
}

void JoinTexts(RefNode& node) {
    std::vector<RefNode> joined;
    for (RefNode& child : node.children) {
        const bool bText = child.kind == RefNode::Kind::Text;
        if (bText && !joined.empty() && joined.back().kind == RefNode::Kind::Text) {
            joined.back().text += child.text;
        } else {
            JoinTexts(child);
            joined.push_back(std::move(child));
        }
    }
    node.children = std::move(joined);
}
