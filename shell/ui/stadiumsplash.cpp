#include "shell/ui/stadiumsplash.h"

#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QTimer>

#include "core/Desktop.h"
#include "core/ui/Resources.h"
#include "shell/Startup.h"
#include "shell/ui/vorn.h"

namespace {
QLabel* CaptionOver(QWidget* parent, const char* name, const QString& text, int x, int y, Qt::Alignment align) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setAlignment(align);
    label->setStyleSheet(QStringLiteral("color: #f0e6c0; background: transparent; font-weight: bold;"));
    label->setGeometry(x, y, 150, 18);
    return label;
}
}  // namespace

stadiumsplash::stadiumsplash(const QString& namedFile, QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint), namedFile_(namedFile) {
    setObjectName(QStringLiteral("stadiumsplash"));
    LoadResources();
    const QPixmap picture(QStringLiteral(":/splash.png"));
    setFixedSize(picture.size());
    auto* background = new QLabel(this);
    background->setPixmap(picture);
    background->setGeometry(rect());

    const int h = height();
    label1_ = CaptionOver(this, "Label1", QStringLiteral("Version 1.2"), 12, h - 44, Qt::AlignLeft);
    label2_ = CaptionOver(this, "Label2", QStringLiteral("02.10.03"), 12, h - 26, Qt::AlignLeft);
    label3_ = CaptionOver(this, "Label3", QStringLiteral("Build 1.2.4"), width() - 162, h - 26, Qt::AlignRight);

    if (QScreen* s = screen()) move(s->availableGeometry().center() - rect().center());

    timer1_ = new QTimer(this);
    timer1_->setObjectName(QStringLiteral("Timer1"));
    timer1_->setInterval(2000);
    timer1_->setSingleShot(true);
    connect(timer1_, &QTimer::timeout, this, &stadiumsplash::Timer1Timer);
    timer1_->start();
}

stadiumsplash::~stadiumsplash() = default;

void stadiumsplash::Timer1Timer() {
    GuardedRun("Starting VORN Terramason", [this] {
        timer1_->stop();
        close();
        if (!main_) main_ = std::make_unique<vorn>();
        RunStartup(*main_, namedFile_.toStdString());
    });
}
