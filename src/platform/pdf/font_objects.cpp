#include "platform/pdf/font_objects.h"

#include "platform/pdf/page_content.h"

#include <qpdf/Buffer.hh>

#include <QtCore/QCryptographicHash>

#include <cmath>
#include <map>

namespace corvane {

namespace {

using Object = QPDFObjectHandle;

/// A CMap may list so many mappings at a time (Adobe Technical Note 5014).
constexpr size_t kMappingsAtOnce = 100;
constexpr int kTagLength = 6;
constexpr int kBoldWeight = 600;

enum FontFlag : int { FixedPitch = 1, Symbolic = 1 << 2, Italic = 1 << 6, ForceBold = 1 << 18 };

Object name(const std::string &text)
{
    return Object::newName("/" + text);
}

Object real(double value)
{
    return Object::newReal(value, 2);
}

Object systemInfo()
{
    Object info = Object::newDictionary();
    info.replaceKey("/Registry", Object::newString("Adobe"));
    info.replaceKey("/Ordering", Object::newString("Identity"));
    info.replaceKey("/Supplement", Object::newInteger(0));
    return info;
}

std::string hexOf(quint32 value, int digits)
{
    return QByteArray::number(value, 16).rightJustified(digits, '0').toUpper().toStdString();
}

std::string utf16Hex(QStringView text)
{
    std::string hex;
    for (const QChar c : text)
        hex += hexOf(c.unicode(), 4);
    return hex;
}

using Mappings = std::vector<std::string>;

/// A CMap of one-byte codes; one of CIDs without mappings leads to the codes themselves.
std::string cmap(const std::string &cmapName, bool isToUnicode, const Mappings &mappings)
{
    const char *operation = isToUnicode ? "bfchar\n" : "cidchar\n";
    std::string text = "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                       "/CIDSystemInfo <</Registry (Adobe)/Ordering ("
        + std::string(isToUnicode ? "UCS" : "Identity") + ")/Supplement 0>> def\n/CMapName /" + cmapName
        + " def\n/CMapType " + (isToUnicode ? "2" : "1")
        + " def\n1 begincodespacerange\n<00> <FF>\nendcodespacerange\n";
    if (!isToUnicode && mappings.empty())
        text += "1 begincidrange\n<00> <FF> 0\nendcidrange\n";
    for (size_t begin = 0; begin < mappings.size(); begin += kMappingsAtOnce) {
        const size_t end = std::min(begin + kMappingsAtOnce, mappings.size());
        text += std::to_string(end - begin) + " begin" + operation;
        for (size_t i = begin; i < end; ++i)
            text += mappings[i];
        text += std::string("end") + operation;
    }
    return text + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
}

Object toUnicode(QPDF &pdf, CompressionQueue &compression, const CodedFont &font)
{
    Mappings mappings;
    for (size_t code = 0; code < font.glyphs.size(); ++code) {
        if (!font.glyphs[code].text.isEmpty())
            mappings.push_back("<" + hexOf(quint32(code), 2) + "> <" + utf16Hex(font.glyphs[code].text) + ">\n");
    }
    return compressedStream(pdf, compression, cmap("Corvane-Text", true, mappings));
}

/// The glyphs that these fonts show, sorted.
std::vector<quint32> glyphsOf(std::span<const CodedFont *const> fonts)
{
    std::vector<quint32> glyphs;
    for (const CodedFont *font : fonts) {
        for (const CodedGlyph &glyph : font->glyphs) {
            if (glyph.isUsed)
                glyphs.push_back(glyph.glyph);
        }
    }
    std::ranges::sort(glyphs);
    glyphs.erase(std::unique(glyphs.begin(), glyphs.end()), glyphs.end());
    return glyphs;
}

/// Six letters that differ for another set of glyphs (ISO 32000-1, 9.6.4).
std::string subsetTag(const QByteArray &fontName, std::span<const quint32> glyphs)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(fontName);
    for (const quint32 glyph : glyphs)
        hash.addData(QByteArray::number(glyph).append(' '));
    const QByteArray digest = hash.result();
    std::string tag;
    for (int i = 0; i < kTagLength; ++i)
        tag += char('A' + quint8(digest[i]) % 26);
    return tag;
}

/// An embedded font file: its descriptor and where its glyphs went.
struct EmbeddedFile {
    Object descriptor;
    std::string baseFont;
    std::map<quint32, quint32> placed; ///< number in the file by glyph of the face
};

/// Makes the fonts of the file. CIDs stay below 256, as codes do: mupdf loses the text of larger ones.
/// With TrueType outlines a CID is the code itself, and a map leads to the glyph of a file that all
/// fonts of the face share. With CFF outlines, which know no such map, a CID is the glyph's number in a
/// file of this font alone.
class FontBuilder
{
public:
    FontBuilder(QPDF &pdf, CompressionQueue &compression, FontCodes &codes)
        : m_pdf(pdf)
        , m_compression(compression)
        , m_codes(codes)
    {
    }

