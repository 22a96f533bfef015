// Counts what a report takes from the heap, so that a slide back is noticed without a clock.

#include "definitions/tabular_definition.h"
#include "platform/composer/page_composer.h"
#include "platform/database/driver.h"
#include "platform/grid/data_control.h"
#include "platform/pdf/pdf_writer.h"
#include "shared/reportr.h"
#include "support/recording_host.h"
#include "support/suite.h"
#include "tabular/getrs.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <atomic>
#include <new>
#include <thread>

using namespace corvane;

namespace {

std::atomic<qint64> allocations = 0;
std::atomic<bool> failsElsewhere = false;
const std::thread::id mainThread = std::this_thread::get_id();

} // namespace

#ifdef __SANITIZE_ADDRESS__

extern "C" int __sanitizer_install_malloc_and_free_hooks(
    void (*onMalloc)(const volatile void *, size_t), void (*onFree)(const volatile void *));

namespace {

const int hooked = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void *, size_t) { ++allocations; }, [](const volatile void *) {});

} // namespace

#else

// NOLINTBEGIN(bugprone-reserved-identifier): the library's own, which the ones below count and call
extern "C" void *__libc_malloc(size_t size);
extern "C" void *__libc_calloc(size_t count, size_t size);
extern "C" void *__libc_realloc(void *memory, size_t size);
// NOLINTEND(bugprone-reserved-identifier)

extern "C" void *malloc(size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

extern "C" void *calloc(size_t count, size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

extern "C" void *realloc(void *memory, size_t size)
{
    ++allocations;
    return __libc_realloc(memory, size);
}

#endif

void *operator new(size_t size)
{
    void *memory
        = failsElsewhere && std::this_thread::get_id() != mainThread ? nullptr : std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, size_t) noexcept
{
    std::free(memory);
}

namespace {

const QString kConnection = QStringLiteral("ready");
const QByteArray kDefinition = "[Data Source]\nRecordSource1=SELECT 1\nFields=4\n"
                               "[Columns]\nFields=0|1|2|3\nHeading=Name|Account|Time|Status;\n"
                               "Spacing=3000|2000|>1500|2000;\nPageColumns=1\n"
                               "[ColumnFormat]\n2=MinToTime\n3=ColorToStatus\n";

RowsetPtr appointments(int rows)
{
    RowsetBuilder builder({QStringLiteral("name"), QStringLiteral("account"),
        QStringLiteral("start"), QStringLiteral("colour")});
    for (int i = 0; i < rows; ++i) {
        builder.addText("O'Neill, Abigail");
        builder.addText(QByteArray("A" + QByteArray::number(10'000 + i)));
        builder.add(Value::integer(480 + i % 600));
        builder.add(Value::integer(192 + i % 3));
    }
    return builder.finish();
}

class ReadyDriver : public Driver
{
public:
    explicit ReadyDriver(RowsetPtr rows)
        : m_rows(std::move(rows))
    {
    }
    RowsetPtr query(const QString &) override { return m_rows; }

private:
    RowsetPtr m_rows;
};

/// What one report takes.
struct Taken
{
    int pages = 0;
    qint64 composing = 0;
    qint64 pdf = 0;
    qint64 taggedPdf = 0;
};

class Clinic
{
public:
    DocumentPtr compose(int rows)
    {
        Reportr state;
        state.gConn = std::make_unique<Connection>(
            kConnection, std::make_unique<ReadyDriver>(appointments(rows)));
        test::RecordingHost host;
        PageComposer vp;
        DataControl adodc1;
        adodc1.setConnectionString(kConnection);
        RunTimings timings;
        const ValueTextStyle style;
        const QString path = file(QStringLiteral("report.rpt"));
        QFile out(path);
        if (!out.open(QIODevice::WriteOnly) || out.write(kDefinition) < 0)
            qFatal("no definition");
        out.close();
        TabularDefinition definition(path);
        vp.reset();
        vp.startDocument({});
        const QString spacing = definition.spacing();
        const QString heading = definition.heading();
        const qint64 before = allocations;
        getrs({state, host, vp, adodc1, definition, style, timings}, spacing, heading);
        DocumentPtr document = vp.endDocument();
        m_composing = allocations - before;
        return document;
    }

    Taken take(int rows)
    {
        const DocumentPtr document = compose(rows);
        return {document->pageCount(), m_composing, pdf(*document, PdfTagging::Never),
            pdf(*document, PdfTagging::Always)};
    }

    QString file(const QString &name) const { return m_folder.filePath(name); }

private:
    qint64 pdf(const Document &document, PdfTagging tagging)
    {
        PdfOptions options;
        options.tagging = tagging;
        const qint64 before = allocations;
        writePdf(document, file(QStringLiteral("out.pdf")), options);
        return allocations - before;
    }

    QTemporaryDir m_folder;
    qint64 m_composing = 0;
};

} // namespace

class tst_allocations : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void aRowTakesNextToNothing();
    void memoryThatRunsOutOnAnotherThreadIsAPdfError();
};

void tst_allocations::aRowTakesNextToNothing()
{
    Clinic clinic;
    constexpr int kFew = 2'000;
    constexpr int kMany = 40'000;
    const Taken few = clinic.take(kFew);
    const Taken many = clinic.take(kMany);
    // What is taken once, for fonts above all, stands on both sides.
    const double rows = kMany - kFew;
    const double composedRow = double(many.composing - few.composing) / rows;
    const double page = double(many.pdf - few.pdf) / (many.pages - few.pages);
    const double taggedRow = double(many.taggedPdf - few.taggedPdf) / rows;

    const QByteArray told = QByteArray::number(composedRow) + " a row composed, "
        + QByteArray::number(page) + " a page, " + QByteArray::number(taggedRow) + " a row tagged";
    qInfo("%s", told.constData());
    QVERIFY2(composedRow < 1, told); // the text of a time in some, the pages
    QVERIFY2(page < 170, told); // the container keeps a page as many small objects
    QVERIFY2(taggedRow < 5, told);
}

void tst_allocations::memoryThatRunsOutOnAnotherThreadIsAPdfError()
{
    Clinic clinic;
    const DocumentPtr document = clinic.compose(20'000);
    const QString fileName = clinic.file(QStringLiteral("failed.pdf"));
    PdfOptions options;
    options.threads = 2;
    failsElsewhere = true;
    QString message;
    try {
        writePdf(*document, fileName, options);
    } catch (const PdfError &error) {
        message = error.message();
    }
    failsElsewhere = false;

    QVERIFY2(
        message.contains(u"\"" + fileName + u"\" was not saved") && message.contains(u"bad_alloc"),
        qPrintable(message));
    QVERIFY(!QFile::exists(fileName));
}

QTEST_MAIN(tst_allocations)
#include "tst_allocations.moc"
