#include "shell/ui/vornabout.h"

#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "core/Desktop.h"
#include "core/ui/Resources.h"
#include "shell/Processes.h"
#include "shell/SystemInfoOps.h"

vornabout::vornabout(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint) {
    setObjectName(QStringLiteral("vornabout"));
    setWindowTitle(QStringLiteral("About VORN Terramason"));
    setModal(true);
    LoadResources();

    auto* icon = new QLabel(this);
    icon->setPixmap(QPixmap(QStringLiteral(":/terramason.png")));
    icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    auto* name = new QLabel(QStringLiteral("VORN Terramason"), this);
    name->setObjectName(QStringLiteral("lblTitle"));
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    name->setFont(big);
    auto* version = new QLabel(QStringLiteral("Version 1.0"), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* description = new QLabel(QStringLiteral("Stadium editor for FIFA Football 2003"), this);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    auto* credits = new QLabel(QStringLiteral("Design and programming: the VORN team.\n"
                                              "Thanks to the FIFA modding community for the tools\n"
                                              "and file formats this editor builds on.\n\n"
                                              "Built with Qt %1, meshoptimizer and SimpleIni.")
                                   .arg(QString::fromLatin1(qVersion())),
                               this);
    credits->setObjectName(QStringLiteral("lblCredits"));

    okbut_ = new QPushButton(QStringLiteral("OK"), this);
    okbut_->setObjectName(QStringLiteral("cmdOK"));
    okbut_->setDefault(true);
    sysinfobut_ = new QPushButton(QStringLiteral("&System Info..."), this);
    sysinfobut_->setObjectName(QStringLiteral("cmdSysInfo"));

    auto* texts = new QVBoxLayout;
    texts->addWidget(name);
    texts->addWidget(version);
    texts->addWidget(description);
    texts->addSpacing(8);
    texts->addWidget(line);
    texts->addSpacing(4);
    texts->addWidget(credits);
    texts->addStretch();
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(okbut_);
    buttons->addWidget(sysinfobut_);
    buttons->addStretch();
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(icon);
    layout->addSpacing(8);
    layout->addLayout(texts, 1);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(okbut_, &QPushButton::clicked, this, &QDialog::accept);
    connect(sysinfobut_, &QPushButton::clicked, this,
            [this] { GuardedRun("System Info", [this] { sysinfobutClick(); }); });
}

void vornabout::sysinfobutClick() {
    const std::string tool = FindSystemInfoTool([](const std::string& program) {
        return !QStandardPaths::findExecutable(QString::fromStdString(program)).isEmpty();
    });
    if (!tool.empty()) {
        StartProcess(tool, WindowMode::Normal);
        return;
    }
    ShowMessage(SystemFactsText(), MessageIcon::Information, "System Information");
}

std::string vornabout::SystemFactsText() {
    std::string text;
    for (const std::string& fact : SystemFacts()) text += fact + "\r\n";
    text += "Qt: " + std::string(qVersion()) + " (" + QGuiApplication::platformName().toStdString() + ")\r\n";
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QSize size = screen->size();
        text += "Screen: " + std::to_string(size.width()) + " x " + std::to_string(size.height()) + " pixels, " +
                std::to_string(screen->depth()) + " bits";
    }
    return text;
}