    Object font(size_t index);

private:
    std::optional<EmbeddedFile> embed(quint16 face, std::span<const CodedFont *const> fonts);
    const std::optional<EmbeddedFile> &sharedFile(quint16 face);
    Object descriptor(const FontProgram &program, const std::string &baseFont, const QByteArray &file);
    Object trueTypeFont(const CodedFont &coded, const EmbeddedFile &file);
    Object cffFont(const CodedFont &coded, const EmbeddedFile &file, size_t index);
    Object descendant(const char *type, const FontFace &face, const EmbeddedFile &file,
        const std::map<quint32, quint32> &glyphsByCid);
    Object compositeFont(const CodedFont &coded, const std::string &baseFont, const Object &encoding,
        const Object &descendant);
    Object encoding(const std::string &cmapName, const Mappings &mappings);
    Object boxFont(const CodedFont &coded);

    QPDF &m_pdf;
    CompressionQueue &m_compression;
    FontCodes &m_codes;
    std::map<quint16, std::optional<EmbeddedFile>> m_shared; ///< by face
    std::optional<Object> m_codesAsCids;
};

Object FontBuilder::font(size_t index)
{
    const CodedFont &coded = m_codes.fonts()[index];
    if (m_codes.face(coded.face).program().hasCffOutlines()) {
        const std::array only {&coded};
        const std::optional<EmbeddedFile> file = embed(coded.face, only);
        return m_pdf.makeIndirectObject(file ? cffFont(coded, *file, index) : boxFont(coded));
    }
    const std::optional<EmbeddedFile> &file = sharedFile(coded.face);
    return m_pdf.makeIndirectObject(file ? trueTypeFont(coded, *file) : boxFont(coded));
}

const std::optional<EmbeddedFile> &FontBuilder::sharedFile(quint16 face)
{
    const auto known = m_shared.find(face);
    if (known != m_shared.end())
        return known->second;
    std::vector<const CodedFont *> fonts;
    for (const CodedFont &font : m_codes.fonts()) {
        if (font.face == face)
            fonts.push_back(&font);
    }
    return m_shared[face] = embed(face, fonts);
}

std::optional<EmbeddedFile> FontBuilder::embed(quint16 face, std::span<const CodedFont *const> fonts)
{
    const FontProgram &program = m_codes.face(face).program();
    const std::vector<quint32> glyphs = glyphsOf(fonts);
    std::optional<FontSubset> subset = program.subset(glyphs);
    if (!subset)
        return std::nullopt;
    const QByteArray fontName = program.metrics().postScriptName;
    const std::string baseFont = subsetTag(fontName, glyphs) + "+" + fontName.toStdString();
    return EmbeddedFile {descriptor(program, baseFont, subset->file), baseFont, std::move(subset->placed)};
}

Object FontBuilder::descriptor(const FontProgram &program, const std::string &baseFont, const QByteArray &file)
{
    const FontMetrics metrics = program.metrics();
    const double toThousandths = 1000.0 / program.face().unitsPerEm();
    int flags = Symbolic;
    if (metrics.isFixedPitch)
        flags |= FixedPitch;
    if (metrics.italicAngle != 0)
        flags |= Italic;
    if (metrics.weight >= kBoldWeight)
        flags |= ForceBold;
    Object box = Object::newArray();
    for (const double side : metrics.box)
        box.appendItem(real(side));

    Object stream = compressedStream(m_pdf, m_compression, {file.constData(), size_t(file.size())});
    if (program.hasCffOutlines())
        stream.getDict().replaceKey("/Subtype", name("OpenType"));
    else
        stream.getDict().replaceKey("/Length1", Object::newInteger(file.size()));

    Object descriptor = Object::newDictionary();
    descriptor.replaceKey("/Type", name("FontDescriptor"));
    descriptor.replaceKey("/FontName", name(baseFont));
    descriptor.replaceKey("/Flags", Object::newInteger(flags));
    descriptor.replaceKey("/FontBBox", box);
    descriptor.replaceKey("/ItalicAngle", real(metrics.italicAngle));
    descriptor.replaceKey("/Ascent", real(program.face().ascent() * toThousandths));
    descriptor.replaceKey("/Descent", real(-program.face().descent() * toThousandths));
    descriptor.replaceKey("/CapHeight", real(metrics.capHeight));
    // No font file tells its stems; 80 is a regular weight's and 140 a bold one's.
    descriptor.replaceKey("/StemV", Object::newInteger(80 + (metrics.weight - 400) / 5));
    descriptor.replaceKey(program.hasCffOutlines() ? "/FontFile3" : "/FontFile2", stream);
    return m_pdf.makeIndirectObject(descriptor);
}

Object FontBuilder::trueTypeFont(const CodedFont &coded, const EmbeddedFile &file)
{
    std::map<quint32, quint32> glyphsByCid;
    std::string toGlyph(2 * coded.glyphs.size(), '\0');
    for (size_t code = 0; code < coded.glyphs.size(); ++code) {
        if (!coded.glyphs[code].isUsed)
            continue;
        const quint32 glyph = coded.glyphs[code].glyph;
        glyphsByCid[quint32(code)] = glyph;
        toGlyph[2 * code] = char(file.placed.at(glyph) >> 8);
        toGlyph[2 * code + 1] = char(file.placed.at(glyph) & 0xff);
    }
    Object font = descendant("CIDFontType2", m_codes.face(coded.face).face(), file, glyphsByCid);
    font.replaceKey("/CIDToGIDMap", compressedStream(m_pdf, m_compression, toGlyph));
    if (!m_codesAsCids)
        m_codesAsCids = encoding("Corvane-Codes", {});
    return compositeFont(coded, file.baseFont, *m_codesAsCids, font);
}

Object FontBuilder::cffFont(const CodedFont &coded, const EmbeddedFile &file, size_t index)
{
    std::map<quint32, quint32> glyphsByCid;
    Mappings mappings;
    for (size_t code = 0; code < coded.glyphs.size(); ++code) {
        if (!coded.glyphs[code].isUsed)
            continue;
        const quint32 cid = file.placed.at(coded.glyphs[code].glyph);
        glyphsByCid[cid] = coded.glyphs[code].glyph;
        mappings.push_back("<" + hexOf(quint32(code), 2) + "> " + std::to_string(cid) + "\n");
    }
    const std::string cmapName = "Corvane-" + PageContent::fontName(index);
    return compositeFont(coded, file.baseFont + "-" + cmapName, encoding(cmapName, mappings),
        descendant("CIDFontType0", m_codes.face(coded.face).face(), file, glyphsByCid));
}

Object FontBuilder::descendant(const char *type, const FontFace &face, const EmbeddedFile &file,
    const std::map<quint32, quint32> &glyphsByCid)
{
    Object widths = Object::newArray();
    Object stretch;
    quint32 next = 0;
    for (const auto &[cid, glyph] : glyphsByCid) {
        if (!stretch.isInitialized() || cid != next) {
            stretch = Object::newArray();
            widths.appendItem(Object::newInteger(cid));
            widths.appendItem(stretch);
        }
        stretch.appendItem(real(face.advance(glyph) * 1000.0 / face.unitsPerEm()));
        next = cid + 1;
    }
    Object font = Object::newDictionary();
    font.replaceKey("/Type", name("Font"));
    font.replaceKey("/Subtype", name(type));
    font.replaceKey("/BaseFont", name(file.baseFont));
    font.replaceKey("/CIDSystemInfo", systemInfo());
    font.replaceKey("/FontDescriptor", file.descriptor);
    font.replaceKey("/W", widths);
    return m_pdf.makeIndirectObject(font);
}

Object FontBuilder::encoding(const std::string &cmapName, const Mappings &mappings)
{
    Object stream = compressedStream(m_pdf, m_compression, cmap(cmapName, false, mappings));
    stream.getDict().replaceKey("/Type", name("CMap"));
    stream.getDict().replaceKey("/CMapName", name(cmapName));
    stream.getDict().replaceKey("/CIDSystemInfo", systemInfo());
    return stream;
}

Object FontBuilder::compositeFont(
    const CodedFont &coded, const std::string &baseFont, const Object &encoding, const Object &descendant)
{
    Object font = Object::newDictionary();
    font.replaceKey("/Type", name("Font"));
    font.replaceKey("/Subtype", name("Type0"));
    font.replaceKey("/BaseFont", name(baseFont));
    font.replaceKey("/Encoding", encoding);
    font.replaceKey("/DescendantFonts", Object::newArray(std::vector<Object> {descendant}));
    font.replaceKey("/ToUnicode", toUnicode(m_pdf, m_compression, coded));
    return font;
}

/// A font that has pictures in place of outlines cannot be embedded. Its glyphs become empty boxes of
/// their widths (a Type 3 font, 9.6.5), so that a reader sees that something stands there and its text
/// can still be copied and found.
Object FontBuilder::boxFont(const CodedFont &coded)
{
    const FontFace &face = m_codes.face(coded.face).face();
    const double toThousandths = 1000.0 / face.unitsPerEm();
    Object procedures = Object::newDictionary();
    Object widths = Object::newArray();
    Object differences = Object::newArray(std::vector<Object> {Object::newInteger(0)});
    for (size_t code = 0; code < coded.glyphs.size(); ++code) {
        const CodedGlyph &glyph = coded.glyphs[code];
        const auto width = glyph.isUsed ? int(std::lround(face.advance(glyph.glyph) * toThousandths)) : 0;
        widths.appendItem(Object::newInteger(width));
        const std::string glyphName = glyph.isUsed ? "g" + std::to_string(code) : ".notdef";
        differences.appendItem(name(glyphName));
        if (!glyph.isUsed)
            continue;
        const std::string box = std::to_string(width) + " 0 d0 40 w 60 20 "
            + std::to_string(std::max(width - 120, 0)) + " 660 re S\n";
        procedures.replaceKey("/" + glyphName, compressedStream(m_pdf, m_compression, box));
    }
    Object encoding = Object::newDictionary();
    encoding.replaceKey("/Type", name("Encoding"));
    encoding.replaceKey("/Differences", differences);

    Object font = Object::newDictionary();
    font.replaceKey("/Type", name("Font"));
    font.replaceKey("/Subtype", name("Type3"));
    font.replaceKey("/FontBBox", Object::parse("[0 0 0 0]"));
    font.replaceKey("/FontMatrix", Object::parse("[.001 0 0 .001 0 0]"));
    font.replaceKey("/FirstChar", Object::newInteger(0));
    font.replaceKey("/LastChar", Object::newInteger(qint64(coded.glyphs.size()) - 1));
    font.replaceKey("/Widths", widths);
    font.replaceKey("/CharProcs", procedures);
    font.replaceKey("/Encoding", encoding);
    font.replaceKey("/Resources", Object::newDictionary());
    font.replaceKey("/ToUnicode", toUnicode(m_pdf, m_compression, coded));
    return font;
}

} // namespace

QPDFObjectHandle compressedStream(QPDF &pdf, CompressionQueue &compression, std::string_view bytes)
{
    Object stream = Object::newStream(&pdf);
    compression.add(bytes, [stream](const std::shared_ptr<Buffer> &compressed) mutable {
        stream.replaceStreamData(compressed, name("FlateDecode"), Object::newNull());
    });
    return stream;
}

QPDFObjectHandle fontResources(QPDF &pdf, CompressionQueue &compression, FontCodes &codes)
{
    FontBuilder builder(pdf, compression, codes);
    Object fonts = Object::newDictionary();
    for (size_t i = 0; i < codes.fonts().size(); ++i)
        fonts.replaceKey("/" + PageContent::fontName(i), builder.font(i));
    return fonts;
}

} // namespace corvane
