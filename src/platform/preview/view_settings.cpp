#include "platform/preview/view_settings.h"

#include <QtCore/QSettings>

#include <span>

namespace corvane {

namespace {

constexpr int kWidestSide = 2000;

template <typename Value> struct Word
{
    const char *text;
    Value value;
};

constexpr Word<ZoomMode> kZoomModes[]{
    {"percent", ZoomMode::Fixed}, {"width", ZoomMode::PageWidth}, {"page", ZoomMode::WholePage}};
constexpr Word<ViewMode> kViewModes[]{
    {"continuous", ViewMode::Continuous}, {"single", ViewMode::SinglePage}};
constexpr Word<SideTab> kSideTabs[]{{"groups", SideTab::Groups}, {"pages", SideTab::Pages}};

QString keyOf(const char *name)
{
    return QStringLiteral("Preview/") + QLatin1StringView(name);
}

template <typename Value>
void read(const QSettings &store, const char *key, std::span<const Word<Value>> words, Value &value)
{
    const QString text = store.value(keyOf(key)).toString();
    for (const Word<Value> &word : words) {
        if (text == QLatin1StringView(word.text))
            value = word.value;
    }
}

/// Only a number within its range replaces what stands there.
template <typename Number>
void read(const QSettings &store, const char *key, Number least, Number most, Number &value)
{
    bool isNumber = false;
    const double number = store.value(keyOf(key)).toDouble(&isNumber);
    if (isNumber && number >= least && number <= most)
        value = Number(number);
}

template <typename Value>
void write(QSettings &store, const char *key, std::span<const Word<Value>> words, Value value)
{
    for (const Word<Value> &word : words) {
        if (word.value == value)
            store.setValue(keyOf(key), QLatin1StringView(word.text));
    }
}

} // namespace

ViewSettings readViewSettings(const QSettings &store)
{
    ViewSettings settings;
    read<ZoomMode>(store, "zoomMode", kZoomModes, settings.zoomMode);
    read(store, "zoomPercent", ViewSettings::kLeastZoom, ViewSettings::kMostZoom,
        settings.zoomPercent);
    read<ViewMode>(store, "viewMode", kViewModes, settings.viewMode);
    settings.sidePanel = store.value(keyOf("sidePanel"), settings.sidePanel).toBool();
    read<SideTab>(store, "sideTab", kSideTabs, settings.sideTab);
    read(store, "sideWidth", ViewSettings::kLeastSideWidth, kWidestSide, settings.sideWidth);
    return settings;
}

void writeViewSettings(QSettings &store, const ViewSettings &settings)
{
    write<ZoomMode>(store, "zoomMode", kZoomModes, settings.zoomMode);
    store.setValue(keyOf("zoomPercent"), settings.zoomPercent);
    write<ViewMode>(store, "viewMode", kViewModes, settings.viewMode);
    store.setValue(keyOf("sidePanel"), settings.sidePanel);
    write<SideTab>(store, "sideTab", kSideTabs, settings.sideTab);
    store.setValue(keyOf("sideWidth"), settings.sideWidth);
}

} // namespace corvane
