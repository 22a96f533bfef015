#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>

class QWidget;

namespace corvane {

/// While closed, the program's windows only repaint: keys, mouse and drops are dropped, except Escape,
/// which is remembered, and closing the window, which is remembered for afterwards.
class InputGate : public QObject
{
    Q_OBJECT

public:
    explicit InputGate(QWidget *window);

    void close();
    void open();
    bool isClosed() const { return m_closed; }

    /// Opens a closed gate for as long as it lives.
    class Opened
    {
    public:
        explicit Opened(InputGate &gate)
            : m_gate(gate)
            , m_wasClosed(gate.isClosed())
        {
            m_gate.open();
        }
        ~Opened()
        {
            if (m_wasClosed)
                m_gate.close();
        }
        Q_DISABLE_COPY_MOVE(Opened)

    private:
        InputGate &m_gate;
        bool m_wasClosed;
    };

    /// Serves what is waiting, at most about twenty times a second.
    void serve();

    /// True once after Escape was pressed.
    bool takeEscape() { return std::exchange(m_escape, false); }
    /// True once after somebody tried to close the window.
    bool takeCloseWish() { return std::exchange(m_closeWish, false); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_window;
    QElapsedTimer m_sinceServed;
    bool m_closed = false;
    bool m_escape = false;
    bool m_closeWish = false;
};

} // namespace corvane
