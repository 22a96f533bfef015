#pragma once

#include "platform/controls/spacing.h"

#include <QtWidgets/QStyledItemDelegate>

namespace corvane {

/// Rows of a list a little higher than their text, so that the eye stays in its row.
class RoomyRows : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const QSize text = QStyledItemDelegate::sizeHint(option, index);
        return option.widget ? text + QSize(0, controlGap(option.widget)) : text;
    }
};

} // namespace corvane
