#pragma once

#include "platform/pdf/compression_queue.h"
#include "platform/pdf/object_stream.h"
#include "platform/pdf/pdf_file.h"
#include "platform/pdf/structure_tree.h"

namespace corvane {

/// What the section refers to in the file before it: object numbers, and where its end stands.
struct WrittenFile {
    int catalog = 0;
    int info = 0;
    int structureRoot = 0; ///< a placeholder that the section replaces
    std::vector<int> pages;
    std::vector<int> annotations;
    int nextObject = 0;
    qint64 crossReference = 0; ///< offset
    std::string fileId;
};

/// Writes a document's structure tree (ISO 32000-1, 14.7) behind a finished file as an incremental update
/// (7.5.6) of object streams. A container library takes tens of times as long for so many small objects.
class StructureSection
{
public:
    StructureSection(const StructureTree &tree, const WrittenFile &written, CompressionQueue &compression, PdfFile &file);

    void write();

private:
    int numberOf(StructureTree::Id element) const { return m_written.nextObject + int(element); }
    int parentsNumber(size_t page) const { return m_written.nextObject + int(m_tree.elements().size() + page); }
    /// Objects of one kind share streams, because they look alike.
    enum class Kind { Cells, Rows, Others, Parents };
    static Kind kindOf(StructureRole role);

    void putElement(StructureTree::Id id);
    void putKids(ObjectStream &out, const StructureTree::Element &element, quint32 ownPage);
    void putKid(ObjectStream &out, const StructureTree::Kid &kid, quint32 ownPage);
    void putAttributes(ObjectStream &out, StructureTree::Id id, const StructureTree::Element &element);
    void putPicture(ObjectStream &out, const StructureTree::Picture &picture);
    void putParents(size_t page);
    void putRoot();
    ObjectStream &begin(Kind kind, int number);
    void end(ObjectStream &stream);
    void write(ObjectStream &stream);
    void writeStream(const std::string &dictionary, const std::string &bytes);
    void writeCrossReference();

    const StructureTree &m_tree;
    const WrittenFile &m_written;
    CompressionQueue &m_compression;
    PdfFile &m_file;
    std::array<ObjectStream, 4> m_streams; ///< by kind
    int m_nextStream = 0;
    struct Place {
        bool isCompressed = false;
        quint32 where = 0; ///< number of an object stream, or offset
        quint16 index = 0;
    };
    std::vector<Place> m_places; ///< of the structure root and of all numbers from nextObject
};

} // namespace corvane
