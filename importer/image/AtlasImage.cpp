#include "importer/image/AtlasImage.h"

#include <algorithm>
#include <stdexcept>

#include <QBuffer>
#include <QImageWriter>

#include "core/binaryOps.h"

QImage ReadPicture(const std::string& path) { return QImage(QString::fromStdString(path)); }

std::optional<PictureSize> ReadPictureSize(const std::string& path) {
    const QImage picture = ReadPicture(path);
    if (picture.isNull()) return std::nullopt;
    return PictureSize{picture.width(), picture.height()};
}

QImage PaintAtlas(std::int32_t sheetWidth, std::int32_t sheetHeight, const std::vector<ImportTexture>& textures,
                  const std::vector<QImage>& pictures) {
    QImage sheet(sheetWidth, sheetHeight, QImage::Format_RGB32);
    sheet.fill(Qt::black);
    std::vector<int> column;
    for (std::size_t i = 0; i < textures.size() && i < pictures.size(); ++i) {
        const ImportTexture& r = textures[i];
        const QImage picture = pictures[i].convertToFormat(QImage::Format_RGB32);
        const std::int64_t width = static_cast<std::int64_t>(r.Right) - r.Left;
        const std::int64_t height = static_cast<std::int64_t>(r.Bottom) - r.Top;
        if (picture.isNull() || width <= 0 || height <= 0) continue;
        const auto x0 = static_cast<int>(std::max<std::int64_t>(r.Left, 0));
        const auto x1 = static_cast<int>(std::min<std::int64_t>(r.Right, sheetWidth));
        const auto y0 = static_cast<int>(std::max<std::int64_t>(r.Top, 0));
        const auto y1 = static_cast<int>(std::min<std::int64_t>(r.Bottom, sheetHeight));
        if (x0 >= x1 || y0 >= y1) continue;
        // The picture pixel under the centre of sheet pixel x: (x - left + 1/2) * w / width.
        column.resize(static_cast<std::size_t>(x1 - x0));
        for (int x = x0; x < x1; ++x)
            column[static_cast<std::size_t>(x - x0)] =
                static_cast<int>((2 * (x - static_cast<std::int64_t>(r.Left)) + 1) * picture.width() / (2 * width));
        for (int y = y0; y < y1; ++y) {
            const auto row =
                static_cast<int>((2 * (y - static_cast<std::int64_t>(r.Top)) + 1) * picture.height() / (2 * height));
            const auto* in = reinterpret_cast<const QRgb*>(picture.constScanLine(row));
            auto* out = reinterpret_cast<QRgb*>(sheet.scanLine(y));
            for (int x = x0; x < x1; ++x) out[x] = in[column[static_cast<std::size_t>(x - x0)]];
        }
    }
    return sheet;
}

void SaveBitmap(const QImage& image, const std::string& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "BMP");
    if (!writer.write(image.convertToFormat(QImage::Format_RGB888)))
        throw std::runtime_error("The bitmap for \"" + path +
                                 "\" cannot be made: " + writer.errorString().toStdString());
    binaryOps::WriteBytesFile(ByteBuffer(bytes.begin(), bytes.end()), path);
}
