#pragma once
// The atlas as pixels: decoding the model's pictures and painting them into one Windows bitmap.
// Only Qt's image classes, no widgets, so that the editor and terramason-cli paint alike.
#include <optional>
#include <string>
#include <vector>

#include <QImage>

#include "importer/stmapOps.h"

// The picture of a file; a null image when it cannot be decoded.
QImage ReadPicture(const std::string& path);
// A PictureReader over ReadPicture.
std::optional<PictureSize> ReadPictureSize(const std::string& path);

// The sheet on black with each picture stretched into its texture's rectangle, in list order, so
// a later texture wins where two overlap; what lies off the sheet is cut away. Each sheet pixel
// takes the picture pixel under its centre, so a picture twice its size in the layout doubles
// every pixel and one at its own size is copied one to one.
QImage PaintAtlas(std::int32_t sheetWidth, std::int32_t sheetHeight, const std::vector<ImportTexture>& textures,
                  const std::vector<QImage>& pictures);

// Writes the image as an uncompressed 24-bit Windows bitmap, through a temporary file beside the
// target. Throws std::runtime_error with a message for the user.
void SaveBitmap(const QImage& image, const std::string& path);
