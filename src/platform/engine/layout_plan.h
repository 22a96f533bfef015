#pragma once

#include "platform/engine/text_look.h"

#include <QtCore/QStringList>

#include <map>

namespace corvane {

/// Levels of scopes: a group's index, or one of these.
inline constexpr int kReportLevel = -1;
inline constexpr int kPageLevel = -2;

/// An aggregate with its scope found.
struct AggregatePlan
{
    AggregateFunction function = AggregateFunction::Sum;
    int level = kReportLevel;
    bool isRunning = false;
    bool followsPages = false; ///< counts rows when they are placed, not when they are read: page
                               ///< sections, page scope
    int argument = -1; ///< index into LayoutPlan::bindings; -1 counts rows

    bool isTotal() const { return !isRunning && level != kPageLevel; }
};

/// An expression with its columns and aggregates found.
struct Binding
{
    ExpressionPtr expression;
    std::vector<int> columns; ///< fields of the rowset, by index into Expression::columns()
    std::vector<int>
        aggregates; ///< into LayoutPlan::aggregates, by index into Expression::aggregates()
    int plainColumn = -1; ///< field of the rowset when the expression is nothing else
    bool isOfPage = false; ///< its value is only known when its page, or the last page, is finished
};

struct LinkPlan
{
    QString name;
    int value = -1;
};

/// A field ready to be filled; numbers that end in "When" or name an expression are bindings, -1
/// for none.
struct FieldPlan
{
    const Field *field = nullptr;
    TextLook look;
    std::vector<std::pair<int, TextLook>> conditionalLooks; ///< binding of the condition, look
    int value = -1;
    int visibleWhen = -1;
    int link = -1;
    int bookmark = -1;
    std::vector<LinkPlan> links;
    quint16 line = 0; ///< text line of the section: a block of the page
    quint16 column = 0; ///< cell of that line
    bool isOfPage = false;
    int duplicateSlot = -1; ///< into RowContext::shown when duplicates are hidden

    qint32 top() const { return field->y.count(); }
    qint32 bottom() const { return (field->y + field->height).count(); }
    bool isFrame() const
    {
        return field->kind == FieldKind::Rectangle || field->kind == FieldKind::Line;
    }
};

/// A line of fields, which becomes a block of the page.
struct LinePlan
{
    BlockKind kind = BlockKind::Row;
    quint16 columnCount = 0;
};

/// A section with its fields in reading order.
struct SectionPlan
{
    const Section *section = nullptr;
    std::vector<FieldPlan> fields;
    std::vector<LinePlan> lines;
    std::vector<quint16> paintOrder; ///< fields that draw more than letters, in the file's order
    int visibleWhen = -1;
    qint32 height = 0;
    bool isPlain = true; ///< nothing but labels and values without conditions, links or frames
};

enum class PlanFor : quint8 { Report, Subreport };

/// A layout with every expression bound to the columns of its rows. The layout outlives the plan.
class LayoutPlan
{
public:
    /// @throws ReportError for a column that the rows do not have
    LayoutPlan(
        const ReportLayout &layout, const QStringList &fieldNames, TextLooks &looks, PlanFor use);

    const ReportLayout &layout() const { return *m_layout; }
    int groupCount() const { return int(m_layout->groups.size()); }
    const std::vector<SectionPlan> &sections() const { return m_sections; }
    std::vector<const SectionPlan *> sectionsOf(SectionKind kind, int group = -1) const;
    const std::vector<Binding> &bindings() const { return m_bindings; }
    const std::vector<AggregatePlan> &aggregates() const { return m_aggregates; }
    const QStringList &fieldNames() const { return m_fieldNames; }

    int groupKey(int group) const { return m_groupKeys[size_t(group)]; }
    int outlineText(int group) const { return m_outlines[size_t(group)]; } ///< -1: the key
    int duplicateSlots() const { return m_duplicateSlots; }
    bool hasPageFields() const { return m_hasPageFields; }

private:
    struct Scope
    {
        int level = kReportLevel;
        bool isPageSection = false;
        FilePlace place;
    };

    int bind(const ExpressionPtr &expression, const Scope &scope);
    int bindAggregate(const Aggregate &aggregate, const Scope &scope);
    int levelOf(const Aggregate &aggregate, const Scope &scope) const;
    void addSection(const Section &section, TextLooks &looks);
    FieldPlan planField(const Field &field, const Scope &scope, TextLooks &looks);
    void orderFields(SectionPlan &plan) const;

    const ReportLayout *m_layout;
    QStringList m_fieldNames;
    PlanFor m_use;
    std::vector<SectionPlan> m_sections;
    std::vector<Binding> m_bindings;
    std::vector<AggregatePlan> m_aggregates;
    std::vector<int> m_groupKeys;
    std::vector<int> m_outlines;
    int m_duplicateSlots = 0;
    bool m_hasPageFields = false;
};

} // namespace corvane
