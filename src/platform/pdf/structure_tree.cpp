#include "platform/pdf/structure_tree.h"

namespace corvane {

StructureTree::StructureTree()
{
    create(StructureRole::Document);
}

StructureTree::Id StructureTree::create(StructureRole role)
{
    Element element;
    element.role = role;
    m_elements.push_back(element);
    return Id(m_elements.size() - 1);
}

void StructureTree::attach(Id child, Id parent)
{
    m_elements[child].parent = parent;
    append(parent, {child, 0, 0, KidKind::Element});
}

StructureTree::Id StructureTree::add(StructureRole role, Id parent)
{
    const Id element = create(role);
    attach(element, parent);
    return element;
}

int StructureTree::addContent(Id element, int page)
{
    if (m_owners.size() <= size_t(page))
        m_owners.resize(size_t(page) + 1);
    std::vector<Id> &owners = m_owners[size_t(page)];
    const auto number = quint32(owners.size());
    owners.push_back(element);
    append(element, {number, quint32(page), 0, KidKind::Content});
    return int(number);
}

void StructureTree::addAnnotation(Id element, int page, int annotation)
{
    if (m_annotationOwners.size() <= size_t(annotation))
        m_annotationOwners.resize(size_t(annotation) + 1);
    m_annotationOwners[size_t(annotation)] = element;
    append(element, {quint32(annotation), quint32(page), 0, KidKind::Annotation});
}

void StructureTree::append(Id element, const Kid &kid)
{
    m_kids.push_back(kid);
    const auto number = quint32(m_kids.size());
    Element &owner = m_elements[element];
    if (owner.lastKid == 0)
        owner.firstKid = number;
    else
        m_kids[owner.lastKid - 1].next = number;
    owner.lastKid = number;
}

} // namespace corvane
