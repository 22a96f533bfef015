#include "platform/pdf/font_program.h"

#include "platform/pdf/cff_charset.h"

#include <hb-ot.h>
#include <hb-subset.h>

#include <QtCore/QtEndian>

namespace corvane {

namespace {

constexpr hb_tag_t kCff = HB_TAG('C', 'F', 'F', ' ');
constexpr hb_tag_t kGlyf = HB_TAG('g', 'l', 'y', 'f');
constexpr hb_tag_t kHead = HB_TAG('h', 'e', 'a', 'd');

/// Tables that are embedded. Layout, names and hinting stay out: a page needs outlines and widths only.
constexpr std::array kEmbedded {kCff, kGlyf, kHead, HB_TAG('l', 'o', 'c', 'a'), HB_TAG('h', 'h', 'e', 'a'),
    HB_TAG('h', 'm', 't', 'x'), HB_TAG('m', 'a', 'x', 'p')};
/// Tables that names, metrics and characters are read from.
constexpr std::array kRead {kHead, HB_TAG('h', 'h', 'e', 'a'), HB_TAG('m', 'a', 'x', 'p'),
    HB_TAG('c', 'm', 'a', 'p'), HB_TAG('n', 'a', 'm', 'e'), HB_TAG('O', 'S', '/', '2'),
    HB_TAG('p', 'o', 's', 't')};

template<auto destroy>
struct Release {
    void operator()(auto *object) const { destroy(object); }
};
using Face = std::unique_ptr<hb_face_t, Release<hb_face_destroy>>;

QByteArray tableOf(const QRawFont &font, hb_tag_t tag)
{
    std::array<char, 5> name {};
    qToBigEndian(tag, name.data());
    return font.fontTable(name.data());
}

hb_blob_t *blobOf(QByteArray bytes)
{
    auto *kept = new QByteArray(std::move(bytes));
    return hb_blob_create(kept->constData(), unsigned(kept->size()), HB_MEMORY_MODE_READONLY, kept,
        [](void *owner) { delete static_cast<QByteArray *>(owner); });
}

/// Tables as a face that keeps them: the subsetter reads on in tables that it has handed back.
hb_face_t *faceOf(const QRawFont &font, std::span<const hb_tag_t> tags)
{
    hb_face_t *face = hb_face_builder_create();
    for (const hb_tag_t tag : tags) {
        QByteArray table = tableOf(font, tag);
        if (table.isEmpty())
            continue;
        hb_blob_t *blob = blobOf(std::move(table));
        hb_face_builder_add_table(face, tag, blob);
        hb_blob_destroy(blob);
    }
    return face;
}

QByteArray bytesOf(hb_blob_t *blob)
{
    unsigned size = 0;
    const char *data = hb_blob_get_data(blob, &size);
    QByteArray bytes(data, size);
    hb_blob_destroy(blob);
    return bytes;
}

QByteArray postScriptName(hb_face_t *tables, const FontFace &face)
{
    std::array<char, 128> name {};
    auto size = unsigned(name.size());
    hb_ot_name_get_utf8(tables, HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &size, name.data());
    QByteArray result(name.data(), size);
    if (result.isEmpty())
        result = QString(face.family() + u'-' + face.styleName()).toLatin1();
    result.replace(' ', "");
    return result;
}

/// Forms that stand for other letters: Latin, Armenian, Hebrew and Arabic ones.
bool isPresentationForm(char32_t c)
{
    return (c >= 0xfb00 && c <= 0xfdff) || (c >= 0xfe70 && c <= 0xfefc);
}

/// The font file of a subset with CFF outlines whose CIDs are its glyph numbers; empty if damaged.
QByteArray withCidsByGlyph(hb_face_t *subset)
{
    const Face changed(hb_face_builder_create());
    for (const hb_tag_t tag : kEmbedded) {
        QByteArray table = bytesOf(hb_face_reference_table(subset, tag));
        if (tag == kCff && !numberCidsByGlyph(table))
            return {};
        if (table.isEmpty())
            continue;
        hb_blob_t *blob = blobOf(std::move(table));
        hb_face_builder_add_table(changed.get(), tag, blob);
        hb_blob_destroy(blob);
    }
    return bytesOf(hb_face_reference_blob(changed.get()));
}

} // namespace

FontProgram::FontProgram(FontFacePtr face)
    : m_face(std::move(face))
    , m_tables(faceOf(m_face->rawFont(), kRead))
    , m_font(hb_font_create(m_tables.get()))
{
}

void FontProgram::Destroy::operator()(hb_face_t *face) const
{
    hb_face_destroy(face);
}

void FontProgram::Destroy::operator()(hb_font_t *font) const
{
    hb_font_destroy(font);
}

bool FontProgram::hasCffOutlines() const
{
    return !tableOf(m_face->rawFont(), kCff).isEmpty();
}

quint32 FontProgram::nominalGlyph(char32_t character) const
{
    hb_codepoint_t glyph = 0;
    hb_font_get_nominal_glyph(m_font.get(), character, &glyph);
    return glyph;
}

FontMetrics FontProgram::metrics() const
{
    FontMetrics metrics;
    metrics.postScriptName = postScriptName(m_tables.get(), *m_face);
    const double toThousandths = 1000.0 / m_face->unitsPerEm();
    const QByteArray head = tableOf(m_face->rawFont(), kHead);
    constexpr qsizetype kBoxOffset = 36;
    for (size_t i = 0; i < 4 && head.size() >= kBoxOffset + 8; ++i)
        metrics.box[i] = qFromBigEndian<qint16>(head.constData() + kBoxOffset + 2 * i) * toThousandths;

    hb_position_t capHeight = 0;
    hb_ot_metrics_get_position_with_fallback(m_font.get(), HB_OT_METRICS_TAG_CAP_HEIGHT, &capHeight);
    metrics.capHeight = capHeight * toThousandths;
    metrics.italicAngle = hb_style_get_value(m_font.get(), HB_STYLE_TAG_SLANT_ANGLE);
    metrics.weight = int(hb_style_get_value(m_font.get(), HB_STYLE_TAG_WEIGHT));
    const QByteArray post = tableOf(m_face->rawFont(), HB_TAG('p', 'o', 's', 't'));
    constexpr qsizetype kFixedPitchOffset = 12;
    metrics.isFixedPitch = post.size() >= kFixedPitchOffset + 4
        && qFromBigEndian<quint32>(post.constData() + kFixedPitchOffset) != 0;
    return metrics;
}

QString FontProgram::glyphText(quint32 glyph)
{
    if (!m_knowsCharacters)
        readCharacters();
    const auto known = m_characters.find(glyph);
    if (known == m_characters.end())
        return {};
    const QString text = QString::fromUcs4(&known->second, 1);
    return isPresentationForm(known->second) ? text.normalized(QString::NormalizationForm_KC) : text;
}

void FontProgram::readCharacters()
{
    m_knowsCharacters = true;
    const std::unique_ptr<hb_set_t, Release<hb_set_destroy>> characters(hb_set_create());
    hb_face_collect_unicodes(m_tables.get(), characters.get());
    for (hb_codepoint_t c = HB_SET_VALUE_INVALID; hb_set_next(characters.get(), &c);) {
        m_characters.emplace(nominalGlyph(c), c); // the lowest of several characters stays
    }
}

std::optional<FontSubset> FontProgram::subset(std::span<const quint32> glyphs) const
{
    const std::unique_ptr<hb_subset_input_t, Release<hb_subset_input_destroy>> input(
        hb_subset_input_create_or_fail());
    if (!input)
        throw std::bad_alloc();
    hb_set_add_sorted_array(hb_subset_input_glyph_set(input.get()), glyphs.data(), unsigned(glyphs.size()));
    hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_NO_HINTING | HB_SUBSET_FLAGS_NOTDEF_OUTLINE);

    const Face whole(faceOf(m_face->rawFont(), kEmbedded));
    const std::unique_ptr<hb_subset_plan_t, Release<hb_subset_plan_destroy>> plan(
        hb_subset_plan_create_or_fail(whole.get(), input.get()));
    const Face small(plan ? hb_subset_plan_execute_or_fail(plan.get()) : nullptr);
    if (!small)
        return std::nullopt;
    const bool isCff = hasCffOutlines();
    const QByteArray outlines = bytesOf(hb_face_reference_table(small.get(), isCff ? kCff : kGlyf));
    if (outlines.isEmpty())
        return std::nullopt;
    const hb_map_t *newGlyphs = hb_subset_plan_old_to_new_glyph_mapping(plan.get());
    FontSubset subset {isCff ? withCidsByGlyph(small.get()) : bytesOf(hb_face_reference_blob(small.get())), {}};
    for (const quint32 glyph : glyphs) {
        const quint32 placed = hb_map_get(newGlyphs, glyph);
        subset.placed[glyph] = placed == HB_MAP_VALUE_INVALID ? 0 : placed;
    }
    return subset.file.isEmpty() ? std::nullopt : std::optional(std::move(subset));
}

} // namespace corvane
