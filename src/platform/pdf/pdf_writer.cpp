#include "platform/pdf/pdf_writer.h"

#include "platform/pdf/font_objects.h"
#include "platform/pdf/metadata.h"
#include "platform/pdf/page_content.h"
#include "platform/pdf/page_tree.h"
#include "platform/pdf/pdf_file.h"

#include <qpdf/QPDFWriter.hh>

namespace corvane {

namespace {

/// Pages first, since only they know which glyphs the fonts must hold.
void buildPages(QPDF &pdf, const Document &document)
{
    Compressor compressor;
    FontCodes codes(document.faces);
    PageContent content(document, codes);
    PageTree pages(pdf, document);
    // Readers refuse a file without pages: a document without any gets a blank one.
    const int count = std::max(document.pageCount(), 1);
    for (int i = 0; i < count; ++i)
        pages.append(compressedStream(pdf, compressor, content.write(i)));
    pages.finish(fontResources(pdf, compressor, codes));

    QPDFObjectHandle catalog = pdf.getRoot();
    catalog.replaceKey("/Pages", pages.root());
    if (const auto outline = pages.outline(document)) {
        catalog.replaceKey("/Outlines", *outline);
        catalog.replaceKey("/PageMode", QPDFObjectHandle::newName("/UseOutlines"));
    }
}

void describe(QPDF &pdf, const DocumentInfo &info, const QString &producer)
{
    pdf.getTrailer().replaceKey("/Info", infoDictionary(pdf, info, producer));
    QPDFObjectHandle catalog = pdf.getRoot();
    catalog.replaceKey("/Metadata", metadataStream(pdf, info, producer));
    catalog.replaceKey("/Lang", QPDFObjectHandle::newString("en-US"));
    if (!info.title.isEmpty())
        catalog.replaceKey("/ViewerPreferences", QPDFObjectHandle::parse("<</DisplayDocTitle true>>"));
}

void writeContainer(QPDF &pdf, PdfFile &file)
{
    QPDFWriter writer(pdf);
    writer.setOutputPipeline(&file);
    writer.setMinimumPDFVersion("1.7");
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.setCompressStreams(true);
    writer.setDecodeLevel(qpdf_dl_none); // our streams are compressed as they should be
    writer.setDeterministicID(true);
    writer.write();
}

} // namespace

PdfError::PdfError(const QString &message)
    : std::runtime_error(message.toStdString())
    , m_message(message)
{
}

void writePdf(const Document &document, const QString &fileName, const PdfOptions &options)
{
    if (!document.isWhole) {
        throw PdfError(QStringLiteral("The PDF file \"%1\" was not saved. The report is not complete. "
                                      "Run the report again and let it finish.").arg(fileName));
    }
    PdfFile file(fileName);
    try {
        QPDF pdf;
        pdf.emptyPDF();
        buildPages(pdf, document);
        describe(pdf, document.info, options.producer);
        writeContainer(pdf, file);
    } catch (const PdfError &) {
        throw;
    } catch (const std::exception &error) {
        throw PdfError(QStringLiteral("The PDF file \"%1\" was not saved. It could not be put together: %2. "
                                      "Please report this with the definition of the report.")
                           .arg(fileName, QString::fromUtf8(error.what())));
    }
    file.commit();
}

} // namespace corvane
