#include "fuzz/promise.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cstdio>

/// Looks at every kept input of a folder again, in a program that no fuzzer drives. The latest name
/// printed is that of the input that broke something.
int main(int argc, char **argv)
{
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QFile::decodeName(argv[i]));
        const QStringList names = folder.entryList(QDir::Files);
        for (const QString &name : names) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly))
                return 2;
            std::printf("%s\n", qPrintable(file.fileName()));
            std::fflush(stdout);
            const QByteArray input = file.readAll();
            LLVMFuzzerTestOneInput(
                reinterpret_cast<const uint8_t *>(input.constData()), size_t(input.size()));
            ++inputs;
        }
    }
    if (inputs == 0)
        std::fprintf(stderr, "There is no input in the folders that were named.\n");
    return inputs == 0 ? 2 : 0;
}
