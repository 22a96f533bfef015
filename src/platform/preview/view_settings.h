#pragma once

class QSettings;

namespace corvane {

enum class ZoomMode { Fixed, PageWidth, WholePage };
enum class ViewMode { Continuous, SinglePage };
enum class SideTab { Groups, Pages };

/// How a user likes to look at reports; nothing of any report is in it.
struct ViewSettings
{
    static constexpr double kLeastZoom = 10;
    static constexpr double kMostZoom = 500;
    static constexpr int kLeastSideWidth = 120;

    ZoomMode zoomMode = ZoomMode::PageWidth;
    double zoomPercent = 100; ///< of ZoomMode::Fixed
    ViewMode viewMode = ViewMode::Continuous;
    bool sidePanel = true;
    SideTab sideTab = SideTab::Groups;
    int sideWidth = 190; ///< pixels

    bool operator==(const ViewSettings &) const = default;
};

/// What a store does not hold, or not in its range, is as it is at first. A store that cannot be read
/// or written costs no more than that, so nobody is bothered with it.
ViewSettings readViewSettings(const QSettings &store);
void writeViewSettings(QSettings &store, const ViewSettings &settings);

} // namespace corvane
