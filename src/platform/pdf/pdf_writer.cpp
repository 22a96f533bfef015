#include "platform/pdf/pdf_writer.h"

#include "platform/pdf/font_objects.h"
#include "platform/pdf/metadata.h"
#include "platform/pdf/outline_tree.h"
#include "platform/pdf/page_content.h"
#include "platform/pdf/page_links.h"
#include "platform/pdf/pdf_file.h"
#include "platform/pdf/structure_section.h"

#include <qpdf/QPDFWriter.hh>

#include <QtCore/QCryptographicHash>

namespace corvane {

namespace {

bool isTagged(const Document &document, PdfTagging tagging)
{
    return tagging == PdfTagging::Always
        || (tagging == PdfTagging::ShortDocuments && document.pageCount() <= kShortDocument);
}

QString taggedText(const Document &document, PdfTagging tagging)
{
    if (isTagged(document, tagging))
        return QStringLiteral("yes");
    return tagging == PdfTagging::Never
        ? QStringLiteral("no")
        : QStringLiteral("no, the document has more than %1 pages").arg(kShortDocument);
}

/// One file on its way from a document to the disk.
class FileBuilder
{
public:
    FileBuilder(const Document &document, const PdfOptions &options)
        : m_document(document)
        , m_options(options)
    {
        m_pdf.emptyPDF();
        if (isTagged(document, options.tagging))
            m_tags.emplace(document);
    }

    void write(PdfFile &file);

private:
    void buildPages();
    std::vector<TaggedLink> addLinks(QPDFObjectHandle page, int pageIndex);
    void describe();
    void announceTags();
    void writeStructure(QPDFWriter &writer, PdfFile &file);

