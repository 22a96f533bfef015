#include "shared/legal_notice.h"

#include "legal_notice_words.h"
#include "platform/process/version_information.h"

namespace corvane {

QString legalNotice()
{
    const QString comments = versionComments();
    return comments.isEmpty() ? QString::fromUtf16(kLegalNoticeWords) : comments;
}

} // namespace corvane
