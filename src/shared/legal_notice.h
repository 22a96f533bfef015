#pragma once

#include <QtCore/QStringView>

namespace corvane {

/// The legal notice of the program's version information: the one place that has its words.
inline constexpr QStringView kLegalNotice
    = u"Copyright \u00a9 2026 Corvane. All rights reserved.\n\n"
      u"Corvane Reporter shows protected health information. Only people whom the clinic has "
      u"authorized may use it.\n\n"
      u"It uses Qt and other free libraries. Their licenses come with them.";

} // namespace corvane
