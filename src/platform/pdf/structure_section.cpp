#include "platform/pdf/structure_section.h"

#include "platform/pdf/content_stream.h"

#include <qpdf/Buffer.hh>

#include <charconv>

namespace corvane {

namespace {

constexpr size_t kObjectsPerStream = 256;
constexpr size_t kEntrySize = 7; ///< of the cross-reference: type, offset or stream, index

std::string_view viewOf(const Buffer &buffer)
{
    return {reinterpret_cast<const char *>(const_cast<Buffer &>(buffer).getBuffer()), buffer.getSize()};
}

/// A text string (7.9.2.2) in hexadecimal UTF-16.
std::string textString(const QString &text)
{
    std::string hex = "<FEFF";
    for (const QChar c : text)
        hex += QByteArray::number(c.unicode(), 16).rightJustified(4, '0').toUpper().toStdString();
    return hex + ">";
}

/// Each row as the differences from the one above (the predictor "Up"), which compress to almost nothing.
std::string predicted(const std::string &rows)
{
    std::string out;
    out.reserve(rows.size() / kEntrySize * (kEntrySize + 1));
    for (size_t at = 0; at < rows.size(); ++at) {
        if (at % kEntrySize == 0)
            out += '\2';
        out += char(rows[at] - (at < kEntrySize ? '\0' : rows[at - kEntrySize]));
    }
    return out;
}

} // namespace

StructureSection::StructureSection(
    const StructureTree &tree, const WrittenFile &written, Compressor &compressor, PdfFile &file)
    : m_tree(tree)
    , m_written(written)
    , m_compressor(compressor)
    , m_file(file)
    , m_nextStream(parentsNumber(tree.owners().size()))
{
    m_places.resize(1 + tree.elements().size() + tree.owners().size());
}

void StructureSection::write()
{
    for (StructureTree::Id id = 0; id < m_tree.elements().size(); ++id) {
        beginObject(numberOf(id));
        putElement(id);
    }
    for (size_t page = 0; page < m_tree.owners().size(); ++page) {
        beginObject(parentsNumber(page));
        putParents(m_tree.owners()[page]);
    }
    beginObject(m_written.structureRoot);
    putRoot();
    closeStream();
    writeCrossReference();
}

void StructureSection::putElement(StructureTree::Id id)
{
    const StructureTree::Element &element = m_tree.elements()[id];
    put("<</S/");
    put(roleName(element.role));
    put("/P ");
    putReference(id == StructureTree::kDocument ? m_written.structureRoot : numberOf(element.parent));
    quint32 page = 0;
    for (quint32 kid = element.firstKid; kid != 0; kid = m_tree.kid(kid).next) {
        if (m_tree.kid(kid).kind != StructureTree::KidKind::Content)
            continue;
        page = m_tree.kid(kid).page;
        put("/Pg ");
        putReference(m_written.pages[page]);
        break;
    }
    putAttributes(id, element);
    if (element.firstKid != 0)
        putKids(element, page);
    put(">>");
}

/// Contents on the element's own page are numbers, those on others say where they are.
void StructureSection::putKids(const StructureTree::Element &element, quint32 ownPage)
{
    const bool isList = element.firstKid != element.lastKid;
    put(isList ? "/K[" : "/K ");
    for (quint32 number = element.firstKid; number != 0; number = m_tree.kid(number).next) {
        const StructureTree::Kid &kid = m_tree.kid(number);
        if (kid.kind == StructureTree::KidKind::Element) {
            putReference(numberOf(kid.value));
        } else if (kid.kind == StructureTree::KidKind::Annotation) {
            put("<</Type/OBJR/Pg ");
            putReference(m_written.pages[kid.page]);
            put("/Obj ");
            putReference(m_written.annotations[kid.value]);
            put(">>");
        } else if (kid.page == ownPage) {
            putNumber(kid.value);
        } else {
            put("<</Type/MCR/Pg ");
            putReference(m_written.pages[kid.page]);
            put("/MCID ");
            putNumber(kid.value);
            put(">>");
        }
        if (kid.next != 0)
            put(" ");
    }
    if (isList)
        put("]");
}

void StructureSection::putAttributes(StructureTree::Id id, const StructureTree::Element &element)
{
    if (element.role == StructureRole::Figure) {
        const StructureTree::Picture &picture = m_tree.picture(id);
        std::array<char, 128> box {};
        char *at = box.data();
        for (const int side : {picture.frame.left(), picture.frame.top(), picture.frame.left() + picture.frame.width(),
                 picture.frame.top() + picture.frame.height()}) {
            at = ContentStream::putNumber(at, side);
            *at++ = ' ';
        }
        put("/Alt" + textString(picture.description) + "/A<</O/Layout/Placement/Block/BBox["
            + std::string(box.data(), at) + "]>>");
    }
    const bool isHeading = element.role == StructureRole::TH;
    if (!isHeading && element.columnSpan <= 1)
        return;
    put("/A<</O/Table");
    if (isHeading)
        put("/Scope/Column");
    if (element.columnSpan > 1) {
        put("/ColSpan ");
        putNumber(element.columnSpan);
    }
    put(">>");
}

void StructureSection::putParents(const std::vector<StructureTree::Id> &owners)
{
    put("[");
    for (const StructureTree::Id owner : owners) {
        putReference(numberOf(owner));
        put(" ");
    }
    put("]");
}

void StructureSection::putRoot()
{
    put("<</Type/StructTreeRoot/K ");
    putReference(numberOf(StructureTree::kDocument));
    put("/ParentTree<</Nums[");
    for (size_t page = 0; page < m_tree.owners().size(); ++page) {
        putNumber(qint64(page));
        put(" ");
        putReference(parentsNumber(page));
        put(" ");
    }
    const size_t annotations = m_tree.annotationOwners().size();
    for (size_t i = 0; i < annotations; ++i) {
        putNumber(qint64(m_written.pages.size() + i));
        put(" ");
        putReference(numberOf(m_tree.annotationOwners()[i]));
        put(" ");
    }
    put("]>>/ParentTreeNextKey ");
    putNumber(qint64(m_written.pages.size() + annotations));
    put(">>");
}

void StructureSection::putNumber(qint64 number)
{
    std::array<char, 24> digits {};
    put({digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr});
}

void StructureSection::putReference(int object)
{
    putNumber(object);
    put(" 0 R");
}

void StructureSection::beginObject(int number)
{
    if (m_numbers.size() == kObjectsPerStream)
        closeStream();
    m_index += std::to_string(number) + ' ' + std::to_string(m_objects.size()) + ' ';
    const size_t place = number == m_written.structureRoot ? 0 : size_t(number - m_written.nextObject) + 1;
    m_places[place] = {true, quint32(m_nextStream), quint16(m_numbers.size())};
    m_numbers.push_back(number);
}

void StructureSection::closeStream()
{
    const std::string dictionary = "/Type/ObjStm/N " + std::to_string(m_numbers.size()) + "/First "
        + std::to_string(m_index.size());
    m_index += m_objects;
    writeStream(dictionary, *m_compressor.compress(m_index));
    m_index.clear();
    m_objects.clear();
    m_numbers.clear();
}

void StructureSection::writeStream(const std::string &dictionary, const Buffer &bytes)
{
    m_places.push_back({false, quint32(m_file.size()), 0});
    m_file.put(std::to_string(m_nextStream++) + " 0 obj\n<<" + dictionary + "/Filter/FlateDecode/Length "
        + std::to_string(bytes.getSize()) + ">>\nstream\n");
    m_file.put(viewOf(bytes));
    m_file.put("\nendstream\nendobj\n");
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
    writeStream(dictionary, *m_compressor.compress(predicted(rows)));
    m_file.put("startxref\n" + std::to_string(offset) + "\n%%EOF\n");
}

} // namespace corvane
