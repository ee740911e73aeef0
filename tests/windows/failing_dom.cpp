// A DOM whose load call fails, and that is never asked for anything else.

#include "platform/dom.h"

#include <cstdlib>

struct DomDocument::Native {};

DomDocument::DomDocument(std::unique_ptr<Native> native) noexcept : m_pNative(std::move(native)) {}

DomDocument::~DomDocument() = default;

std::unique_ptr<DomDocument> DomDocument::Create() noexcept {
    return std::unique_ptr<DomDocument>(new DomDocument(nullptr));
}

bool DomDocument::Load(const char*, CReason*, DomPositions) { throw DomError("the load call fails"); }

void DomDocument::Save(const char*, const LastLook&) { std::abort(); }
DomNode DomDocument::DocumentElement() { std::abort(); }
DomNode DomDocument::FirstElementNamed(DomView) { std::abort(); }
DomKind DomDocument::Kind(const DomNode&) { std::abort(); }
DomText DomDocument::Text(const DomNode&) { std::abort(); }
DomPosition DomDocument::Position(const DomNode&) { std::abort(); }
DomPosition DomDocument::AttributePosition(const DomNode&, std::size_t) { std::abort(); }
DomNode DomDocument::FirstChild(const DomNode&) { std::abort(); }
DomNode DomDocument::NextSibling(const DomNode&) { std::abort(); }
bool DomDocument::ListAttributes(const DomNode&, std::vector<DomAttribute>&) { std::abort(); }
DomText DomDocument::TagName(const DomNode&) { std::abort(); }
bool DomDocument::HasChildren(const DomNode&) { std::abort(); }
DomText DomDocument::SetAttributeText(const DomNode&, std::size_t, DomView) { std::abort(); }
DomText DomDocument::AddAttribute(const DomNode&, const DomPair&) { std::abort(); }
DomNode DomDocument::AppendElement(const DomNode&, DomView, const std::vector<DomPair>&) { std::abort(); }
void DomDocument::RemoveChild(const DomNode&, const DomNode&) { std::abort(); }
