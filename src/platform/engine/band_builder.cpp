#include "platform/engine/band_builder.h"

#include "platform/engine/barcodes.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr QChar kEllipsis = u'…';

Twips contentWidth(const FieldPlan &plan, const TextLook &look)
{
    return std::max(plan.field->width - look.look.padding * 2, Twips(1));
}

/// A picture's size in its frame: all of it, or as large as it gets with its proportions.
QRect fitted(const QSize &size, const Field &field, const FieldLook &look)
{
    const int padding = look.padding.count();
    const QSize frame(std::max(field.width.count() - 2 * padding, 1), std::max(field.height.count() - 2 * padding, 1));
    if (field.fit == PictureFit::Stretch || size.isEmpty())
        return QRect({padding, padding}, frame);
    const QSize scaled = size.scaled(frame, Qt::KeepAspectRatio);
    const auto share = [](int slack, int alignment) {
        return alignment == 0 ? 0 : alignment == 1 ? slack / 2 : slack;
    };
    return QRect({padding + share(frame.width() - scaled.width(), int(field.look.horizontal)),
                     padding + share(frame.height() - scaled.height(), int(field.look.vertical))},
        scaled);
}

/// The bands that fit whole into a height.
std::shared_ptr<const Galley> firstBands(const Galley &galley, qint32 height)
{
    auto part = std::make_shared<Galley>();
    for (const Band &band : galley.bands) {
        if (part->height + band.height > height)
            break;
        part->height += band.height;
        part->bands.push_back(band);
    }
    return part;
}

} // namespace

void BandBuilder::build(Band &band, const SectionPlan &plan, RowContext &context)
{
    band.clear();
    band.plan = &plan;
    band.context = &context;
    band.position = context.position();
    for (size_t field = 0; field < plan.fields.size(); ++field)
        addItem(band, field);
    if (context.plan().duplicateSlots() > 0)
        context.shownPosition = context.position();
    settleBand(band);
}

void BandBuilder::rebuild(
    Band &band, const SectionPlan &plan, size_t field, RowContext &context, qint32 height)
{
    band.clear();
    band.plan = &plan;
    band.context = &context;
    band.position = context.position();
    BandItem &item = band.items.emplace_back();
    const FieldPlan &fieldPlan = plan.fields[field];
    item.field = quint16(field);
    item.height = fieldPlan.field->height.count();
    item.look = &fieldPlan.look;
    item.isVisible = context.holds(fieldPlan.visibleWhen);
    if (item.isVisible)
        fill(band, item, fieldPlan);
    const quint32 room = quint32(std::max(
        (height - item.look->look.padding.count() * 2) / item.look->lineHeight.count(), 1));
    if (item.lineCount > room)
        cut(band, item, contentWidth(fieldPlan, *item.look), room);
    item.top = 0;
    item.height = height;
}

void BandBuilder::addItem(Band &band, size_t field)
{
    const FieldPlan &plan = band.plan->fields[field];
    BandItem &item = band.items.emplace_back();
    item.field = quint16(field);
    item.top = plan.top();
    item.height = plan.field->height.count();
    item.look = &plan.look;
    item.textStart = quint32(band.text.size());
    if (band.plan->isPlain) {
        fillValue(band, item, plan);
        breakText(band, item, plan);
        return;
    }
    item.isVisible = band.context->holds(plan.visibleWhen);
    item.isOfPage = plan.isOfPage;
    if (item.isVisible || item.isOfPage)
        fill(band, item, plan);
    else if (plan.field->canShrink)
        item.height = 0;
    if (item.isOfPage) {
        BandExtra &extra = band.needExtra(item);
        for (const int binding : {plan.value, plan.visibleWhen, plan.link}) {
            const auto values = band.context->snapshot(binding);
            extra.running.insert(extra.running.end(), values.begin(), values.end());
        }
        for (const auto &[condition, look] : plan.conditionalLooks) {
            const auto values = band.context->snapshot(condition);
            extra.running.insert(extra.running.end(), values.begin(), values.end());
        }
    }
}

