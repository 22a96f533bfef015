#include "platform/engine/page_reader.h"

#include <utility>

namespace corvane {

namespace {

struct Paper
{
    QStringView name;
    qint32 width; ///< in twips, upright
    qint32 height;
};

constexpr Paper kPapers[] = {{u"Letter", 12240, 15840}, {u"Legal", 12240, 20160},
    {u"Executive", 10440, 15120}, {u"Tabloid", 15840, 24480}, {u"A3", 16838, 23811},
    {u"A4", 11906, 16838}, {u"A5", 8391, 11906}};
constexpr QStringView kOrientations[] = {u"portrait", u"landscape"};

/// Less would hold no word.
constexpr Twips kLeastRoom{360};

void readNamedPaper(const AttributeReader &reader, PageSetup &page)
{
    std::vector<QStringView> names;
    for (const Paper &paper : kPapers)
        names.push_back(paper.name);
    const Paper &paper = kPapers[std::max(0, reader.choice("paper", names))];
    page.paperWidth = Twips(paper.width);
    page.paperHeight = Twips(paper.height);
    if (reader.choice("orientation", kOrientations) == 1)
        std::swap(page.paperWidth, page.paperHeight);
}

void readOwnPaper(const AttributeReader &reader, PageSetup &page)
{
    if (!reader.has("width") || !reader.has("height"))
        reader.fail(QStringLiteral("<Page> needs both \"width\" and \"height\", or \"paper\"."));
    for (const char *other : {"paper", "orientation"}) {
        if (reader.has(other))
            reader.fail(other, QStringLiteral("\"width\" and \"height\" give the paper already."));
    }
    page.paperWidth = *reader.length("width");
    page.paperHeight = *reader.length("height");
}

void readMargins(const AttributeReader &reader, PageSetup &page)
{
    page.left = reader.length("left").value_or(page.left);
    page.top = reader.length("top").value_or(page.top);
    page.right = reader.length("right").value_or(page.right);
    page.bottom = reader.length("bottom").value_or(page.bottom);
    page.columns = reader.count("columns", 1, 20).value_or(1);
    page.columnGap = reader.length("columnGap").value_or(page.columnGap);
    if (sectionWidth(page, SectionKind::Detail) < kLeastRoom || bodyHeight(page) < kLeastRoom)
        reader.fail(QStringLiteral("Margins and column gaps leave less than 0.25in of the paper."));
}

} // namespace

Twips sectionWidth(const PageSetup &page, SectionKind kind)
{
    const Twips whole = page.paperWidth - page.left - page.right;
    const bool isInColumns = kind == SectionKind::Detail || kind == SectionKind::GroupHeader
        || kind == SectionKind::GroupFooter;
    return isInColumns ? (whole - page.columnGap * (page.columns - 1)) / page.columns : whole;
}

Twips bodyHeight(const PageSetup &page)
{
    return page.paperHeight - page.top - page.bottom;
}

PageSetup readPage(const ReportSource &source, const XmlElement *element)
{
    PageSetup page;
    if (!element)
        return page;
    const AttributeReader reader(source, *element);
    if (reader.has("width") || reader.has("height"))
        readOwnPaper(reader, page);
    else
        readNamedPaper(reader, page);
    readMargins(reader, page);
    return page;
}

} // namespace corvane
