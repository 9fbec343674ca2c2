#pragma once
// A bowl of stand sections around the pitch, each a grid of `columns` by `rows` vertices drawn as
// one strip row by row, with triangles the size a real stand has, so that a figure measured on it
// is about geometry and not about filling the screen. 40 sections of 250 by 100 are 1,000,000
// vertices and about 2,000,000 indices; 40 of 50 by 25 are 50,000 vertices.
#include <QColor>
#include <QImage>
#include <QString>

#include <cmath>
#include <string>

#include "core/oif.h"

inline OIFFile BowlStadium(int sections, int columns, int rows) {
    OIFFile doc = NewOIFFile();
    const double pi = 3.14159265358979, width = 2 * pi / sections;
    for (int p = 0; p < sections; ++p) {
        OIFPart part;
        part.Header.Texture = p % 2 ? "tp01" : "rwh0";
        // The same 9,000 to 15,000 units of radius and 4,000 of height whatever the grid.
        const double step = 60.0 * 100 / rows;
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c) {
                const double angle = p * width + width * c / (columns - 1), radius = 9000 + step * r;
                part.Vertices.push_back({static_cast<float>(radius * std::cos(angle)),
                                         static_cast<float>(step * 2 / 3 * r),
                                         static_cast<float>(radius * std::sin(angle)), 0xFFFFFFFFu,
                                         static_cast<float>(c % 2), static_cast<float>(r % 2)});
            }
        for (int r = 0; r + 1 < rows; ++r) {
            if (r > 0) part.Indices.push_back(static_cast<std::int16_t>(r * columns));  // join to the next row
            for (int c = 0; c < columns; ++c) {
                part.Indices.push_back(static_cast<std::int16_t>(r * columns + c));
                part.Indices.push_back(static_cast<std::int16_t>((r + 1) * columns + c));
            }
            part.Indices.push_back(static_cast<std::int16_t>((r + 1) * columns + columns - 1));
        }
        part.Header.VertexCount = static_cast<std::int32_t>(part.Vertices.size());
        part.Header.IndexCount = static_cast<std::int32_t>(part.Indices.size());
        doc = AddPart(part, doc);
    }
    return doc;
}

// The bowl's two pictures, 256 by 256, in folder.
inline void WriteBowlPictures(const std::string& folder) {
    for (const char* name : {"tp01", "rwh0"}) {
        QImage image(256, 256, QImage::Format_RGB32);
        image.fill(QColor(name[0] == 't' ? 40 : 200, 120, 60));
        image.save(QString::fromStdString(folder + "/" + name + ".png"));
    }
}
