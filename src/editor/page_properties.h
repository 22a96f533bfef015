#pragma once

#include "shared/profile.h"

#include <QtCore/QString>

#include <array>
#include <span>
#include <vector>

namespace corvane {

class TabularDefinition;

/// One printed column, as a row of the form's list.
struct PrintedColumn
{
    QString caption;
    QString size; ///< inches as text, as read or as typed; a size that was read starts with a blank
    QString marks; ///< the alignment marks before its width
    qint32 ordinal = 0; ///< of the result field, from 0

    bool operator==(const PrintedColumn &) const = default;
};

/// What the properties form shows and changes of a tabular definition.
struct PageProperties
{
    std::array<QString, 3> header; ///< left, centre, right
    std::array<QString, 3> footer;
    bool isLandscape = false;
    bool breaksPageOnGroup = false;
    std::vector<PrintedColumn> columns; ///< in print order
    QString recordSource; ///< shown only
    QString fields; ///< the list of result fields as read; shown only

    bool operator==(const PageProperties &) const = default;
};

/// @throws RunTimeFault Overflow for a result field beyond 32 bits.
PageProperties loadPageProperties(const TabularDefinition &definition);

/// A width in twips as the list shows it: inches with at most two decimals, never an exponent.
QString columnSizeText(double twips);

/// Whole twips as text. @throws RunTimeFault Overflow beyond 16 bits, which is beyond 22.75 inches.
QString ConvertToTwips(float inches);
/// The same for the text of a size.
QString twipsOf(const PrintedColumn &column);

/// Inches that all columns may take together.
constexpr float pageWidth(bool isLandscape)
{
    return isLandscape ? 10.0F : 7.5F;
}
float totalColumnSize(std::span<const PrintedColumn> columns);
bool columnSizesFit(std::span<const PrintedColumn> columns, bool isLandscape);
/// "5.21 of 7.50 inches", and by how much it is too wide.
QString columnSizeSummary(std::span<const PrintedColumn> columns, bool isLandscape);

enum MoveDirection : qint16 { MoveUp = 0, MoveDown = 1 };
/// Exchanges a row with its neighbour. @return the row's new place; the old one at the list's end.
int changeListOrder(std::vector<PrintedColumn> &columns, int row, qint16 direction);

struct ColumnTexts
{
    QString spacing;
    QString heading;
    QString fields;
};
/// The three lists of [Columns]. @throws RunTimeFault Overflow
ColumnTexts columnTexts(std::span<const PrintedColumn> columns);

/// What is written, in this order; no columns: nothing of [Columns]. @throws RunTimeFault Overflow
std::vector<ProfileEntry> profileEntries(const PageProperties &properties);

} // namespace corvane
