// The least that a program with a window can do, which the start-up is measured against; with
// --text the least that shows a word, because reading which fonts there are takes longer than all
// the rest.

#include "platform/controls/first_paint.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setObjectName(QStringLiteral("window"));
    window.resize(400, 300);
    if (QApplication::arguments().contains(QStringLiteral("--text")))
        new QLabel(QStringLiteral("Text"), &window);
    corvane::quitOncePainted(window.objectName());
    window.show();
    return QApplication::exec();
}
