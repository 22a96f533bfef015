#include "platform/engine/field_reader.h"

#include "platform/engine/layout_expression.h"
#include "platform/engine/report_picture.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr QStringView kFits[] = {u"contain", u"stretch"};
constexpr QStringView kBarcodes[] = {u"code128", u"qr"};
constexpr Twips kThinLine{10};

/// What reading any field needs: its attributes and what they may name.
struct FieldReading
{
    AttributeReader reader;
    const StyleSheet &styles;
    const std::vector<Group> &groups;

    ExpressionPtr expression(const char *name) const
    {
        return readExpression(reader, name, groups);
    }
};

void readLabel(const FieldReading &reading, Field &field)
{
    field.text = reading.reader.text("text");
    field.look.format.clear();
}

void readData(const FieldReading &reading, Field &field)
{
    field.value = Expression::ofColumn(reading.reader.name("column"));
}

void readValue(const FieldReading &reading, Field &field)
{
    field.value = reading.expression("value");
}

void readLine(const FieldReading &reading, Field &field)
{
    const AttributeReader &reader = reading.reader;
    if (reader.has("width") == reader.has("height"))
        reader.fail(QStringLiteral(
            "A <Line> has either a \"width\", and lies, or a \"height\", and stands."));
    const Twips thickness = reader.length("thickness").value_or(kThinLine);
    if (thickness == Twips())
        reader.fail("thickness", QStringLiteral("it must be more than 0."));
    (reader.has("width") ? field.height : field.width) = thickness;
}

void readRectangle(const FieldReading &, Field &field)
{
    const Border &border = field.look.border;
    const Border none{{}, {}, {}, {}, border.colour};
    if (border == none && !field.look.background)
        field.look.border = {kThinLine, kThinLine, kThinLine, kThinLine, border.colour};
}

void readPictureField(const FieldReading &reading, Field &field)
{
    const AttributeReader &reader = reading.reader;
    const int sources = int(reader.has("file")) + int(reader.has("column"))
        + int(reader.element().textOffset >= 0);
    if (sources != 1)
        reader.fail(
            QStringLiteral("A <Picture> has one of \"file\", \"column\" and base64 text in it."));
    if (reader.has("column"))
        readData(reading, field);
    else
        field.picture = readPicture(reader);
    field.description = reader.text("description");
    field.fit = PictureFit(std::max(0, reader.choice("fit", kFits)));
}

void readBarcode(const FieldReading &reading, Field &field)
{
    field.barcode = BarcodeKind(reading.reader.choice("type", kBarcodes));
    field.showText = reading.reader.flag("showText").value_or(false);
    if (field.showText && field.barcode == BarcodeKind::Qr)
        reading.reader.fail("showText",
            QStringLiteral("QR codes have no text below them; add a field of its own."));
    readValue(reading, field);
}

void readSubreport(const FieldReading &reading, Field &field)
{
    const AttributeReader &reader = reading.reader;
    if (!reader.has("name") && !reader.has("report")) {
        reader.fail(QStringLiteral(
            "A <Subreport> needs the \"report\" that it shows, or a \"name\" by which the program "
            "finds it, such as \"SubreportOne\"."));
    }
    field.layoutName = reader.name("report");
    for (const XmlElement &child : reader.element().children) {
        const AttributeReader link(reader.source(), child);
        const QString name = link.name("name");
        if (std::ranges::count(field.links, name, &SubreportLink::name))
            link.fail("name", QStringLiteral("this name is taken by another link."));
        field.links.push_back({name, readExpression(link, "value", reading.groups)});
    }
}

struct FieldElement
{
    QStringView name;
    FieldKind kind;
    void (*read)(const FieldReading &reading, Field &field);
};

constexpr FieldElement kFieldElements[] = {
    {u"Label", FieldKind::Label, readLabel},
    {u"Data", FieldKind::Value, readData},
    {u"Expression", FieldKind::Value, readValue},
    {u"Line", FieldKind::Line, readLine},
    {u"Rectangle", FieldKind::Rectangle, readRectangle},
    {u"Picture", FieldKind::Picture, readPictureField},
    {u"Barcode", FieldKind::Barcode, readBarcode},
    {u"CheckMark", FieldKind::CheckMark, readValue},
    {u"Subreport", FieldKind::Subreport, readSubreport},
};

Twips positiveLength(const AttributeReader &reader, const char *name)
{
    const Twips length = reader.length(name).value_or(Twips(1));
    if (length == Twips())
        reader.fail(name, QStringLiteral("it must be more than 0."));
    return length;
}

void readShared(const FieldReading &reading, Field &field)
{
    const AttributeReader &reader = reading.reader;
    field.place = reader.source().placeOf(reader.element().offset);
    field.name = reader.name("name");
    field.x = reader.length("x").value_or(Twips());
    field.y = reader.length("y").value_or(Twips());
    field.width = positiveLength(reader, "width");
    field.height = positiveLength(reader, "height");
    field.visibleWhen = reading.expression("visibleWhen");
    field.link = reading.expression("link");
    field.bookmark = reading.expression("bookmark");
    field.canGrow = reader.flag("canGrow").value_or(true);
    field.canShrink = reader.flag("canShrink").value_or(false);
    field.hideDuplicates = reader.flag("hideDuplicates").value_or(false);
    reading.styles.applyStyle(reader.element(), field.look);
    reading.styles.applyOwn(reader.element(), field.look);
}

/// A condition's style is laid over the field's own look: what it does not say stays.
void readConditions(const FieldReading &reading, Field &field)
{
    for (const XmlElement &child : reading.reader.element().children) {
        if (child.name != u"When")
            continue;
        const AttributeReader when(reading.reader.source(), child);
        ConditionalLook conditional{readExpression(when, "condition", reading.groups), field.look};
        reading.styles.applyStyle(child, conditional.look);
        if (field.kind == FieldKind::Label)
            conditional.look.format.clear();
        field.conditionalLooks.push_back(std::move(conditional));
    }
}

} // namespace

Field readField(const ReportSource &source, const XmlElement &element, const StyleSheet &styles,
    const std::vector<Group> &groups)
{
    const FieldElement &known
        = *std::ranges::find(kFieldElements, element.name, &FieldElement::name);
    const FieldReading reading{AttributeReader(source, element), styles, groups};
    Field field;
    field.kind = known.kind;
    readShared(reading, field);
    known.read(reading, field);
    readConditions(reading, field);
    return field;
}

} // namespace corvane
