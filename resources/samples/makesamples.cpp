// Makes the sample stadium of resources/samples: a pitch, four stands, their crowd rows and
// crowd planes, adboards, banners, a small textured scoreboard for the Stadium Importer, and
// every picture they use. Everything is drawn or computed here; no outside model or picture goes
// in. Run by hand when the sample changes (scripts/make-samples); the files it writes are
// committed, so neither the build nor the tests need it.
//
// Units are the game's: a 3DS unit is 100 of them, and a 3DS point (x, y, z) is the game point
// (100 x, 100 z, -100 y). Y is up; the pitch lies at y = 0 around the origin.
#include <QColor>
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "core/OIFOps.h"
#include "core/binaryOps.h"
#include "core/oif.h"
#include "support/Chunks3DS.h"

namespace {

struct P3 {
    float x, y, z;
};
P3 operator+(P3 a, P3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
P3 operator*(P3 a, float s) { return {a.x * s, a.y * s, a.z * s}; }
P3 Up(P3 a, float h) { return {a.x, a.y + h, a.z}; }
float F(int i) { return static_cast<float>(i); }

// A quad as the stadium's rows hold it, seen from its front: bottom left, bottom right, top
// right, top left.
struct Quad {
    P3 bl, br, tr, tl;
};

// One stand: its front edge seen from the pitch, and the way back, away from the pitch.
struct Stand {
    const char* name;
    P3 frontLeft, frontRight;
    P3 back;  // unit vector, horizontal
    bool home;
};

constexpr int kSteps = 14;
constexpr float kTread = 150;  // the crowd spacing the wizard proposes
constexpr float kRiser = 75;
constexpr float kFrontWall = 100;
constexpr float kDepth = static_cast<float>(kSteps) * kTread;
constexpr float kBackWall = 1750;
constexpr float kRowHeight = 260;  // the optimised crowd height the options propose
constexpr std::uint32_t kWhite = 0xFFF0F0F0;

const std::vector<Stand>& Stands() {
    // Long sides along x, ends along z; the corners stay open so every stand is one plane.
    static const std::vector<Stand> stands = {
        {"North", {-5000, 0, -4100}, {5000, 0, -4100}, {0, 0, -1}, true},
        {"South", {5000, 0, 4100}, {-5000, 0, 4100}, {0, 0, 1}, false},
        {"West", {-6000, 0, 3200}, {-6000, 0, -3200}, {-1, 0, 0}, true},
        {"East", {6000, 0, -3200}, {6000, 0, 3200}, {1, 0, 0}, true},
    };
    return stands;
}

P3 At(const Stand& s, float along, float depth, float height) {
    const P3 p = s.frontLeft + (s.frontRight + s.frontLeft * -1.0f) * along + s.back * depth;
    return {p.x, height, p.z};
}
float Length(const Stand& s) {
    const float dx = s.frontRight.x - s.frontLeft.x, dz = s.frontRight.z - s.frontLeft.z;
    return std::sqrt(dx * dx + dz * dz);
}

// A quad into a run of quads of one texture, in the vertex order of a crowd row: V0 top right,
// V1 bottom right, V2 bottom left, V3 top left. UVs cover u0..u1 left to right, v 1 at the bottom.
void AddQuad(PolygonPart& part, const Quad& q, float u0, float u1, float v0 = 0, float v1 = 1) {
    auto vertex = [](P3 p, float u, float v) {
        OIFVertex o;
        o.X = p.x, o.Y = p.y, o.Z = p.z, o.Shadow = kWhite, o.U = u, o.V = v;
        return o;
    };
    part.Vertices.push_back(vertex(q.tr, u1, v0));
    part.Vertices.push_back(vertex(q.br, u1, v1));
    part.Vertices.push_back(vertex(q.bl, u0, v1));
    part.Vertices.push_back(vertex(q.tl, u0, v0));
    ++part.Count;
}

OIFPart NamedPart(const PolygonPart& quads, const std::string& name) {
    OIFPart part = MakePartFromQuads(quads);
    part.Header.Name = name;
    return part;
}

// The stepped terrace of one stand: a riser and a tread per step, the concrete picture tiled
// once per 500 units along the stand.
OIFPart Terrace(const Stand& s) {
    PolygonPart quads;
    quads.Texture = "tp00";
    const float tiles = Length(s) / 500;
    for (int k = 0; k < kSteps; ++k) {
        const float d0 = F(k) * kTread, d1 = d0 + kTread;
        const float y0 = kFrontWall + F(k) * kRiser, y1 = y0 + kRiser;
        AddQuad(quads, {At(s, 0, d0, y0), At(s, 1, d0, y0), At(s, 1, d0, y1), At(s, 0, d0, y1)}, 0, tiles, 0.75f, 1);
        AddQuad(quads, {At(s, 0, d0, y1), At(s, 1, d0, y1), At(s, 1, d1, y1), At(s, 0, d1, y1)}, 0, tiles, 0, 0.75f);
    }
    return NamedPart(quads, std::string(s.name) + " terrace");
}

// Front wall, back wall and both end walls of every stand, in one part.
OIFPart Walls() {
    PolygonPart quads;
    quads.Texture = "tp01";
    for (const Stand& s : Stands()) {
        const float tiles = Length(s) / 500;
        AddQuad(quads, {At(s, 0, 0, 0), At(s, 1, 0, 0), At(s, 1, 0, kFrontWall), At(s, 0, 0, kFrontWall)}, 0, tiles,
                0.9f, 1);
        // The back wall faces the pitch, so it is seen from behind the last row.
        AddQuad(quads,
                {At(s, 0, kDepth, 0), At(s, 1, kDepth, 0), At(s, 1, kDepth, kBackWall), At(s, 0, kDepth, kBackWall)}, 0,
                tiles, 0, 1);
        const float top = kFrontWall + kSteps * kRiser;
        AddQuad(quads, {At(s, 0, kDepth, 0), At(s, 0, 0, 0), At(s, 0, 0, kFrontWall), At(s, 0, kDepth, top)}, 0, 4,
                0.4f, 1);
        AddQuad(quads, {At(s, 1, 0, 0), At(s, 1, kDepth, 0), At(s, 1, kDepth, top), At(s, 1, 0, kFrontWall)}, 0, 4,
                0.4f, 1);
    }
    return NamedPart(quads, "Stand walls");
}

OIFPart Pitch() {
    PolygonPart quads;
    quads.Texture = "gras";
    AddQuad(quads, {{-5900, 0, 4000}, {5900, 0, 4000}, {5900, 0, -4000}, {-5900, 0, -4000}}, 0, 1);
    return NamedPart(quads, "Pitch");
}

// Where the crowd stands: the plane from the first step's top to the back wall at the height
// of the last step, so that rows stepped 150 apart along it stand on the treads.
Quad CrowdPlane(const Stand& s) {
    const float y0 = kFrontWall + kRiser, y1 = y0 + kSteps * kRiser;
    return {At(s, 0, 0, y0), At(s, 1, 0, y0), At(s, 1, kDepth, y1), At(s, 0, kDepth, y1)};
}

// ---- files ----------------------------------------------------------------------------------

void WriteText(const QString& path, const std::string& text) {
    std::ofstream out(path.toStdString(), std::ios::binary);
    out << text;
}

void WriteBytes(const QString& path, const chunks3ds::Bytes3DS& bytes) {
    std::ofstream out(path.toStdString(), std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::string Number(float f) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%g", static_cast<double>(f));
    return buffer;
}

// The crowd rows of every stand as RAV exported text: one polygon per row, its four corners in
// the order the crowd import reads them, the group naming the crowd ("rowb" away).
std::string CrowdRowsText() {
    std::string text = "version=1\r\n";
    int count = 0;
    std::string body;
    for (const Stand& s : Stands()) {
        for (int i = 0; i < kSteps; ++i) {
            const float d = F(i) * kTread, y = kFrontWall + F(i + 1) * kRiser;
            const P3 bl = At(s, 0, d, y), br = At(s, 1, d, y);
            const P3 corners[4] = {bl, br, Up(br, kRowHeight), Up(bl, kRowHeight)};
            const float uv[4][2] = {{0, 1}, {1, 1}, {1, 0}, {0, 0}};
            body += "[polygon " + std::to_string(count) + "]\r\n";
            body += "name=" + std::string(s.name) + " row " + std::to_string(i + 1) + "\r\n";
            body += "vertexCount=4\r\n";
            for (int k = 0; k < 4; ++k)
                body += "  " + Number(corners[k].x) + "," + Number(corners[k].y) + "," + Number(corners[k].z) + "," +
                        Number(uv[k][0]) + "," + Number(uv[k][1]) + ",FFFFFF\r\n";
            body += "groupCount=1\r\n";
            body += std::string("name=") + (s.home ? "rowa" : "rowb") + "\r\n";
            body += "indexCount=4\r\nindices=0,1,2,3\r\n";
            ++count;
        }
    }
    return text + "polygonCount=" + std::to_string(count) + "\r\n" + body;
}

// A four-vertex mesh of one quad, with its two faces and UVs; the importers read its corners
// in the order bottom left, bottom right, top right, top left.
std::array<float, 3> To3DS(P3 p) { return {p.x / 100, -p.z / 100, p.y / 100}; }

chunks3ds::Bytes3DS QuadMesh(const std::string& name, const Quad& q) {
    using namespace chunks3ds;
    return Object(name, {Vertices({To3DS(q.bl), To3DS(q.br), To3DS(q.tr), To3DS(q.tl)}),
                         TexVerts({{0, 0}, {1, 0}, {1, 1}, {0, 1}}), Faces({{0, 1, 2}, {0, 2, 3}})});
}

chunks3ds::Bytes3DS File3DS(const std::vector<chunks3ds::Bytes3DS>& editChunks) {
    using namespace chunks3ds;
    Bytes3DS edit;
    for (const Bytes3DS& c : editChunks) edit.insert(edit.end(), c.begin(), c.end());
    return Chunk(0x4D4D, {Chunk(0x0002, {I32(3)}), Chunk(0x3D3D, {edit})});
}

chunks3ds::Bytes3DS CrowdPlanes() {
    std::vector<chunks3ds::Bytes3DS> meshes;
    for (const Stand& s : Stands()) meshes.push_back(QuadMesh(std::string(s.name) + " crowd", CrowdPlane(s)));
    return File3DS(meshes);
}

// Boards stand 300 units off the touch and goal lines, 90 high, 600 long with a gap of 20.
chunks3ds::Bytes3DS Adboards() {
    std::vector<chunks3ds::Bytes3DS> meshes;
    struct Line {
        P3 start, step;
        int boards;
    };
    const Line lines[] = {
        {{-4810, 0, -3700}, {1, 0, 0}, 16},
        {{4810, 0, 3700}, {-1, 0, 0}, 16},
        {{-5550, 0, 3100}, {0, 0, -1}, 10},
        {{5550, 0, -3100}, {0, 0, 1}, 10},
    };
    int n = 0;
    for (const Line& line : lines)
        for (int b = 0; b < line.boards; ++b) {
            const P3 left = line.start + line.step * (F(b) * 620.0f), right = left + line.step * 600.0f;
            meshes.push_back(QuadMesh("board" + std::to_string(n++), {left, right, Up(right, 90), Up(left, 90)}));
        }
    return File3DS(meshes);
}

// Banners and flags hang on the back walls, above the last row: six on a long side, four at
// an end, 600 wide and 250 high.
chunks3ds::Bytes3DS Banners() {
    std::vector<chunks3ds::Bytes3DS> meshes;
    int n = 0;
    for (const Stand& s : Stands()) {
        const int count = Length(s) > 8000 ? 6 : 4;
        const float width = 600 / Length(s);
        for (int b = 0; b < count; ++b) {
            const float centre = (F(b) + 0.5f) / F(count);
            const float y0 = 1450, y1 = 1700;
            const float depth = kDepth - 5;  // just in front of the wall, so the two do not fight
            meshes.push_back(QuadMesh("banner" + std::to_string(n++),
                                      {At(s, centre - width / 2, depth, y0), At(s, centre + width / 2, depth, y0),
                                       At(s, centre + width / 2, depth, y1), At(s, centre - width / 2, depth, y1)}));
        }
    }
    return File3DS(meshes);
}

// A scoreboard on two legs in the north-west corner, facing the pitch: a model of several
// textures, as the Stadium Importer packs them into one sheet.
chunks3ds::Bytes3DS Scoreboard() {
    using namespace chunks3ds;
    const P3 right{-0.70710678f, 0, 0.70710678f};  // along the board, seen from the pitch
    const P3 back{-0.70710678f, 0, -0.70710678f};
    const P3 base = P3{-6300, 0, -4400};
    auto at = [&](float along, float depth, float height) { return Up(base + right * along + back * depth, height); };
    auto box = [&](const std::string& name, float a0, float a1, float d0, float d1, float h0, float h1,
                   const std::string& material, const std::string& frontMaterial) {
        // Eight corners, six sides of two faces; the front side may carry its own material.
        const std::vector<P3> c = {at(a0, d0, h0), at(a1, d0, h0), at(a1, d0, h1), at(a0, d0, h1),
                                   at(a0, d1, h0), at(a1, d1, h0), at(a1, d1, h1), at(a0, d1, h1)};
        std::vector<std::array<float, 3>> vertices;
        std::vector<std::array<float, 2>> uvs;
        std::vector<std::array<std::uint16_t, 3>> faces;
        const int sides[6][4] = {{0, 1, 2, 3}, {5, 4, 7, 6}, {1, 5, 6, 2}, {4, 0, 3, 7}, {3, 2, 6, 7}, {4, 5, 1, 0}};
        for (const auto& side : sides) {
            const auto first = static_cast<std::uint16_t>(vertices.size());
            const float uv[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
            for (int k = 0; k < 4; ++k) {
                vertices.push_back(To3DS(c[static_cast<std::size_t>(side[k])]));
                uvs.push_back({uv[k][0], uv[k][1]});
            }
            faces.push_back({first, static_cast<std::uint16_t>(first + 1), static_cast<std::uint16_t>(first + 2)});
            faces.push_back({first, static_cast<std::uint16_t>(first + 2), static_cast<std::uint16_t>(first + 3)});
        }
        // The front side is faces 0 and 1; the other ten carry the box's own material.
        const Bytes3DS front = Chunk(0x4130, {Text(frontMaterial), I16(2), I16(0), I16(1)});
        Bytes3DS rest = Chunk(0x4130, {Text(material), I16(10)});
        for (std::int16_t f = 2; f < 12; ++f) {
            const Bytes3DS index = I16(f);
            rest.insert(rest.end(), index.begin(), index.end());
        }
        const auto length = static_cast<std::uint32_t>(rest.size());
        std::memcpy(rest.data() + 2, &length, 4);
        return Object(name, {Vertices(vertices), TexVerts(uvs), Faces(faces, {front, rest})});
    };
    std::vector<Bytes3DS> chunks = {
        Material("Screen", "screen.png"),
        Material("Steel", "steel.png"),
        Material("Clock", "clock.png"),
        box("board", -800, 800, 0, 60, 900, 1800, "Steel", "Screen"),
        box("clock", -250, 250, -10, 0, 1820, 2020, "Steel", "Clock"),
        box("left leg", -650, -550, 10, 50, 0, 900, "Steel", "Steel"),
        box("right leg", 550, 650, 10, 50, 0, 900, "Steel", "Steel"),
    };
    return File3DS(chunks);
}

// ---- pictures -------------------------------------------------------------------------------

void Save(const QImage& image, const QString& path) {
    if (!image.save(path, "PNG", 9)) std::fprintf(stderr, "could not write %s\n", qPrintable(path));
}

// Mown stripes and the markings of a 105 x 68 pitch on the 118 x 80 quad.
QImage Grass() {
    QImage img(512, 512, QImage::Format_RGB32);
    QPainter p(&img);
    const double sx = 512.0 / 11800, sz = 512.0 / 8000;
    for (int i = 0; i < 16; ++i)
        p.fillRect(QRectF(i * 32.0, 0, 32, 512), i % 2 ? QColor(62, 138, 58) : QColor(72, 154, 66));
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(235, 240, 235), 2.0));
    p.setBrush(Qt::NoBrush);
    auto x = [&](double gx) { return 256 + gx * sx; };
    auto z = [&](double gz) { return 256 + gz * sz; };
    p.drawRect(QRectF(QPointF(x(-5250), z(-3400)), QPointF(x(5250), z(3400))));
    p.drawLine(QPointF(x(0), z(-3400)), QPointF(x(0), z(3400)));
    p.drawEllipse(QPointF(x(0), z(0)), 915 * sx, 915 * sz);
    for (int side : {-1, 1}) {
        p.drawRect(QRectF(QPointF(x(side * 5250), z(-2016)), QPointF(x(side * (5250 - 1650)), z(2016))));
        p.drawRect(QRectF(QPointF(x(side * 5250), z(-916)), QPointF(x(side * (5250 - 550)), z(916))));
    }
    return img;
}

// Concrete: treads in the top three quarters, the riser's darker face below.
QImage Concrete() {
    QImage img(128, 128, QImage::Format_RGB32);
    std::mt19937 random(7);
    for (int y = 0; y < 128; ++y)
        for (int xx = 0; xx < 128; ++xx) {
            const int base = y < 96 ? 150 : 112;
            const int g = base + static_cast<int>(random() % 17) - 8;
            img.setPixel(xx, y, qRgb(g, g, g + 4));
        }
    QPainter p(&img);
    p.setPen(QColor(90, 90, 96));
    p.drawLine(0, 95, 127, 95);
    p.setPen(QColor(70, 110, 170));
    for (int xx = 8; xx < 128; xx += 32) p.fillRect(xx, 40, 18, 12, QColor(60, 100, 160));  // seats
    return img;
}

// Cladding panels of the stand walls.
QImage Cladding() {
    QImage img(128, 128, QImage::Format_RGB32);
    QPainter p(&img);
    for (int i = 0; i < 4; ++i) p.fillRect(i * 32, 0, 32, 128, i % 2 ? QColor(58, 70, 92) : QColor(64, 77, 100));
    p.setPen(QColor(30, 36, 48));
    for (int i = 0; i < 4; ++i) p.drawLine(i * 32, 0, i * 32, 127);
    p.fillRect(0, 0, 128, 6, QColor(200, 170, 40));
    return img;
}

// One crowd picture: two staggered rows of people on seats, shirts mostly in the team's colour.
QImage Crowd(QColor shirt, QColor second, unsigned seed) {
    QImage img(128, 64, QImage::Format_ARGB32);
    img.fill(QColor(45, 45, 52));
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    std::mt19937 random(seed);
    const QColor skins[] = {{240, 200, 170}, {200, 150, 110}, {140, 95, 60}, {250, 215, 190}, {95, 65, 45}};
    for (int row = 0; row < 2; ++row)
        for (int i = 0; i < 11; ++i) {
            const double cx = 6 + i * 11.6 + (row ? 5.8 : 0) + static_cast<int>(random() % 3) - 1;
            const double top = row ? 34 : 6;
            const QColor body = random() % 5 == 0 ? second : shirt;
            p.setPen(Qt::NoPen);
            p.setBrush(body.darker(100 + static_cast<int>(random() % 30)));
            p.drawRoundedRect(QRectF(cx - 5, top + 11, 10, 16), 3, 3);
            p.setBrush(skins[random() % 5]);
            p.drawEllipse(QPointF(cx, top + 7), 3.6, 4.2);
            if (random() % 4 == 0) {  // a raised arm
                p.setBrush(body);
                p.drawRect(QRectF(cx + 4, top, 2.5, 13));
            }
        }
    return img;
}

// Three boards to a picture, one band each, made of shapes and a word.
QImage Boards(const QColor (&colours)[3], const char* const (&words)[3]) {
    QImage img(256, 256, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    for (int band = 0; band < 3; ++band) {
        const QRectF r(0, band * 256.0 / 3, 256, 256.0 / 3);
        p.fillRect(r, colours[band]);
        p.setPen(Qt::NoPen);
        p.setBrush(colours[band].lighter(160));
        p.drawEllipse(QPointF(30, r.center().y()), 18, 18);
        p.setPen(QColor(250, 250, 250));
        QFont font("DejaVu Sans", 26, QFont::Bold);
        p.setFont(font);
        p.drawText(r.adjusted(56, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, words[band]);
    }
    return img;
}

QImage Banner(QColor a, QColor b, bool flag) {
    QImage img(128, 64, QImage::Format_RGB32);
    QPainter p(&img);
    if (flag) {
        for (int i = 0; i < 3; ++i) p.fillRect(i * 128 / 3, 0, 128 / 3 + 1, 64, i == 1 ? b : a);
    } else {
        p.fillRect(img.rect(), a);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(b, 6));
        p.drawLine(0, 64, 128, 0);
        p.setPen(QColor(255, 255, 255));
        p.setFont(QFont("DejaVu Sans", 14, QFont::Bold));
        p.drawText(img.rect(), Qt::AlignCenter, "ALLEZ");
    }
    return img;
}

// A lit display: the score on the board's screen, the time on its clock.
QImage LitText(int width, int height, QColor background, QColor light, int points, const char* text) {
    QImage img(width, height, QImage::Format_RGB32);
    img.fill(background);
    QPainter p(&img);
    p.setPen(light);
    p.setFont(QFont("DejaVu Sans Mono", points, QFont::Bold));
    p.drawText(img.rect(), Qt::AlignCenter, text);
    return img;
}

QImage Steel() {
    QImage img(32, 32, QImage::Format_RGB32);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x) {
            const int g = 150 + ((x + y) % 8) * 3;
            img.setPixel(x, y, qRgb(g, g, g + 6));
        }
    return img;
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: makesamples OUTPUT-FOLDER\n");
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    out.mkpath("textures");
    out.mkpath("scoreboard");

    OIFFile doc = NewOIFFile();
    doc = AddPart(Pitch(), doc);
    for (const Stand& s : Stands()) doc = AddPart(Terrace(s), doc);
    doc = AddPart(Walls(), doc);
    binaryOps::WriteBytesFile(SaveOIF(doc), out.filePath("stadium.oif").toStdString());

    WriteText(out.filePath("crowds.txt"), CrowdRowsText());
    WriteBytes(out.filePath("crowdplanes.3ds"), CrowdPlanes());
    WriteBytes(out.filePath("adboards.3ds"), Adboards());
    WriteBytes(out.filePath("banners.3ds"), Banners());
    WriteBytes(out.filePath("scoreboard/scoreboard.3ds"), Scoreboard());

    const QString tex = out.filePath("textures/");
    Save(Grass(), tex + "gras.png");
    Save(Concrete(), tex + "tp00.png");
    Save(Cladding(), tex + "tp01.png");
    const QColor home(200, 30, 40), homeSecond(240, 240, 240), away(30, 80, 200), awaySecond(250, 210, 40);
    for (unsigned i = 0; i < 4; ++i) {
        Save(Crowd(home, homeSecond, 11 + i), tex + QString("rwh%1.png").arg(i));
        Save(Crowd(away, awaySecond, 21 + i), tex + QString("rwa%1.png").arg(i));
    }
    const QColor boardColours[3][3] = {{{20, 60, 150}, {180, 30, 30}, {20, 120, 60}},
                                       {{230, 120, 20}, {60, 60, 70}, {120, 40, 140}},
                                       {{10, 130, 160}, {200, 160, 20}, {30, 30, 30}}};
    const char* const boardWords[3][3] = {
        {"TERRA", "MASON", "STADIA"}, {"PITCH", "KICK", "GOAL"}, {"LINUX", "OPEN", "CROWD"}};
    for (int i = 0; i < 3; ++i)
        Save(Boards(boardColours[i], boardWords[i]), tex + QString("adb%1.png").arg(QChar('a' + i)));
    // Banners and flags alternate over three pictures each, for the home team and the away team.
    for (int i = 0; i < 3; ++i) {
        const QString letter(QChar('a' + i));
        const int shade = 100 + 25 * i;
        Save(Banner(home.darker(shade), homeSecond, false), tex + "hbn" + letter + ".png");
        Save(Banner(i == 1 ? homeSecond : home.darker(shade), i == 1 ? home : homeSecond, true),
             tex + "hfl" + letter + ".png");
        Save(Banner(away.darker(shade), awaySecond, false), tex + "abn" + letter + ".png");
        Save(Banner(i == 1 ? awaySecond : away.darker(shade), i == 1 ? away : awaySecond, true),
             tex + "afl" + letter + ".png");
    }

    const QString board = out.filePath("scoreboard/");
    Save(LitText(128, 64, QColor(12, 14, 20), QColor(255, 190, 40), 18, "2 - 1"), board + "screen.png");
    Save(Steel(), board + "steel.png");
    Save(LitText(64, 32, QColor(20, 20, 20), QColor(90, 230, 90), 12, "45:00"), board + "clock.png");
    return 0;
}
