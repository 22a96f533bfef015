#include "platform/grid/data_control.h"

namespace corvane {

void DataControl::refresh(Connection *shared, const DriverSettings &settings)
{
    m_rowset.reset();
    if (shared && shared->connectionText() == m_connectionString)
        m_rowset = shared->openRowset(m_recordSource);
    else
        m_rowset = Connection::open(m_connectionString, settings)->openRowset(m_recordSource);
}

void DataControl::clear()
{
    m_recordSource.clear();
    m_rowset.reset();
}

} // namespace corvane
