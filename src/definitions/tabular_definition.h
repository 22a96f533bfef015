#pragma once

#include "shared/profile.h"

#include <QtCore/QString>

namespace corvane {

/// A tabular report definition with its keys as typed values. It reads the file as it stands at the
/// last refresh(); numbers follow the leading-number rule and overflow as 16-bit integers.
class TabularDefinition
{
public:
    explicit TabularDefinition(const QString &path);

    /// Reads the file again when it changed on disk; true when it did.
    bool refresh() { return m_file.refresh(); }

    QString recordSource1() const { return m_file.value(u"Data Source", u"RecordSource1"); }
    QString recordSource2() const { return m_file.value(u"Data Source", u"RecordSource2"); }
    bool getDates() const { return is(u"Data Source", u"GetDates", u"True"); }
    bool getPatient() const { return is(u"Data Source", u"GetPatient", u"True"); }
    bool usesSecondDatabase() const { return is(u"Data Source", u"Database", u"A"); }
    qint16 fieldCount() const { return whole(u"Data Source", u"Fields"); }

    QString columnFields() const { return m_file.value(u"Columns", u"Fields"); }
    QString heading() const { return m_file.value(u"Columns", u"Heading"); }
    QString spacing() const { return m_file.value(u"Columns", u"Spacing"); }
    qint16 pageColumns() const { return whole(u"Columns", u"PageColumns"); }
    double fontSize() const { return real(u"Columns", u"Fontsize"); }
    QString font() const { return m_file.value(u"Columns", u"Font"); }

    /// Ordinal of the group field; below 1: no grouping.
    qint16 groupField() const { return whole(u"Group", u"Field"); }
    bool hasGroupKey() const { return !m_file.value(u"Group", u"Field").isEmpty(); }
    qint16 subTotal() const { return hasGroupKey() ? whole(u"Group", u"SubTotal") : 0; }
    qint16 grandTotal() const { return hasGroupKey() ? whole(u"Group", u"GrandTotal") : 0; }

    /// Ordinal of the note field; below 1: no notes.
    qint16 noteField() const { return whole(u"SubColumn", u"Field"); }
    double noteIndent() const { return real(u"SubColumn", u"Indent"); }

    /// The format word of a result field, by its ordinal.
    QString columnFormat(int ordinal) const { return m_file.value(u"ColumnFormat", QString::number(ordinal)); }

    bool isLandscape() const { return is(u"Layout", u"Orientation", u"L"); }
    bool breaksPageOnGroup() const { return is(u"Layout", u"PageBreak", u"Y"); }

    /// Part is "LText", "CText" or "RText".
    QString header(QStringView part) const { return m_file.value(u"Header", part); }
    QString footer(QStringView part) const { return m_file.value(u"Footer", part); }

private:
    bool is(QStringView section, QStringView key, QStringView value) const
    {
        return m_file.value(section, key) == value;
    }
    qint16 whole(QStringView section, QStringView key) const;
    double real(QStringView section, QStringView key) const;

    ProfileFile m_file;
};

} // namespace corvane
