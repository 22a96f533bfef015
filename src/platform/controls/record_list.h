#pragma once

#include "platform/controls/record_model.h"

#include <QtCore/QElapsedTimer>
#include <QtWidgets/QTreeView>

namespace corvane {

/// A list of records under headers, in the order of its model. Arrow keys select, the space bar marks,
/// Enter and double click accept, typed letters jump to the next row that begins with them.
class RecordList : public QTreeView
{
    Q_OBJECT

public:
    explicit RecordList(QWidget *parent = nullptr);

    // Both hide the view's own on purpose: it is the same model, by its own type.
    // NOLINTBEGIN(bugprone-derived-method-shadowing-base-method)
    RecordModel &model() { return m_model; }
    const RecordModel &model() const { return m_model; }
    // NOLINTEND(bugprone-derived-method-shadowing-base-method)

    /// The selected row, counted from 0; -1 while none is selected.
    int currentRow() const;
    void selectRow(int row);

    void keyboardSearch(const QString &typed) override;

Q_SIGNALS:
    void accepted(int row);
    /// By mouse, key or selectRow(); also when nothing is selected any more.
    void currentRowChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void layOutColumns();
    bool isOnCheckBox(QPoint position) const;

    RecordModel &m_model = *new RecordModel(this);
    QString m_typed;
    QElapsedTimer m_sinceTyped;
};

} // namespace corvane
