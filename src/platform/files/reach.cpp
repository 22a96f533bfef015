#include "platform/files/reach.h"

#include "platform/messages/system_words.h"

#include <QtCore/QFileInfo>

#include <filesystem>

namespace corvane {

QString outOfReachReason(const QString &name)
{
    std::error_code error;
    const auto type = std::filesystem::status(QFileInfo(name).filesystemFilePath(), error).type();
    return type == std::filesystem::file_type::none ? systemWords(qt_error_string(error.value()))
                                                    : QString();
}

} // namespace corvane