void BandBuilder::fill(Band &band, BandItem &item, const FieldPlan &plan)
{
    for (const auto &[condition, look] : plan.conditionalLooks) {
        if (band.context->holds(condition, false)) {
            item.look = &look;
            break;
        }
    }
    switch (plan.field->kind) {
    case FieldKind::Label:
    case FieldKind::Value:
        fillValue(band, item, plan);
        hideDuplicate(band, item, plan);
        breakText(band, item, plan);
        break;
    case FieldKind::Picture:
        fillPicture(band, item, plan);
        break;
    case FieldKind::Barcode:
        fillBarcode(band, item, plan);
        break;
    case FieldKind::CheckMark:
        fillCheckMark(band, item, plan);
        break;
    case FieldKind::Subreport:
        fillSubreport(band, item, plan);
        break;
    case FieldKind::Line:
    case FieldKind::Rectangle:
        break;
    }
    if (plan.link >= 0 || plan.bookmark >= 0)
        fillReferences(band, item, plan);
}

/// A column without a format goes from the rowset to the band's text without a copy between.
void BandBuilder::fillValue(Band &band, BandItem &item, const FieldPlan &plan)
{
    if (plan.field->kind == FieldKind::Label) {
        band.text += plan.field->text;
    } else if (plan.value >= 0) {
        const int column = band.context->plan().bindings()[size_t(plan.value)].plainColumn;
        if (column >= 0 && item.look->look.format.isEmpty()) {
            appendValueText(band.text, band.context->value(column), m_style);
        } else {
            try {
                band.text += item.look->format.apply(band.context->evaluate(plan.value), m_style);
            } catch (const EvaluationFault &fault) {
                markFaulty(band, item, fault.words());
            }
        }
    }
    item.textLength = quint32(band.text.size()) - item.textStart;
}

void BandBuilder::markFaulty(Band &band, BandItem &item, const QString &words)
{
    item.isFaulty = true;
    band.needExtra(item).fault = words;
    band.text.resize(item.textStart);
    band.text += u'#';
    item.textLength = 1;
}

void BandBuilder::hideDuplicate(Band &band, BandItem &item, const FieldPlan &plan)
{
    if (plan.duplicateSlot < 0)
        return;
    QString &last = band.context->shown[size_t(plan.duplicateSlot)];
    const auto text = QStringView(band.text).sliced(item.textStart);
    item.isDuplicate = band.context->shownPosition + 1 == band.position && last == text;
    last = text.toString();
}

void BandBuilder::breakText(Band &band, BandItem &item, const FieldPlan &plan)
{
    const TextLook &look = *item.look;
    const Field &field = *plan.field;
    const Twips width = contentWidth(plan, look);
    const auto text = QStringView(band.text).sliced(item.textStart);
    const auto units = look.face->plainWidth(text);
    if (units && double(*units) <= width.count() * look.unitsPerTwip) {
        item.lineWidth = Twips::rounded(double(*units) / look.unitsPerTwip).count();
    } else {
        const std::vector<Line> &lines = m_breaker.breakLines(text, *look.face, look.size, width);
        item.firstLine = quint32(band.lines.size());
        item.lineCount = quint32(lines.size());
        band.lines.insert(band.lines.end(), lines.begin(), lines.end());
    }
    const qint32 padding = look.look.padding.count() * 2;
    const qint32 needed
        = item.textLength == 0 ? 0 : look.lineHeight.count() * qint32(item.lines()) + padding;
    if ((needed > item.height && field.canGrow) || (needed < item.height && field.canShrink)) {
        item.height = needed;
    } else if (needed > item.height && item.lineCount > 1) {
        const size_t room = size_t(std::max((item.height - padding) / look.lineHeight.count(), 1));
        if (room < item.lineCount)
            cut(band, item, width, room);
    }
}

/// Keeps the first lines; the last of them ends with an ellipsis, so that nobody takes it for the
/// whole.
void BandBuilder::cut(Band &band, BandItem &item, Twips width, size_t lines)
{
    const TextLook &look = *item.look;
    const Line last = band.lines[item.firstLine + lines - 1];
    const QString text = band.text.sliced(item.textStart, last.begin);
    QString end = band.text.sliced(item.textStart + last.begin, last.end - last.begin);
    std::vector<Line> broken;
    do {
        broken = m_breaker.breakLines(QString(end + kEllipsis), *look.face, look.size, width);
        if (broken.size() > 1)
            end.chop(end.size() > 1 && end.back().isLowSurrogate() ? 2 : 1);
    } while (broken.size() > 1 && !end.isEmpty());
    for (ShapedPiece &piece : broken.front().pieces) {
        piece.begin += last.begin;
        piece.end += last.begin;
    }
    broken.front().begin += last.begin;
    broken.front().end += last.begin;
    band.lines.resize(item.firstLine + lines);
    band.lines.back() = std::move(broken.front());
    item.lineCount = quint32(lines);
    band.text.resize(item.textStart);
    band.text += QString(text + end + kEllipsis);
    item.textLength = quint32(band.text.size()) - item.textStart;
    item.isCut = true;
}

