#include "wizards/ui/WizardFrame.h"

#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "core/Desktop.h"
#include "core/ui/Resources.h"
#include "shell/HelpOps.h"

namespace {

constexpr const char* ExitQuestion = "Are you sure you want to exit the wizard?   ";
constexpr int PageWidth = 440;

QPushButton* Button(QWidget* parent, const char* name, const char* caption) {
    auto* button = new QPushButton(QString::fromUtf8(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

// The floodlights and the bowl of the splash picture, below its lettering, as a strip down the
// wizard's side.
QPixmap SidePicture() {
    LoadResources();
    const QPixmap splash(QStringLiteral(":/splash.png"));
    return splash.copy(4, 68, 112, 228).scaledToHeight(306, Qt::SmoothTransformation);
}

}  // namespace

WizardFrame::WizardFrame(const char* name, const char* caption, const char* helpPage, QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                          Qt::WindowMinimizeButtonHint),
      caption_(QString::fromUtf8(caption)),
      helpPage_(QString::fromUtf8(helpPage)) {
    setObjectName(QString::fromLatin1(name));
    setWindowTitle(caption_);

    picture_ = new QLabel(this);
    picture_->setObjectName(QStringLiteral("picture"));
    picture_->setPixmap(SidePicture());
    picture_->setAlignment(Qt::AlignTop);
    maintab_ = new QStackedWidget(this);
    maintab_->setObjectName(QStringLiteral("maintab"));
    maintab_->setMinimumWidth(PageWidth);

    backbut_ = Button(this, "backbut", "<  &Back");
    nextbut_ = Button(this, "nextbut", "&Next  >");
    cancelbut_ = Button(this, "cancelbut", "&Cancel");
    helpbut_ = Button(this, "helpbut", "&Help");
    nextbut_->setDefault(true);
    backbut_->setEnabled(false);

    auto* body = new QHBoxLayout;
    body->addWidget(picture_);
    body->addSpacing(12);
    body->addWidget(maintab_, 1);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    buttonRow_ = new QHBoxLayout;
    buttonRow_->addWidget(helpbut_);
    buttonRow_->addStretch();
    buttonRow_->addWidget(backbut_);
    buttonRow_->addWidget(nextbut_);
    buttonRow_->addSpacing(10);
    buttonRow_->addWidget(cancelbut_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body, 1);
    layout->addWidget(line);
    layout->addLayout(buttonRow_);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    // A step that fails is one error box; the wizard stays open where it was.
    connect(nextbut_, &QPushButton::clicked, this,
            [this] { GuardedRun(caption_.toStdString(), [this] { nextbutClick(); }); });
    connect(backbut_, &QPushButton::clicked, this,
            [this] { GuardedRun(caption_.toStdString(), [this] { backbutClick(); }); });
    connect(cancelbut_, &QPushButton::clicked, this, &WizardFrame::cancelbutClick);
    connect(helpbut_, &QPushButton::clicked, this, &WizardFrame::helpbutClick);
}

int WizardFrame::page() const { return maintab_->currentIndex(); }

int WizardFrame::lastPage() const { return maintab_->count() - 1; }

QVBoxLayout* WizardFrame::addPage(const char* title, const char* subtitle) {
    auto* page = new QWidget(maintab_);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    auto* heading = new QLabel(QString::fromUtf8(title), page);
    heading->setObjectName(QStringLiteral("thetitle"));
    QFont big = heading->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    heading->setFont(big);
    heading->setWordWrap(true);
    column->addWidget(heading);
    auto* sub = new QLabel(QString::fromUtf8(subtitle), page);
    sub->setObjectName(QStringLiteral("subtitle"));
    sub->setWordWrap(true);
    sub->setVisible(*subtitle != '\0');
    column->addWidget(sub);
    column->addSpacing(10);
    maintab_->addWidget(page);
    return column;
}

QLabel* WizardFrame::addText(QVBoxLayout* page, const char* text) {
    auto* label = new QLabel(QString::fromUtf8(text));
    label->setWordWrap(true);
    page->addWidget(label);
    return label;
}

void WizardFrame::showPage(int page) { maintab_->setCurrentIndex(page); }

void WizardFrame::advanceTo(int page) {
    showPage(page);
    nextbut_->setText(page == lastPage() ? QStringLiteral("&Finished") : QStringLiteral("&Next  >"));
    nextbut_->setEnabled(true);
    backbut_->setEnabled(true);
}

void WizardFrame::arriveBack(int page) {
    showPage(page);
    backbut_->setEnabled(page != 0);
    nextbut_->setEnabled(true);
    nextbut_->setText(QStringLiteral("&Next  >"));
}

void WizardFrame::backbutClick() { arriveBack(page() - 1); }

void WizardFrame::cancelbutClick() { close(); }

void WizardFrame::helpbutClick() {
    if (!helpPage_.isEmpty()) OpenHelpPage(helpPage_.toStdString());
}

void WizardFrame::finish() {
    finishing_ = true;
    close();
}

void WizardFrame::nextAfterStep(int stepPage, const char* what, const std::function<void()>& step) {
    const int t = page();
    if (t == lastPage()) {
        finish();
        return;
    }
    if (t == stepPage && !GuardedRun(what, step)) return;
    advanceTo(t + 1);
}

void WizardFrame::closeEvent(QCloseEvent* event) {
    if (!finishing_ && AskQuestion(ExitQuestion, MessageButtons::YesNo, MessageIcon::Question,
                                   caption_.toStdString()) != MessageAnswer::Yes) {
        event->ignore();
        return;
    }
    QWidget::closeEvent(event);
}
