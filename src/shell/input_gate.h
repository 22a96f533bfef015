#pragma once

#include <QtCore/QObject>

#include <functional>
#include <utility>

class QWidget;

namespace corvane {

/// While closed, the program's windows only repaint: keys, mouse and drops are dropped, except Escape,
/// which is remembered, and closing the window, which is remembered for afterwards.
class InputGate : public QObject
{
    Q_OBJECT

public:
    /// Milliseconds since whenever.
    using Clock = std::function<qint64()>;

    explicit InputGate(QWidget *window, Clock clock = steadyMilliseconds);

    void close();
    void open();
    bool isClosed() const { return m_closed; }
    /// Closed, or opened for a question.
    bool isBusy() const { return m_closed || m_openedFor > 0; }

    /// Opens a closed gate for as long as it lives.
    class Opened
    {
    public:
        explicit Opened(InputGate &gate)
            : m_gate(gate)
            , m_wasClosed(gate.isClosed())
        {
            m_gate.open();
            ++m_gate.m_openedFor;
        }
        ~Opened()
        {
            --m_gate.m_openedFor;
            if (m_wasClosed)
                m_gate.close();
        }
        Q_DISABLE_COPY_MOVE(Opened)

    private:
        InputGate &m_gate;
        bool m_wasClosed;
    };

    /// To be called for every piece of work: serves what is waiting, at most twenty times a second and, where a
    /// piece takes no longer than that, at least ten times.
    void serve();

    /// True once after Escape was pressed.
    bool takeEscape() { return std::exchange(m_escape, false); }
    /// True once after somebody tried to close the window.
    bool takeCloseWish() { return std::exchange(m_closeWish, false); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static qint64 steadyMilliseconds();

    QWidget *m_window;
    Clock m_clock;
    qint64 m_served = 0; ///< when events were served last, by the clock
    bool m_closed = false;
    int m_openedFor = 0; ///< questions that stand, one within another
    bool m_escape = false;
    bool m_closeWish = false;
};

} // namespace corvane