    const Document &m_document;
    const PdfOptions &m_options;
    QPDF m_pdf;
    CompressionQueue m_compression {m_options.threads};
    PageTree m_pages {m_pdf, m_document};
    PageLinks m_links {m_document};
    std::optional<PageTags> m_tags;
    QPDFObjectHandle m_structureRoot;
    std::vector<QPDFObjectHandle> m_annotations;
    QCryptographicHash m_contents {QCryptographicHash::Md5};
};

void FileBuilder::write(PdfFile &file)
{
    buildPages();
    describe();
    if (m_tags)
        announceTags();
    QPDFWriter writer(m_pdf);
    writer.setOutputPipeline(&file);
    writer.setMinimumPDFVersion("1.7");
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.setCompressStreams(true);
    writer.setDecodeLevel(qpdf_dl_none); // our streams are compressed as they should be
    writer.setDeterministicID(true);
    writer.write();
    if (m_tags)
        writeStructure(writer, file);
}

/// Pages first, since only they know which glyphs the fonts must hold.
void FileBuilder::buildPages()
{
    FontCodes codes(m_document.faces);
    const PictureObjects pictures(m_pdf, m_compression, m_document);
    PageContent content(m_document, codes, pictures, m_tags ? &*m_tags : nullptr);
    // Readers refuse a file without pages: a document without any gets a blank one.
    const int count = std::max(m_document.pageCount(), 1);
    for (int i = 0; i < count; ++i) {
        QPDFObjectHandle page = m_pages.append();
        std::vector<TaggedLink> links = addLinks(page, i);
        if (m_tags)
            m_tags->beginPage(i, std::move(links));
        const std::string_view bytes = content.write(i);
        if (m_tags)
            m_contents.addData(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
        page.replaceKey("/Contents", compressedStream(m_pdf, m_compression, bytes));
    }
    QPDFObjectHandle resources = QPDFObjectHandle::newDictionary();
    resources.replaceKey("/Font", fontResources(m_pdf, m_compression, codes));
    if (!pictures.isEmpty())
        resources.replaceKey("/XObject", pictures.resources());
    m_pages.finish(resources);
    m_compression.finish();
}

std::vector<TaggedLink> FileBuilder::addLinks(QPDFObjectHandle page, int pageIndex)
{
    std::vector<TaggedLink> links;
    if (pageIndex >= m_document.pageCount())
        return links;
    std::vector<QPDFObjectHandle> annotations;
    for (const LinkArea &area : m_document.pages[size_t(pageIndex)].links) {
        if (!m_links.leads(area.target))
            continue;
        links.push_back({area, int(m_annotations.size())});
        m_annotations.push_back(m_links.annotation(m_pdf, area));
        annotations.push_back(m_annotations.back());
    }
    if (!annotations.empty())
        page.replaceKey("/Annots", QPDFObjectHandle::newArray(annotations));
    return links;
}

void FileBuilder::describe()
{
    const FileDescription file {
        m_document.info, m_options.producer, m_document.isWhole, taggedText(m_document, m_options.tagging)};
    m_pdf.getTrailer().replaceKey("/Info", infoDictionary(m_pdf, file));
    QPDFObjectHandle catalog = m_pdf.getRoot();
    catalog.replaceKey("/Pages", m_pages.root());
    catalog.replaceKey("/Metadata", metadataStream(m_pdf, file));
    if (!file.info.language.isEmpty())
        catalog.replaceKey("/Lang", QPDFObjectHandle::newUnicodeString(file.info.language.toStdString()));
    if (!file.info.title.isEmpty())
        catalog.replaceKey("/ViewerPreferences", QPDFObjectHandle::parse("<</DisplayDocTitle true>>"));
    if (const auto outline = outlineTree(m_pdf, m_document, m_pages)) {
        catalog.replaceKey("/Outlines", *outline);
        catalog.replaceKey("/PageMode", QPDFObjectHandle::newName("/UseOutlines"));
    }
    if (const auto names = m_links.names(m_pages))
        catalog.replaceKey("/Names", *names);
}

/// What the file without the structure must say so that the structure can be written behind it.
void FileBuilder::announceTags()
{
    m_tags->finish();
    m_structureRoot = m_pdf.makeIndirectObject(QPDFObjectHandle::parse("<</Type/StructTreeRoot>>"));
    QPDFObjectHandle catalog = m_pdf.getRoot();
    catalog.replaceKey("/MarkInfo", QPDFObjectHandle::parse("<</Marked true>>"));
    catalog.replaceKey("/StructTreeRoot", m_structureRoot);
    qint64 key = 0;
    for (QPDFObjectHandle page : m_pages.pages()) {
        page.replaceKey("/StructParents", QPDFObjectHandle::newInteger(key++));
        page.replaceKey("/Tabs", QPDFObjectHandle::newName("/S"));
    }
    for (QPDFObjectHandle annotation : m_annotations)
        annotation.replaceKey("/StructParent", QPDFObjectHandle::newInteger(key++));
    const QPDFObjectHandle id = QPDFObjectHandle::newString(m_contents.result().toStdString());
    m_pdf.getTrailer().replaceKey("/ID", QPDFObjectHandle::newArray(std::vector {id, id}));
}

void FileBuilder::writeStructure(QPDFWriter &writer, PdfFile &file)
{
    const auto numberOf = [&writer](const QPDFObjectHandle &object) {
        return writer.getRenumberedObjGen(object.getObjGen()).getObj();
    };
    WrittenFile written;
    written.catalog = numberOf(m_pdf.getRoot());
    written.info = numberOf(m_pdf.getTrailer().getKey("/Info"));
    written.structureRoot = numberOf(m_structureRoot);
    for (const QPDFObjectHandle &page : m_pages.pages())
        written.pages.push_back(numberOf(page));
    for (const QPDFObjectHandle &annotation : m_annotations)
        written.annotations.push_back(numberOf(annotation));
    const auto [last, place] = *writer.getWrittenXRefTable().rbegin(); // the cross-reference stream itself
    written.nextObject = last.getObj() + 1;
    written.crossReference = place.getOffset();
    written.fileId = m_contents.result().toHex().toStdString();
    StructureSection(m_tags->tree(), written, m_compression, file).write();
}

} // namespace

PdfError::PdfError(const QString &message)
    : std::runtime_error(message.toStdString())
    , m_message(message)
{
}

FileReplacement pdfReplacement(const QString &fileName)
{
    return {QStringLiteral("PDF file"), fileName};
}

void writePdf(const Document &document, const QString &fileName, const PdfOptions &options)
{
    FileReplacement file = pdfReplacement(fileName);
    writePdf(document, file, options);
    if (!file.commit())
        throw PdfError(file.failure());
}

void writePdf(const Document &document, FileReplacement &replacement, const PdfOptions &options)
{
    if (!document.isWhole) {
        throw PdfError(replacement.failureText(
            QStringLiteral("The report is not complete. Run the report again and let it finish.")));
    }
    PdfFile file(replacement);
    try {
        FileBuilder(document, options).write(file);
    } catch (const PdfError &) {
        throw;
    } catch (const std::exception &error) {
        throw PdfError(replacement.failureText(
            QStringLiteral("It could not be put together: %1. Please report this with the definition of the report.")
                .arg(QString::fromUtf8(error.what()))));
    }
    file.complete();
}

} // namespace corvane
