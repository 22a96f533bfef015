#include "platform/composer/shipped_fonts.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QStandardPaths>
#include <QtGui/QFontDatabase>

namespace corvane {

void loadShippedFonts()
{
    QDirIterator fonts(QCoreApplication::applicationDirPath() + QStringLiteral("/fonts"), {QStringLiteral("*.ttf")}, QDir::Files);
    while (fonts.hasNext())
        QFontDatabase::addApplicationFont(fonts.next());
}

void findSystemFonts()
{
#ifdef Q_OS_WIN
    constexpr char kFontFolder[] = "QT_QPA_FONTDIR"; // the offscreen platform's
    if (qEnvironmentVariableIsEmpty(kFontFolder))
        qputenv(kFontFolder, QStandardPaths::writableLocation(QStandardPaths::FontsLocation).toLocal8Bit());
#endif
}

} // namespace corvane
