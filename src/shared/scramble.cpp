#include "shared/scramble.h"

#include "shared/code_page.h"
#include "shared/run_time_fault.h"

namespace corvane {

namespace {

constexpr int kKey = CORVANE_SCRAMBLE_KEY;
constexpr int kMask = CORVANE_SCRAMBLE_BASE - CORVANE_SCRAMBLE_KEY;

template <typename Step>
QString eachCode(QStringView text, Step step)
{
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto code = toWindows1252(text[i]);
        const int changed = code ? step(*code, i % 2 == 0 ? kKey : -kKey) : -1;
        if (changed < 0 || changed > 255)
            throw RunTimeFault(RunTimeFault::InvalidArgument);
        result += char(changed);
    }
    return fromWindows1252(result);
}

} // namespace

QString scramblePW(QStringView clear)
{
    return eachCode(clear, [](int code, int key) { return (code + key) ^ kMask; });
}

QString unscramblePW(QStringView stored)
{
    return eachCode(stored, [](int code, int key) { return (code ^ kMask) - key; });
}

} // namespace corvane
