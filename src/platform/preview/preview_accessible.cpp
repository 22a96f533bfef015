#include "platform/preview/preview_accessible.h"

#include "platform/preview/preview.h"

#include <QtWidgets/QAccessibleWidget>

namespace corvane {

namespace {

class PreviewAccessible : public QAccessibleWidget
{
public:
    explicit PreviewAccessible(Preview *preview)
        : QAccessibleWidget(preview, QAccessible::Document)
    {
    }

    QString text(QAccessible::Text what) const override
    {
        if (what != QAccessible::Value)
            return QAccessibleWidget::text(what);
        const auto *preview = static_cast<const Preview *>(widget());
        QString words;
        if (preview->currentPage() >= 0)
            appendPageText(words, preview->document()->pages[size_t(preview->currentPage())]);
        return words;
    }
};

QAccessibleInterface *describe(const QString &, QObject *object)
{
    auto *preview = qobject_cast<Preview *>(object);
    return preview ? new PreviewAccessible(preview) : nullptr;
}

} // namespace

void describePreviewsToReaders()
{
    QAccessible::installFactory(describe); // knows a factory that is there already
}

} // namespace corvane
