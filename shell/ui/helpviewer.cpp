#include "shell/ui/helpviewer.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QTextBrowser>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include "shell/HelpOps.h"

namespace {
QPointer<helpviewer> liveHelp;

QToolButton* Tool(QWidget* parent, const char* name, const char* text, const char* themeIcon) {
    auto* b = new QToolButton(parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setText(QString::fromLatin1(text));
    b->setIcon(QIcon::fromTheme(QString::fromLatin1(themeIcon)));
    b->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    b->setAutoRaise(true);
    return b;
}
}  // namespace

helpviewer::helpviewer(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("helpviewer"));
    setWindowTitle(QStringLiteral("Terramason Help"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(820, 640);

    back_ = Tool(this, "backbut", "Back", "go-previous");
    forward_ = Tool(this, "forwardbut", "Forward", "go-next");
    contents_ = Tool(this, "contentsbut", "Contents", "go-home");
    page_ = new QTextBrowser(this);
    page_->setObjectName(QStringLiteral("page"));
    // Every link comes to follow(): the browser widget would try web addresses itself.
    page_->setOpenLinks(false);

    auto* bar = new QHBoxLayout;
    for (QToolButton* b : {back_, forward_, contents_}) bar->addWidget(b);
    bar->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addLayout(bar);
    layout->addWidget(page_);

    back_->setEnabled(false);
    forward_->setEnabled(false);
    connect(back_, &QToolButton::clicked, page_, &QTextBrowser::backward);
    connect(forward_, &QToolButton::clicked, page_, &QTextBrowser::forward);
    connect(page_, &QTextBrowser::backwardAvailable, back_, &QToolButton::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward_, &QToolButton::setEnabled);
    connect(contents_, &QToolButton::clicked, this, [] { OpenHelpPage(HelpContentsPage); });
    connect(page_, &QTextBrowser::anchorClicked, this, &helpviewer::follow);
    connect(page_, &QTextBrowser::sourceChanged, this, [this] {
        const QString title = page_->documentTitle();
        setWindowTitle(title.isEmpty() ? QStringLiteral("Terramason Help")
                                       : title + QStringLiteral(" - Terramason Help"));
    });
}

helpviewer* helpviewer::existing() { return liveHelp; }

helpviewer* helpviewer::showPage(const QString& path) {
    if (!liveHelp) liveHelp = new helpviewer;
    liveHelp->page_->setSource(QUrl::fromLocalFile(path));
    liveHelp->show();
    liveHelp->raise();
    liveHelp->activateWindow();
    return liveHelp;
}

void helpviewer::follow(const QUrl& link) {
    const QUrl target = page_->source().resolved(link);
    if (target.isLocalFile()) page_->setSource(target);
    else OpenWebPage(target.toString().toStdString());
}
