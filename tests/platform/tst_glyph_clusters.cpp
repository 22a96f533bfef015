#include "platform/pdf/glyph_clusters.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

/// Stands in a row's glyphs for one that no character of the font leads to.
constexpr char16_t kUnknown = u'?';

QString described(const std::vector<GlyphCluster> &clusters, QStringView text)
{
    QStringList parts;
    for (const GlyphCluster &cluster : clusters)
        parts << QStringLiteral("%1:%2").arg(cluster.glyphEnd - cluster.glyphBegin)
                     .arg(text.sliced(cluster.textBegin, cluster.textEnd - cluster.textBegin));
    return parts.join(u' ');
}

} // namespace

class tst_glyph_clusters : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void glyphsFindTheirLetters_data();
    void glyphsFindTheirLetters();
};

void tst_glyph_clusters::glyphsFindTheirLetters_data()
{
    QTest::addColumn<QString>("glyphs"); // by the characters that lead to them
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("clusters"); // number of glyphs and their letters

    const auto row = [](const char *name, const char16_t *glyphs, const char16_t *text, const char16_t *clusters) {
        QTest::newRow(name) << QString::fromUtf16(glyphs) << QString::fromUtf16(text) << QString::fromUtf16(clusters);
    };
    row("letter by letter", u"abc", u"abc", u"1:a 1:b 1:c");
    row("a ligature", u"o\ufb03ce", u"office", u"1:o 1:ffi 1:c 1:e");
    row("two letters of one glyph tell themselves apart", u"\u00b5", u"\u03bc", u"1:\u03bc");
    row("a composed letter", u"\u00e9a", u"e\u0301a", u"1:e\u0301 1:a");
    row("a mark set apart from its letter", u"x\u0304y", u"x\u0304y", u"2:x\u0304 1:y");
    row("Arabic forms", u"\ufee3\ufeae", u"\u0645\u0631", u"1:\u0645 1:\u0631");
    row("an unknown form between known ones", u"a?c", u"abc", u"1:a 1:b 1:c");
    row("an unknown ligature between known letters", u"a?d", u"abcd", u"1:a 1:bc 1:d");
    row("only unknown forms", u"???", u"abc", u"1:a 1:b 1:c");
    row("a letter drawn in two parts", u"a??", u"ab", u"1:a 2:b");
    row("glyphs in another order", u"ba", u"ab", u"1:a 1:b");
    row("a letter that leaves no glyph", u"ab", u"a\u200cb", u"1:a\u200c 1:b");
    row("more letters than ligatures explain", u"?", u"abcdefgh", u"1:abcdefgh");
    row("beyond the first plane", u"\xd835\xdd38!", u"\xd835\xdd38!", u"1:\xd835\xdd38 1:!");
    row("no letters", u"ab", u"", u"2:");
    row("no glyphs", u"", u"ab", u"");
}

void tst_glyph_clusters::glyphsFindTheirLetters()
{
    QFETCH(QString, glyphs);
    QFETCH(QString, text);
    QFETCH(QString, clusters);
    FontLibrary library;
    FontProgram font(library.face(QStringLiteral("DejaVu Sans"), false));
    quint32 unknown = 1;
    while (!font.glyphText(unknown).isEmpty())
        ++unknown;
    std::vector<quint32> numbers;
    for (const char32_t c : glyphs.toStdU32String())
        numbers.push_back(c == kUnknown ? unknown : font.nominalGlyph(c));
    QCOMPARE(described(glyphClusters(font, numbers, text), text), clusters);
}

QTEST_MAIN(tst_glyph_clusters)
#include "tst_glyph_clusters.moc"
