#include "platform/engine/barcodes.h"

#include <zint.h>

#include <algorithm>
#include <memory>

namespace corvane {

namespace {

constexpr int kQuietBars = 10; ///< modules at each side of Code 128
constexpr int kQuietSquares = 4; ///< modules around a QR code
constexpr int kLeastModule = 8; ///< twips; scanners miss anything finer
constexpr qsizetype kLongestText = 4000;

struct SymbolDeleter
{
    void operator()(zint_symbol *symbol) const { ZBarcode_Delete(symbol); }
};

BarcodeModules modulesOf(const zint_symbol &symbol)
{
    BarcodeModules modules{symbol.width, symbol.rows, {}};
    modules.dark.reserve(size_t(symbol.width) * size_t(symbol.rows));
    for (int row = 0; row < symbol.rows; ++row) {
        for (int column = 0; column < symbol.width; ++column)
            modules.dark.push_back(
                ((symbol.encoded_data[row][column / 8] >> (column % 8)) & 1) != 0);
    }
    return modules;
}

} // namespace

std::variant<BarcodeModules, QString> encodeBarcode(BarcodeKind kind, const QString &text)
{
    if (text.size() > kLongestText)
        return QStringLiteral("the text is too long for a barcode");
    const std::unique_ptr<zint_symbol, SymbolDeleter> symbol(ZBarcode_Create());
    if (!symbol)
        return QStringLiteral("out of memory");
    symbol->symbology = kind == BarcodeKind::Qr ? BARCODE_QRCODE : BARCODE_CODE128;
    symbol->input_mode = UNICODE_MODE;
    const QByteArray utf8 = text.toUtf8();
    const int error = ZBarcode_Encode(
        symbol.get(), reinterpret_cast<const unsigned char *>(utf8.constData()), int(utf8.size()));
    if (error >= ZINT_ERROR) {
        return kind == BarcodeKind::Qr
            ? QStringLiteral("the text does not fit into a QR code")
            : QStringLiteral("Code 128 cannot hold \"%1\"").arg(text.left(40));
    }
    return modulesOf(*symbol);
}

std::variant<std::vector<FilledRect>, QString> placeBarcode(
    BarcodeKind kind, const BarcodeModules &modules, Twips width, Twips height, QRgb colour)
{
    const bool isQr = kind == BarcodeKind::Qr;
    const int across = modules.width + 2 * (isQr ? kQuietSquares : kQuietBars);
    const int room = isQr ? std::min(width, height).count() : width.count();
    const int module = room / across;
    if (module < kLeastModule || height.count() <= 0) {
        return QStringLiteral("the barcode needs a frame %1 inches wide")
            .arg(across * kLeastModule / 1440.0, 0, 'f', 2);
    }
    const int left = (width.count() - module * modules.width) / 2;
    const int barHeight = isQr ? module : height.count() / modules.rows;
    const int top = (height.count() - barHeight * modules.rows) / 2;
    std::vector<FilledRect> bars;
    for (int row = 0; row < modules.rows; ++row) {
        for (int begin = 0; begin < modules.width;) {
            int end = begin;
            while (end < modules.width && modules.isDark(row, end))
                ++end;
            if (end > begin)
                bars.push_back({left + begin * module, top + row * barHeight,
                    (end - begin) * module, barHeight, colour});
            begin = end + 1;
        }
    }
    return bars;
}

} // namespace corvane
