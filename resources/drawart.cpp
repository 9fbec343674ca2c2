// Draws the splash picture and the program icon, the latter also at the icon theme's sizes. Run once by hand when the art changes; the
// PNG files it writes are committed, so the build does not need it:
//   g++ -std=c++20 -fPIC drawart.cpp $(pkg-config --cflags --libs Qt6Gui) -o /tmp/drawart
//   QT_QPA_PLATFORM=offscreen /tmp/drawart resources/
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <cmath>

namespace {

// The bowl seen from above and behind one goal: tiers are ellipses shrinking towards the pitch.
void drawBowl(QPainter& p, QPointF centre, double rx, double ry, int tiers) {
    for (int i = 0; i < tiers; ++i) {
        const double t = double(i) / tiers;
        const int shade = 70 + int(60 * t);
        p.setBrush(QColor(shade, shade, shade + 12));
        p.setPen(QPen(QColor(30, 30, 40), 1));
        p.drawEllipse(centre, rx * (1.0 - 0.09 * i), ry * (1.0 - 0.09 * i));
    }
}

void drawPitch(QPainter& p, QPointF centre, double w, double h) {
    // A trapezium: the far touchline is shorter, which gives the picture its depth.
    const double far = w * 0.62;
    QPolygonF pitch;
    pitch << QPointF(centre.x() - far / 2, centre.y() - h / 2) << QPointF(centre.x() + far / 2, centre.y() - h / 2)
          << QPointF(centre.x() + w / 2, centre.y() + h / 2) << QPointF(centre.x() - w / 2, centre.y() + h / 2);
    QLinearGradient grass(0, centre.y() - h / 2, 0, centre.y() + h / 2);
    grass.setColorAt(0, QColor(40, 120, 45));
    grass.setColorAt(1, QColor(60, 165, 60));
    p.setBrush(grass);
    p.setPen(Qt::NoPen);
    p.drawPolygon(pitch);

    // Mown stripes.
    p.setClipRegion(QRegion(pitch.toPolygon()));
    for (int s = 0; s < 10; s += 2) {
        const double y0 = centre.y() - h / 2 + h * s / 10.0;
        p.fillRect(QRectF(centre.x() - w / 2, y0, w, h / 10.0), QColor(255, 255, 255, 18));
    }
    p.setClipping(false);

    p.setPen(QPen(QColor(235, 245, 235), 1.6));
    p.setBrush(Qt::NoBrush);
    p.drawPolygon(pitch);
    const double midY = centre.y();
    const double halfAt = (far + (w - far) * 0.5) / 2;
    p.drawLine(QPointF(centre.x() - halfAt, midY), QPointF(centre.x() + halfAt, midY));
    p.drawEllipse(QPointF(centre.x(), midY), w * 0.09, h * 0.11);
    // Penalty boxes.
    p.drawRect(QRectF(centre.x() - far * 0.2, centre.y() - h / 2, far * 0.4, h * 0.13));
    p.drawRect(QRectF(centre.x() - w * 0.22, centre.y() + h / 2 - h * 0.15, w * 0.44, h * 0.15));
}

void drawFloodlight(QPainter& p, QPointF foot, double height) {
    const QPointF head(foot.x(), foot.y() - height);
    p.setPen(QPen(QColor(150, 150, 165), 2.2));
    p.drawLine(foot, head);
    QRadialGradient glow(head, 46);
    glow.setColorAt(0, QColor(255, 252, 220, 230));
    glow.setColorAt(0.25, QColor(255, 245, 190, 110));
    glow.setColorAt(1, QColor(255, 240, 180, 0));
    p.setPen(Qt::NoPen);
    p.setBrush(glow);
    p.drawEllipse(head, 46, 46);
    p.setBrush(QColor(255, 255, 240));
    p.drawRect(QRectF(head.x() - 8, head.y() - 4, 16, 8));
}

QImage splash() {
    QImage img(480, 300, QImage::Format_ARGB32_Premultiplied);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);

    QLinearGradient sky(0, 0, 0, 300);
    sky.setColorAt(0, QColor(8, 14, 40));
    sky.setColorAt(0.6, QColor(22, 40, 88));
    sky.setColorAt(1, QColor(12, 20, 46));
    p.fillRect(img.rect(), sky);

    // A few stars above the roof line.
    p.setPen(Qt::NoPen);
    for (int i = 0; i < 60; ++i) {
        const double x = std::fmod(i * 97.13, 480.0);
        const double y = std::fmod(i * 41.7, 110.0);
        p.setBrush(QColor(255, 255, 255, 60 + (i * 37) % 150));
        p.drawEllipse(QPointF(x, y), 0.8, 0.8);
    }

    const QPointF centre(240, 190);
    drawBowl(p, centre, 232, 84, 5);
    drawPitch(p, QPointF(240, 193), 240, 64);
    drawFloodlight(p, QPointF(36, 165), 88);
    drawFloodlight(p, QPointF(444, 165), 88);
    drawFloodlight(p, QPointF(105, 150), 52);
    drawFloodlight(p, QPointF(375, 150), 52);

    // Title with a soft shadow so it reads against the sky.
    QFont title("DejaVu Sans", 30, QFont::Black);
    title.setLetterSpacing(QFont::PercentageSpacing, 104);
    p.setFont(title);
    const QRectF band(0, 22, 480, 50);
    p.setPen(QColor(0, 0, 0, 160));
    p.drawText(band.translated(2, 2), Qt::AlignCenter, "VORN Terramason");
    QLinearGradient gold(0, 22, 0, 72);
    gold.setColorAt(0, QColor(255, 236, 150));
    gold.setColorAt(1, QColor(230, 170, 40));
    p.setPen(QPen(QBrush(gold), 1));
    p.drawText(band, Qt::AlignCenter, "VORN Terramason");

    QFont sub("DejaVu Sans", 10);
    p.setFont(sub);
    p.setPen(QColor(200, 215, 240));
    p.drawText(QRectF(0, 70, 480, 20), Qt::AlignCenter, "Stadium editor for FIFA Football 2003");

    p.setPen(QPen(QColor(230, 170, 40), 2));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(1, 1, 478, 298));
    return img;
}

QImage icon(int size) {
    QImage img(size, size, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::transparent);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 64.0, size / 64.0);
    p.setPen(QPen(QColor(20, 24, 40), 1.5));
    p.setBrush(QColor(90, 96, 116));
    p.drawEllipse(QRectF(2, 10, 60, 44));
    p.setBrush(QColor(130, 136, 156));
    p.drawEllipse(QRectF(8, 15, 48, 34));
    p.setBrush(QColor(50, 150, 55));
    p.setPen(QPen(QColor(240, 250, 240), 1.2));
    p.drawRoundedRect(QRectF(16, 22, 32, 20), 2, 2);
    p.drawLine(QPointF(32, 22), QPointF(32, 42));
    p.drawEllipse(QPointF(32, 32), 4, 4);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 240, 170));
    p.drawEllipse(QPointF(6, 8), 4, 4);
    p.drawEllipse(QPointF(58, 8), 4, 4);
    return img;
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString(".");
    bool ok = splash().save(folder + "/splash.png");
    ok = icon(64).save(folder + "/terramason.png") && ok;
    // The desktop's icon theme wants the program's icon at each of its usual sizes.
    for (int size : {16, 24, 32, 48, 64, 128, 256}) {
        const QString dir = folder + QString("/linux/icons/%1x%1").arg(size);
        QDir().mkpath(dir);
        ok = icon(size).save(dir + "/terramason.png") && ok;
    }
    return ok ? 0 : 1;
}
