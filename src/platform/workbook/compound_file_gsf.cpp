#include "platform/workbook/compound_file.h"

#include <QtCore/QIODevice>

#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-output-impl.h>
#include <gsf/gsf-output.h>
#include <gsf/gsf-utils.h>

namespace {

/// The library's view of a Qt device. Its close tries for ever to fill up a block that cannot be
/// written, so after a failure everything seems to work and goes nowhere; GsfCompoundFile looks at
/// the flag.
struct DeviceOutput
{
    GsfOutput base;
    QIODevice *device;
    bool hasFailed;
};
struct DeviceOutputClass
{
    GsfOutputClass base;
};

GType device_output_get_type();
G_DEFINE_TYPE(DeviceOutput, device_output, GSF_OUTPUT_TYPE)

DeviceOutput &deviceOutput(GsfOutput *output)
{
    return *reinterpret_cast<DeviceOutput *>(output);
}

gboolean closeDevice(GsfOutput *)
{
    return TRUE; // the device belongs to whoever opened it
}

gboolean seekDevice(GsfOutput *output, gsf_off_t offset, GSeekType whence)
{
    DeviceOutput &to = deviceOutput(output);
    if (whence == G_SEEK_CUR)
        offset += output->cur_offset;
    else if (whence == G_SEEK_END)
        offset += output->cur_size;
    to.hasFailed = to.hasFailed || !to.device->seek(offset);
    return TRUE;
}

gboolean writeDevice(GsfOutput *output, size_t size, const guint8 *data)
{
    DeviceOutput &to = deviceOutput(output);
    for (size_t done = 0; done < size && !to.hasFailed;) {
        const qint64 written
            = to.device->write(reinterpret_cast<const char *>(data) + done, qint64(size - done));
        to.hasFailed = written <= 0;
        done += size_t(
            written); // less than asked for when the disk fills up; the next attempt says so
    }
    return TRUE;
}

void device_output_init(DeviceOutput *output)
{
    output->device = nullptr;
    output->hasFailed = false;
}

void device_output_class_init(DeviceOutputClass *type)
{
    type->base.Close = closeDevice;
    type->base.Seek = seekDevice;
    type->base.Write = writeDevice;
}

} // namespace

namespace corvane {

namespace {

struct Release
{
    /// The library complains when a stream goes unclosed, which happens after a failure.
    template <typename T> void operator()(T *object) const
    {
        auto *output = GSF_OUTPUT(object);
        if (!gsf_output_is_closed(output))
            gsf_output_close(output);
        g_object_unref(object);
    }
};

class GsfCompoundFile : public CompoundFile
{
public:
    explicit GsfCompoundFile(QIODevice &device);

    void startStream(const char *name) override;
    void write(QByteArrayView bytes) override;
    void overwrite(quint32 position, QByteArrayView bytes) override;
    void finish() override;

private:
    void endStream();
    void check(gboolean done) const;

    // Released from the last to the first: the stream, the storage, what it writes to.
    std::unique_ptr<GsfOutput, Release> m_output;
    std::unique_ptr<GsfOutfile, Release> m_storage;
    std::unique_ptr<GsfOutput, Release> m_stream;
};

GsfCompoundFile::GsfCompoundFile(QIODevice &device)
    : m_output(GSF_OUTPUT(g_object_new(device_output_get_type(), nullptr)))
{
    deviceOutput(m_output.get()).device = &device;
    m_storage.reset(gsf_outfile_msole_new(m_output.get()));
    check(m_storage != nullptr);
}

void GsfCompoundFile::startStream(const char *name)
{
    endStream();
    m_stream.reset(gsf_outfile_new_child(m_storage.get(), name, FALSE));
    check(m_stream != nullptr);
}

void GsfCompoundFile::write(QByteArrayView bytes)
{
    check(gsf_output_write(
        m_stream.get(), size_t(bytes.size()), reinterpret_cast<const guint8 *>(bytes.data())));
}

void GsfCompoundFile::overwrite(quint32 position, QByteArrayView bytes)
{
    const gsf_off_t end = gsf_output_tell(m_stream.get());
    check(gsf_output_seek(m_stream.get(), position, G_SEEK_SET));
    write(bytes);
    check(gsf_output_seek(m_stream.get(), end, G_SEEK_SET));
}

void GsfCompoundFile::finish()
{
    endStream();
    check(gsf_output_close(GSF_OUTPUT(m_storage.get())));
}

void GsfCompoundFile::endStream()
{
    if (m_stream)
        check(gsf_output_close(m_stream.get()));
    m_stream.reset();
}

void GsfCompoundFile::check(gboolean done) const
{
    if (!done || deviceOutput(m_output.get()).hasFailed)
        throw CompoundFileError();
}

} // namespace

std::unique_ptr<CompoundFile> CompoundFile::create(QIODevice &device)
{
    static const bool isReady = (gsf_init(), true);
    Q_UNUSED(isReady);
    return std::make_unique<GsfCompoundFile>(device);
}

} // namespace corvane
