#pragma once

#include "platform/preview/preview.h"

#include <QtWidgets/QWidget>

#include <optional>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;

namespace corvane {

/// A scale as the zoom box takes it.
struct ZoomChoice
{
    ZoomMode mode = ZoomMode::Fixed;
    double percent = 100; ///< of a fixed scale

    bool operator==(const ZoomChoice &) const = default;
};

/// Reads "Page width", "Whole page", "125 %" or "125". Empty for anything else and for 0 or less.
std::optional<ZoomChoice> readZoom(QStringView text);

/// The thin bar above a preview: moving between pages, the page's number, the scale.
class PreviewBar : public QWidget
{
    Q_OBJECT

public:
    /// The preview must outlive the bar.
    explicit PreviewBar(Preview *preview, QWidget *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addButton(QHBoxLayout &layout, Preview::Command command, const QString &objectName);
    void addPageBox(QHBoxLayout &layout);
    void addZoomBox(QHBoxLayout &layout);
    void showPage();
    void showPageCount();
    void showZoom();
    void enterPage();
    void enterZoom();
    void leaveBox();

    Preview *m_preview;
    QLineEdit *m_pageBox = nullptr;
    QLabel *m_pageCount = nullptr;
    QComboBox *m_zoomBox = nullptr;
};

} // namespace corvane
