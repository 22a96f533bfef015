#include "platform/engine/subreports.h"

#include "platform/database/error.h"
#include "platform/engine/sql_literal.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr size_t kDeepest = 8;

/// Stacks the bands of a sub-report below each other.
class GalleyBuilder final : public BandSink
{
public:
    explicit GalleyBuilder(Galley &galley)
        : m_galley(galley)
    {
    }

    void openGroup(int level, const Group &, bool) override { closeHeaders(level); }
    void closeGroup(int level, bool) override { closeHeaders(level); }
    void addHeader(Band &band, int level, bool isRepeated) override
    {
        if (isRepeated) {
            m_galley.headers.push_back({m_galley.bands.size(), size_t(-1), band});
            m_open.emplace_back(level, m_galley.headers.size() - 1);
        }
        add(band);
    }
    void add(Band &band) override
    {
        m_galley.height += band.height;
        m_galley.bands.push_back(std::exchange(band, {}));
    }

private:
    void closeHeaders(int outermost)
    {
        for (const auto &[level, header] : m_open) {
            if (level >= outermost)
                m_galley.headers[header].last = m_galley.bands.size();
        }
        std::erase_if(m_open, [&](const auto &open) { return open.first >= outermost; });
    }

    Galley &m_galley;
    std::vector<std::pair<int, size_t>> m_open; ///< level, index into Galley::headers
};

} // namespace

RowsetPtr RowSource::rows(const QString &connectionText, const QString &sql)
{
    if (sql.trimmed().isEmpty())
        return RowsetBuilder({}).finish();
    RowsetPtr &known = m_known[{connectionText, sql}];
    if (known)
        return known;
    Connection *connection = m_settings.connection;
    if (!connection
        || (!connectionText.isEmpty() && connection->connectionText() != connectionText)) {
        std::unique_ptr<Connection> &opened = m_opened[connectionText];
        if (!opened)
            opened = Connection::open(connectionText, m_settings.drivers);
        connection = opened.get();
    }
    known = connection->openRowset(sql, m_watch);
    return known;
}

Subreports::Subreports(const ReportControl &main, RowSource &rows, TextLooks &looks,
    BandBuilder &builder, const RunFacts &facts)
    : m_main(main)
    , m_rows(rows)
    , m_looks(looks)
    , m_builder(builder)
    , m_facts(facts)
    , m_chain{{&main.layout(), &main.dataSource(), main.fileName()}}
{
}

std::shared_ptr<const Galley> Subreports::layOut(const FieldPlan &field, RowContext &parent)
{
    const auto target = targetOf(*field.field);
    if (!target)
        return nullptr;
    refuseCircle(*target);
    const RowsetPtr rows = rowsOf(*target, boundQuery(*target, field, parent));
    const LayoutPlan &plan = planOf(*target, rows->fieldNames());
    const auto context = std::make_shared<RowContext>(plan, m_facts, rows);
    auto galley = std::make_shared<Galley>();
    GalleyBuilder sink(*galley);
    m_chain.push_back(*target);
    RowWalker walker(*context, m_builder, sink, GroupOutline::None);
    walker.addSections(SectionKind::ReportHeader, 0);
    walker.walk([this](qsizetype) { m_facts.onRow(); });
    walker.addSections(SectionKind::ReportFooter, rows->rowCount() - 1);
    m_chain.pop_back();
    if (plan.hasPageFields())
        m_contexts.push_back(context);
    return galley;
}

RowsetPtr Subreports::rowsOf(const Target &target, const QString &sql)
{
    const QString &connection = target.source->connectionString;
    try {
        return m_rows.rows(connection.isEmpty() ? m_main.dataSource().connectionString : connection, sql);
    } catch (const DatabaseError &error) {
        throw ReportError(QStringLiteral("The query of the sub-report \"%1\" failed: %2").arg(target.layout->name, error.description()));
    }
}

std::optional<Subreports::Target> Subreports::targetOf(const Field &field)
{
    if (field.subreport && field.subreport->isLoaded()
        && !field.subreport->dataSource().recordSource.trimmed().isEmpty())
        return Target{&field.subreport->layout(), &field.subreport->dataSource(),
            field.subreport->fileName()};
    if (field.subreport || field.layoutName.isEmpty())
        return std::nullopt;
    const QString &file = m_chain.back().fileName;
    std::unique_ptr<ReportControl> &control = m_loaded[{file, field.layoutName}];
    if (!control) {
        control = std::make_unique<ReportControl>();
        control->load(file, field.layoutName);
    }
    return Target{&control->layout(), &control->dataSource(), file};
}

void Subreports::refuseCircle(const Target &target) const
{
    const auto isSame = [&](const Target &known) {
        return known.layout == target.layout
            || (known.layout->name == target.layout->name && known.fileName == target.fileName);
    };
    const bool isCircle = std::ranges::any_of(m_chain, isSame);
    if (!isCircle && m_chain.size() <= kDeepest)
        return;
    QStringList names;
    for (const Target &known : m_chain)
        names += known.layout->name;
    names += target.layout->name;
    const QString chain = names.join(QStringLiteral(" → "));
    throw ReportError(isCircle
            ? QStringLiteral("A report cannot hold itself as a sub-report: %1.").arg(chain)
            : QStringLiteral("Sub-reports are nested more than %1 deep: %2.")
                  .arg(kDeepest)
                  .arg(chain));
}

/// One pass over the text as stored: what a value holds is never taken for a token.
QString Subreports::boundQuery(
    const Target &target, const FieldPlan &field, RowContext &parent) const
{
    constexpr QStringView kOpening = u"{LINK*";
    const QString &stored = target.source->recordSource;
    QString sql;
    qsizetype at = 0;
    for (;;) {
        const qsizetype begin = stored.indexOf(kOpening, at, Qt::CaseInsensitive);
        sql += QStringView(stored).sliced(at, (begin < 0 ? stored.size() : begin) - at);
        if (begin < 0)
            return sql;
        const qsizetype end = std::max(stored.indexOf(u'}', begin), begin + kOpening.size());
        const QStringView name = QStringView(stored).sliced(begin + kOpening.size(), end - begin - kOpening.size());
        const auto link = std::ranges::find_if(field.links, [&](const LinkPlan &known) {
            return name.compare(known.name, Qt::CaseInsensitive) == 0;
        });
        if (link == field.links.end())
            refuseToken(target, *field.field, QStringView(stored).sliced(begin, std::min(end + 1, stored.size()) - begin));
        sql += sqlLiteral(parent.evaluate(link->value));
        at = end + 1;
    }
}

void Subreports::refuseToken(const Target &target, const Field &field, QStringView token)
{
    throw ReportError(QStringLiteral("The record source of \"%1\" has %2, but its sub-report field (line %3) "
                                     "has no such <Link>.")
                          .arg(target.layout->name, token)
                          .arg(field.place.line));
}

const LayoutPlan &Subreports::planOf(const Target &target, const QStringList &fieldNames)
{
    auto &plans = m_plans[target.layout];
    for (const auto &plan : plans) {
        if (plan->fieldNames() == fieldNames)
            return *plan;
    }
    plans.push_back(
        std::make_unique<LayoutPlan>(*target.layout, fieldNames, m_looks, PlanFor::Subreport));
    return *plans.back();
}

} // namespace corvane
