// Draws the toolbar pictures of the main window, each at 24 and 48 pixels (the second for screens
// that double their pixels). Run once by hand when the art changes; the PNG files it writes are
// committed, so the build does not need it:
//   g++ -std=c++20 -fPIC drawicons.cpp $(pkg-config --cflags --libs Qt6Gui) -o /tmp/drawicons
//   QT_QPA_PLATFORM=offscreen /tmp/drawicons resources/icons/
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <functional>

namespace {

const QColor Ink(40, 44, 60);

// A sheet of paper with its top right corner folded over.
void drawSheet(QPainter& p, QRectF r) {
    const double fold = r.width() * 0.32;
    QPainterPath sheet;
    sheet.moveTo(r.left(), r.top());
    sheet.lineTo(r.right() - fold, r.top());
    sheet.lineTo(r.right(), r.top() + fold);
    sheet.lineTo(r.right(), r.bottom());
    sheet.lineTo(r.left(), r.bottom());
    sheet.closeSubpath();
    QLinearGradient paper(r.topLeft(), r.bottomRight());
    paper.setColorAt(0, QColor(255, 255, 255));
    paper.setColorAt(1, QColor(222, 226, 236));
    p.setPen(QPen(Ink, 1));
    p.setBrush(paper);
    p.drawPath(sheet);
    QPainterPath corner;
    corner.moveTo(r.right() - fold, r.top());
    corner.lineTo(r.right() - fold, r.top() + fold);
    corner.lineTo(r.right(), r.top() + fold);
    p.setBrush(QColor(200, 206, 220));
    p.drawPath(corner);
}

void textLines(QPainter& p, QRectF r, int count) {
    p.setPen(QPen(QColor(120, 130, 160), 1));
    for (int i = 0; i < count; ++i) {
        const double y = r.top() + i * 2.5;
        p.drawLine(QPointF(r.left(), y), QPointF(r.right() - (i % 2) * 2, y));
    }
}

void drawNew(QPainter& p) {
    drawSheet(p, QRectF(4.5, 2.5, 14, 19));
    textLines(p, QRectF(7, 10, 9, 8), 4);
    // A spark in the corner: something new.
    QPainterPath star;
    for (int i = 0; i < 10; ++i) {
        const double a = -M_PI / 2 + i * M_PI / 5;
        const double radius = i % 2 ? 2.0 : 4.8;
        const QPointF pt(18.5 + radius * std::cos(a), 5.5 + radius * std::sin(a));
        if (i == 0) star.moveTo(pt);
        else star.lineTo(pt);
    }
    star.closeSubpath();
    p.setPen(QPen(QColor(150, 110, 0), 0.8));
    p.setBrush(QColor(255, 214, 60));
    p.drawPath(star);
}

void drawOpen(QPainter& p) {
    p.setPen(QPen(QColor(120, 84, 10), 1));
    // Back of the folder with its tab.
    QPainterPath back;
    back.moveTo(2.5, 19.5);
    back.lineTo(2.5, 5.5);
    back.lineTo(8.5, 5.5);
    back.lineTo(10.5, 7.5);
    back.lineTo(19.5, 7.5);
    back.lineTo(19.5, 19.5);
    back.closeSubpath();
    p.setBrush(QColor(214, 160, 40));
    p.drawPath(back);
    // A sheet inside.
    p.setBrush(Qt::white);
    p.setPen(QPen(Ink, 0.8));
    p.drawRect(QRectF(5.5, 9.5, 11, 8));
    // The front flap, tilted open.
    QPainterPath front;
    front.moveTo(2.5, 19.5);
    front.lineTo(6.5, 11.5);
    front.lineTo(22.5, 11.5);
    front.lineTo(18.5, 19.5);
    front.closeSubpath();
    QLinearGradient flap(0, 11, 0, 20);
    flap.setColorAt(0, QColor(255, 214, 100));
    flap.setColorAt(1, QColor(236, 178, 50));
    p.setPen(QPen(QColor(120, 84, 10), 1));
    p.setBrush(flap);
    p.drawPath(front);
}

void drawSave(QPainter& p) {
    QPainterPath disk;
    disk.moveTo(3.5, 3.5);
    disk.lineTo(18, 3.5);
    disk.lineTo(20.5, 6);
    disk.lineTo(20.5, 20.5);
    disk.lineTo(3.5, 20.5);
    disk.closeSubpath();
    QLinearGradient body(0, 3, 0, 21);
    body.setColorAt(0, QColor(70, 110, 190));
    body.setColorAt(1, QColor(34, 64, 130));
    p.setPen(QPen(QColor(20, 34, 70), 1));
    p.setBrush(body);
    p.drawPath(disk);
    // Label and shutter.
    p.setBrush(Qt::white);
    p.setPen(QPen(QColor(20, 34, 70), 0.8));
    p.drawRect(QRectF(6.5, 12.5, 11, 8));
    p.setBrush(QColor(200, 206, 216));
    p.drawRect(QRectF(7.5, 3.5, 9, 6));
    p.setBrush(QColor(40, 60, 100));
    p.setPen(Qt::NoPen);
    p.drawRect(QRectF(13, 4.5, 2.2, 4));
    p.setPen(QPen(QColor(140, 150, 170), 0.8));
    p.drawLine(QPointF(8.5, 15), QPointF(15.5, 15));
    p.drawLine(QPointF(8.5, 17.5), QPointF(15.5, 17.5));
}

void drawCut(QPainter& p) {
    // Blades crossing above the rings.
    p.setPen(QPen(QColor(90, 96, 110), 2.2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(8, 2.5), QPointF(14.5, 15));
    p.drawLine(QPointF(16, 2.5), QPointF(9.5, 15));
    p.setPen(QPen(QColor(210, 214, 224), 0.8, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(8.3, 3.5), QPointF(13.5, 13.5));
    p.drawLine(QPointF(15.7, 3.5), QPointF(10.5, 13.5));
    p.setPen(QPen(QColor(180, 30, 30), 2));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(7.5, 18), 3.5, 3.5);
    p.drawEllipse(QPointF(16.5, 18), 3.5, 3.5);
    p.setPen(Qt::NoPen);
    p.setBrush(Ink);
    p.drawEllipse(QPointF(12, 11.5), 1.1, 1.1);
}

void drawCopy(QPainter& p) {
    drawSheet(p, QRectF(2.5, 2.5, 12, 15));
    textLines(p, QRectF(4.5, 8, 7, 7), 3);
    drawSheet(p, QRectF(9.5, 7.5, 12, 15));
    textLines(p, QRectF(11.5, 13, 7, 7), 3);
}

void drawPaste(QPainter& p) {
    // The clipboard.
    p.setPen(QPen(QColor(90, 56, 20), 1));
    QLinearGradient board(0, 3, 0, 22);
    board.setColorAt(0, QColor(196, 140, 80));
    board.setColorAt(1, QColor(150, 100, 50));
    p.setBrush(board);
    p.drawRoundedRect(QRectF(2.5, 4.5, 14, 17), 1.5, 1.5);
    p.setBrush(QColor(190, 194, 204));
    p.setPen(QPen(Ink, 0.8));
    p.drawRoundedRect(QRectF(6, 2.5, 7, 4), 1, 1);
    // The sheet being put down.
    drawSheet(p, QRectF(10.5, 9.5, 11, 13));
    textLines(p, QRectF(12.5, 14.5, 6, 6), 3);
}

void drawDelete(QPainter& p) {
    p.setPen(QPen(QColor(120, 10, 10), 4.2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(5.5, 5.5), QPointF(18.5, 18.5));
    p.drawLine(QPointF(18.5, 5.5), QPointF(5.5, 18.5));
    p.setPen(QPen(QColor(226, 50, 40), 2.6, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(5.5, 5.5), QPointF(18.5, 18.5));
    p.drawLine(QPointF(18.5, 5.5), QPointF(5.5, 18.5));
}

void drawOptions(QPainter& p) {
    // A gear: eight teeth round a ring.
    QPainterPath gear;
    const QPointF c(12, 12);
    const int teeth = 8;
    for (int i = 0; i < teeth * 4; ++i) {
        const double a = i * 2 * M_PI / (teeth * 4);
        const double radius = (i % 4 < 2) ? 10.0 : 7.6;
        const QPointF pt(c.x() + radius * std::cos(a), c.y() + radius * std::sin(a));
        if (i == 0) gear.moveTo(pt);
        else gear.lineTo(pt);
    }
    gear.closeSubpath();
    QPainterPath hole;
    hole.addEllipse(c, 3.2, 3.2);
    gear = gear.subtracted(hole);
    QLinearGradient metal(4, 2, 20, 22);
    metal.setColorAt(0, QColor(190, 196, 210));
    metal.setColorAt(1, QColor(100, 108, 128));
    p.setPen(QPen(Ink, 1));
    p.setBrush(metal);
    p.drawPath(gear);
}

void drawHelp(QPainter& p) {
    QLinearGradient ball(4, 2, 20, 22);
    ball.setColorAt(0, QColor(90, 150, 240));
    ball.setColorAt(1, QColor(30, 80, 180));
    p.setPen(QPen(QColor(20, 50, 120), 1));
    p.setBrush(ball);
    p.drawEllipse(QPointF(12, 12), 10, 10);
    QFont f("DejaVu Sans", 1);
    f.setPixelSize(15);
    f.setBold(true);
    p.setFont(f);
    p.setPen(Qt::white);
    p.drawText(QRectF(2, 2.5, 20, 20), Qt::AlignCenter, "?");
}

bool save(const QString& folder, const QString& name, const std::function<void(QPainter&)>& draw) {
    bool ok = true;
    for (int scale : {1, 2}) {
        QImage img(24 * scale, 24 * scale, QImage::Format_ARGB32_Premultiplied);
        img.fill(Qt::transparent);
        {
            QPainter p(&img);
            p.setRenderHint(QPainter::Antialiasing);
            p.setRenderHint(QPainter::TextAntialiasing);
            p.scale(scale, scale);
            draw(p);
        }
        const QString file = folder + "/" + name + (scale == 2 ? "@2x.png" : ".png");
        ok = img.save(file) && ok;
    }
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString(".");
    bool ok = save(folder, "new", drawNew);
    ok = save(folder, "open", drawOpen) && ok;
    ok = save(folder, "save", drawSave) && ok;
    ok = save(folder, "cut", drawCut) && ok;
    ok = save(folder, "copy", drawCopy) && ok;
    ok = save(folder, "paste", drawPaste) && ok;
    ok = save(folder, "delete", drawDelete) && ok;
    ok = save(folder, "options", drawOptions) && ok;
    ok = save(folder, "help", drawHelp) && ok;
    return ok ? 0 : 1;
}
