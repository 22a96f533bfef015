#include "platform/database/embedded/dialect.h"

#include "platform/database/embedded/translator.h"

namespace corvane::embedded {

Translation translate(const QString &sql, const DialectSettings &settings)
{
    return Translator(sql, settings).run();
}

} // namespace corvane::embedded
