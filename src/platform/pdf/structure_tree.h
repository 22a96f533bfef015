#pragma once

#include <QtCore/QRect>
#include <QtCore/QString>

#include <array>
#include <map>
#include <string_view>
#include <vector>

namespace corvane {

/// Structure types that documents need (ISO 32000-1, 14.8.4).
enum class StructureRole : quint8 { Document, H1, H2, H3, H4, H5, H6, P, Table, TR, TH, TD, Figure, Link };

constexpr std::string_view roleName(StructureRole role)
{
    constexpr std::array<std::string_view, 14> kNames {
        "Document", "H1", "H2", "H3", "H4", "H5", "H6", "P", "Table", "TR", "TH", "TD", "Figure", "Link"};
    return kNames[size_t(role)];
}

/// What stands in a document in which order, for people who hear it. Grows page by page and is packed,
/// since every cell of every row has an element.
class StructureTree
{
public:
    using Id = quint32;
    static constexpr Id kDocument = 0;

    StructureTree();

    struct Element {
        Id parent = kDocument;
        quint32 firstKid = 0; ///< number of a kid from 1; 0: none
        quint32 lastKid = 0;
        quint16 columnSpan = 1; ///< of a cell
        StructureRole role = StructureRole::Document;
    };
    enum class KidKind : quint8 { Element, Content, Annotation };
    struct Kid {
        quint32 value = 0; ///< element, number of the marked content on its page, or annotation
        quint32 page = 0;  ///< from 0; of contents and annotations
        quint32 next = 0;  ///< number of the next kid of the same element from 1; 0: none
        KidKind kind = KidKind::Element;
    };
    struct Picture {
        QString description;
        QRect frame; ///< hundredths of a point from the paper's lower left corner
    };

    /// An element that has no place yet.
    Id create(StructureRole role);
    /// The last kid of `parent` from here on.
    void attach(Id child, Id parent);
    Id add(StructureRole role, Id parent);
    void setColumnSpan(Id cell, int columns) { m_elements[cell].columnSpan = quint16(columns); }
    void describe(Id figure, Picture picture) { m_pictures[figure] = std::move(picture); }

    /// Number of the next marked content of the page, which belongs to the element.
    int addContent(Id element, int page);
    /// The annotation belongs to the element.
    void addAnnotation(Id element, int page, int annotation);

    const std::vector<Element> &elements() const { return m_elements; }
    const Kid &kid(quint32 number) const { return m_kids[number - 1]; }
    const Picture &picture(Id figure) const { return m_pictures.at(figure); }
    /// Elements by page and marked content, and by annotation.
    const std::vector<std::vector<Id>> &owners() const { return m_owners; }
    const std::vector<Id> &annotationOwners() const { return m_annotationOwners; }

private:
    void append(Id element, const Kid &kid);

    std::vector<Element> m_elements;
    std::vector<Kid> m_kids;
    std::vector<std::vector<Id>> m_owners;
    std::vector<Id> m_annotationOwners;
    std::map<Id, Picture> m_pictures;
};

} // namespace corvane
