#include "platform/composer/shipped_fonts.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtGui/QFontDatabase>

namespace corvane {

void loadShippedFonts()
{
    QDirIterator fonts(QCoreApplication::applicationDirPath() + QStringLiteral("/fonts"), {QStringLiteral("*.ttf")}, QDir::Files);
    while (fonts.hasNext())
        QFontDatabase::addApplicationFont(fonts.next());
}

} // namespace corvane
