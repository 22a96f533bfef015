#include "platform/pdf/structure_section.h"

#include "platform/pdf/content_stream.h"

#include <qpdf/Buffer.hh>

namespace corvane {

namespace {

constexpr size_t kObjectsPerStream = 512;
constexpr size_t kEntrySize = 7; ///< of the cross-reference: type, offset or stream, index

/// A text string (7.9.2.2) in hexadecimal UTF-16.
std::string textString(const QString &text)
{
    std::string hex = "<FEFF";
    for (const QChar c : text)
        hex += QByteArray::number(c.unicode(), 16).rightJustified(4, '0').toUpper().toStdString();
    return hex + ">";
}

} // namespace

StructureSection::StructureSection(
    const StructureTree &tree, const WrittenFile &written, CompressionQueue &compression, PdfFile &file)
    : m_tree(tree)
    , m_written(written)
    , m_compression(compression)
    , m_file(file)
    , m_nextStream(parentsNumber(tree.owners().size()))
{
    m_places.resize(1 + tree.elements().size() + tree.owners().size());
}

void StructureSection::write()
{
    for (StructureTree::Id id = 0; id < m_tree.elements().size(); ++id)
        putElement(id);
    for (size_t page = 0; page < m_tree.owners().size(); ++page)
        putParents(page);
    putRoot();
    for (ObjectStream &stream : m_streams)
        write(stream);
    m_compression.finish(); // only now it is known where the streams stand
    writeCrossReference();
}

StructureSection::Kind StructureSection::kindOf(StructureRole role)
{
    if (role == StructureRole::TD || role == StructureRole::TH)
        return Kind::Cells;
    return role == StructureRole::TR ? Kind::Rows : Kind::Others;
}

void StructureSection::putElement(StructureTree::Id id)
{
    const StructureTree::Element &element = m_tree.elements()[id];
    ObjectStream &out = begin(kindOf(element.role), numberOf(id));
    out.put("<</S/");
    out.put(roleName(element.role));
    out.put("/P ");
    out.putReference(id == StructureTree::kDocument ? m_written.structureRoot : numberOf(element.parent));
    quint32 kid = element.firstKid;
    while (kid != 0 && m_tree.kid(kid).kind != StructureTree::KidKind::Content)
        kid = m_tree.kid(kid).next;
    const quint32 ownPage = kid == 0 ? 0 : m_tree.kid(kid).page;
    if (kid != 0) {
        out.put("/Pg ");
        out.putReference(m_written.pages[ownPage]);
    }
    if (element.firstKid != 0)
        putKids(out, element, ownPage);
    putAttributes(out, id, element);
    out.put(">>");
    end(out);
}

void StructureSection::putKids(ObjectStream &out, const StructureTree::Element &element, quint32 ownPage)
{
    const bool isList = element.firstKid != element.lastKid;
    out.put(isList ? "/K[" : "/K ");
    for (quint32 number = element.firstKid; number != 0; number = m_tree.kid(number).next) {
        putKid(out, m_tree.kid(number), ownPage);
        if (m_tree.kid(number).next != 0)
            out.put(" ");
    }
    if (isList)
        out.put("]");
}

/// Contents on the element's own page are numbers, those on others say where they are.
void StructureSection::putKid(ObjectStream &out, const StructureTree::Kid &kid, quint32 ownPage)
{
    if (kid.kind == StructureTree::KidKind::Element) {
        out.putReference(numberOf(kid.value));
    } else if (kid.kind == StructureTree::KidKind::Content && kid.page == ownPage) {
        out.putNumber(kid.value);
    } else {
        const bool isContent = kid.kind == StructureTree::KidKind::Content;
        out.put(isContent ? "<</Type/MCR/Pg " : "<</Type/OBJR/Pg ");
        out.putReference(m_written.pages[kid.page]);
        out.put(isContent ? "/MCID " : "/Obj ");
        isContent ? out.putNumber(kid.value) : out.putReference(m_written.annotations[kid.value]);
        out.put(">>");
    }
}

void StructureSection::putAttributes(ObjectStream &out, StructureTree::Id id, const StructureTree::Element &element)
{
    if (element.role == StructureRole::Figure)
        putPicture(out, m_tree.picture(id));
    const bool isHeading = element.role == StructureRole::TH;
    if (!isHeading && element.columnSpan <= 1)
        return;
    out.put(isHeading ? "/A<</O/Table/Scope/Column" : "/A<</O/Table");
    if (element.columnSpan > 1)
        out.put("/ColSpan " + std::to_string(element.columnSpan));
    out.put(">>");
}

void StructureSection::putPicture(ObjectStream &out, const StructureTree::Picture &picture)
{
    std::array<char, 128> box {};
    char *at = box.data();
    for (const int side : {picture.frame.left(), picture.frame.top(), picture.frame.left() + picture.frame.width(),
             picture.frame.top() + picture.frame.height()}) {
        at = ContentStream::putNumber(at, side);
        *at++ = ' ';
    }
    out.put("/Alt" + textString(picture.description) + "/A<</O/Layout/Placement/Block/BBox["
        + std::string(box.data(), at) + "]>>");
}

/// Which elements the page's marked contents belong to, by their numbers.
void StructureSection::putParents(size_t page)
{
    ObjectStream &out = begin(Kind::Parents, parentsNumber(page));
    out.put("[");
    for (const StructureTree::Id owner : m_tree.owners()[page]) {
        out.putReference(numberOf(owner));
        out.put(" ");
    }
    out.put("]");
    end(out);
}

void StructureSection::putRoot()
{
    ObjectStream &out = begin(Kind::Others, m_written.structureRoot);
    out.put("<</Type/StructTreeRoot/K ");
    out.putReference(numberOf(StructureTree::kDocument));
    out.put("/ParentTree<</Nums[");
    const auto putPair = [&out](size_t key, int object) {
        out.putNumber(qint64(key));
        out.put(" ");
        out.putReference(object);
        out.put(" ");
    };
    for (size_t page = 0; page < m_tree.owners().size(); ++page)
        putPair(page, parentsNumber(page));
    const std::vector<StructureTree::Id> &annotations = m_tree.annotationOwners();
    for (size_t i = 0; i < annotations.size(); ++i)
        putPair(m_written.pages.size() + i, numberOf(annotations[i]));
    out.put("]>>/ParentTreeNextKey " + std::to_string(m_written.pages.size() + annotations.size()) + ">>");
    end(out);
}

ObjectStream &StructureSection::begin(Kind kind, int number)
{
    ObjectStream &stream = m_streams[size_t(kind)];
    stream.begin(number);
    return stream;
}

void StructureSection::end(ObjectStream &stream)
{
    stream.end();
    if (stream.numbers().size() == kObjectsPerStream)
        write(stream);
}

void StructureSection::write(ObjectStream &stream)
{
    if (stream.numbers().empty())
        return;
    quint16 index = 0;
    for (const int number : stream.numbers()) {
        const size_t place = number == m_written.structureRoot ? 0 : size_t(number - m_written.nextObject) + 1;
        m_places[place] = {true, quint32(m_nextStream), index++};
    }
    const ObjectStream::Content content = stream.take();
    writeStream(content.dictionary, content.bytes);
}

void StructureSection::writeStream(const std::string &dictionary, const std::string &bytes)
{
    const std::string begin = std::to_string(m_nextStream++) + " 0 obj\n<<" + dictionary + "/Filter/FlateDecode/Length ";
    m_compression.add(bytes, [this, begin](const std::shared_ptr<Buffer> &compressed) {
        m_places.push_back({false, quint32(m_file.size()), 0});
        m_file.put(begin + std::to_string(compressed->getSize()) + ">>\nstream\n");
        m_file.write(compressed->getBuffer(), compressed->getSize());
        m_file.put("\nendstream\nendobj\n");
    });
}

/// A cross-reference stream (7.5.8) of what this section holds.
void StructureSection::writeCrossReference()
{
    const qint64 offset = m_file.size();
    const int number = m_nextStream;
    std::string rows;
    const auto add = [&rows](const Place &place) {
        rows += place.isCompressed ? '\2' : '\1';
        for (const int shift : {24, 16, 8, 0})
            rows += char(place.where >> shift);
        rows += char(place.index >> 8);
        rows += char(place.index);
    };
    for (const Place &place : m_places)
        add(place);
    add({false, quint32(offset), 0});
    const std::string dictionary = "/Type/XRef/Size " + std::to_string(number + 1) + "/Index["
        + std::to_string(m_written.structureRoot) + " 1 " + std::to_string(m_written.nextObject) + ' '
        + std::to_string(number + 1 - m_written.nextObject) + "]/W[1 4 2]/DecodeParms<</Predictor 12/Columns "
        + std::to_string(kEntrySize) + ">>/Prev " + std::to_string(m_written.crossReference) + "/Root "
        + std::to_string(m_written.catalog) + " 0 R/Info " + std::to_string(m_written.info) + " 0 R/ID[<"
        + m_written.fileId + "><" + m_written.fileId + ">]";
    writeStream(dictionary, predictedUp(rows, kEntrySize));
    m_compression.finish();
    m_file.put("startxref\n" + std::to_string(offset) + "\n%%EOF\n");
}

} // namespace corvane