void BandBuilder::fillPicture(Band &band, BandItem &item, const FieldPlan &plan)
{
    QByteArray file = plan.field->picture;
    try {
        if (plan.value >= 0) {
            const Datum datum = band.context->evaluate(plan.value);
            if (datum.isNull())
                return;
            if (datum.kind() != DatumKind::Bytes)
                throw EvaluationFault(QStringLiteral("the column holds no bytes of a picture"));
            file = datum.bytes();
        }
        if (file.isEmpty())
            return;
        const auto added = m_pictures.add(file);
        if (const auto *words = std::get_if<QString>(&added))
            throw EvaluationFault(*words);
        BandExtra &extra = band.needExtra(item);
        extra.picture = int(std::get<quint32>(added));
        extra.pictureFrame = fitted(m_pictures.image(std::get<quint32>(added)).size(), *plan.field, item.look->look);
    } catch (const EvaluationFault &fault) {
        markFaulty(band, item, fault.words());
        breakText(band, item, plan);
    }
}

void BandBuilder::fillBarcode(Band &band, BandItem &item, const FieldPlan &plan)
{
    try {
        const QString value = plan.value < 0 ? plan.field->text
                                             : band.context->evaluate(plan.value).toText(m_style);
        if (value.isEmpty())
            return;
        const auto encoded = encodeBarcode(plan.field->barcode, value);
        if (const auto *words = std::get_if<QString>(&encoded))
            throw EvaluationFault(*words);
        const Twips letters = plan.field->showText ? item.look->lineHeight : Twips();
        const Twips padding = item.look->look.padding;
        auto placed = placeBarcode(plan.field->barcode, std::get<BarcodeModules>(encoded),
            plan.field->width - padding * 2, plan.field->height - letters - padding * 2, item.look->look.colour);
        if (const auto *words = std::get_if<QString>(&placed))
            throw EvaluationFault(*words);
        auto &bars = std::get<std::vector<FilledRect>>(placed);
        for (FilledRect &bar : bars) {
            bar.x += padding.count();
            bar.y += padding.count();
        }
        band.needExtra(item).bars = std::move(bars);
        if (plan.field->showText)
            band.text += value;
    } catch (const EvaluationFault &fault) {
        markFaulty(band, item, fault.words());
    }
    item.textLength = quint32(band.text.size()) - item.textStart;
    if (item.textLength > 0) {
        const qint32 height = item.height;
        breakText(band, item, plan);
        if (!item.isFaulty && item.lineCount > 1)
            cut(band, item, contentWidth(plan, *item.look), 1);
        item.height = height;
    }
}

void BandBuilder::fillCheckMark(Band &band, BandItem &item, const FieldPlan &plan)
{
    try {
        const bool isTrue = plan.value >= 0 && band.context->evaluate(plan.value).isTrue();
        band.text += isTrue ? QChar(u'☑') : QChar(u'☐');
    } catch (const EvaluationFault &fault) {
        markFaulty(band, item, fault.words());
    }
    item.textLength = 1;
    const qint32 height = item.height;
    breakText(band, item, plan);
    item.height = std::max(height, 0);
}

void BandBuilder::fillSubreport(Band &band, BandItem &item, const FieldPlan &plan)
{
    try {
        auto galley = m_subreports ? m_subreports(plan, *band.context) : nullptr;
        const qint32 needed = galley ? galley->height : 0;
        if (needed > item.height && !plan.field->canGrow) {
            galley = firstBands(*galley, item.height);
            item.isCut = true;
        } else if (needed > item.height || plan.field->canShrink) {
            item.height = needed;
        }
        band.needExtra(item).galley = std::move(galley);
    } catch (const EvaluationFault &fault) {
        markFaulty(band, item, fault.words());
        breakText(band, item, plan);
    }
}

void BandBuilder::fillReferences(Band &band, BandItem &item, const FieldPlan &plan)
{
    try {
        if (plan.link >= 0)
            band.needExtra(item).link = band.context->evaluate(plan.link).toText(m_style);
        if (plan.bookmark >= 0)
            band.needExtra(item).bookmark = band.context->evaluate(plan.bookmark).toText(m_style);
    } catch (const EvaluationFault &fault) {
        band.needExtra(item).referenceFault = fault.words();
    }
}

} // namespace corvane
