#pragma once

#include <QtCore/QString>

namespace corvane {

/// The legal notice of the program's version information; paragraphs are separated by empty lines.
QString legalNotice();

} // namespace corvane
