#include "platform/preview/preview_finder.h"

namespace corvane {

namespace {

constexpr qsizetype kLettersAtOnce = 2'000'000; ///< some milliseconds' worth

} // namespace

PreviewFinder::PreviewFinder(QObject *parent)
    : QObject(parent)
{
    m_work.setInterval(0);
    connect(&m_work, &QTimer::timeout, this, &PreviewFinder::workOn);
    m_preparation.setInterval(0);
    connect(&m_preparation, &QTimer::timeout, this, &PreviewFinder::prepareOn);
}

void PreviewFinder::setDocument(const DocumentPtr &document)
{
    m_preparation.stop();
    m_search.setDocument(document);
    m_reach = Reach::Stay;
    start(0);
}

void PreviewFinder::find(const QString &text, CaseRule rule, int fromPage)
{
    m_text = text;
    m_rule = rule;
    m_reach = Reach::Show;
    start(fromPage);
}

void PreviewFinder::prepare(CaseRule rule)
{
    if (isActive())
        return;
    m_rule = rule;
    m_preparation.start();
}

void PreviewFinder::findNext()
{
    step(&DocumentSearch::after);
}

void PreviewFinder::findPrevious()
{
    step(&DocumentSearch::before);
}

void PreviewFinder::start(int fromPage)
{
    m_current.reset();
    m_search.start(m_text, m_rule, fromPage);
    m_work.start();
    workOn();
}

void PreviewFinder::workOn()
{
    m_search.work(kLettersAtOnce);
    const bool isFirst = !m_current && m_search.hitCount() > 0;
    if (isFirst)
        m_current = m_search.first();
    else if (m_current)
        m_current->number = m_search.numberOf(*m_current); // those before it are counted last
    if (m_search.isFinished())
        m_work.stop();
    Q_EMIT changed();
    if (isFirst && m_reach == Reach::Show)
        Q_EMIT hitReached(*m_current);
}

void PreviewFinder::prepareOn()
{
    if (isActive() || m_search.prepare(m_rule, kLettersAtOnce))
        m_preparation.stop();
}

void PreviewFinder::step(std::optional<SearchHit> (DocumentSearch::*neighbour)(const SearchHit &))
{
    if (!m_current)
        return;
    m_current = (m_search.*neighbour)(*m_current);
    Q_EMIT changed();
    Q_EMIT hitReached(*m_current);
}

} // namespace corvane
