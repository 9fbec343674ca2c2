#include "exchange/ui/rhinoravconv.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Desktop.h"
#include "exchange/RhinoScriptOps.h"
#include "shell/HelpOps.h"

namespace {

constexpr const char* MissingChoiceMessage =
    "Please choose the RAV Text file to import, the textures path and the RhinoScript output file name.   ";

QPushButton* Button(QWidget* parent, const char* name, const char* caption) {
    auto* button = new QPushButton(QString::fromUtf8(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

QLineEdit* Box(QWidget* parent, const char* name) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QLatin1Char('x')) * 48);
    return box;
}

std::string Text(const QLineEdit* box) { return box->text().toStdString(); }
void SetText(QLineEdit* box, const std::string& text) { box->setText(QString::fromStdString(text)); }

}  // namespace

rhinoravconv::rhinoravconv(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint) {
    setObjectName(QStringLiteral("rhinoravconv"));
    setWindowTitle(QStringLiteral("Rhino Tools | RAV Convertor"));
    setModal(true);

    ravbox_ = Box(this, "ravbox");
    texbox_ = Box(this, "texbox");
    rhinobox_ = Box(this, "rhinobox");
    ravbut_ = Button(this, "ravbut", "...");
    texbut_ = Button(this, "texbut", "...");
    rhinobut_ = Button(this, "rhinobut", "...");
    okbut_ = Button(this, "okbut", "&Ok");
    okbut_->setDefault(true);
    cancelbut_ = Button(this, "cancelbut", "Cancel");
    helpbut_ = Button(this, "helpbut", "&Help");

    auto* grid = new QGridLayout;
    const struct {
        const char* caption;
        QLineEdit* box;
        QPushButton* button;
    } rows[] = {{"RAV Exported Text:", ravbox_, ravbut_},
                {"Texture Path:", texbox_, texbut_},
                {"Export Rhinoscript:", rhinobox_, rhinobut_}};
    int row = 0;
    for (const auto& r : rows) {
        auto* label = new QLabel(QString::fromUtf8(r.caption), this);
        label->setBuddy(r.box);
        grid->addWidget(label, row++, 0, 1, 2);
        grid->addWidget(r.box, row, 0);
        grid->addWidget(r.button, row++, 1);
    }
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(helpbut_);
    buttons->addStretch();
    buttons->addWidget(okbut_);
    buttons->addWidget(cancelbut_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(ravbut_, &QPushButton::clicked, this, &rhinoravconv::ravbutClick);
    connect(texbut_, &QPushButton::clicked, this, &rhinoravconv::texbutClick);
    connect(rhinobut_, &QPushButton::clicked, this, &rhinoravconv::rhinobutClick);
    connect(okbut_, &QPushButton::clicked, this,
            [this] { GuardedRun("Writing the RhinoScript", [this] { okbutClick(); }); });
    connect(cancelbut_, &QPushButton::clicked, this, &QDialog::reject);
    connect(helpbut_, &QPushButton::clicked, this, &rhinoravconv::helpbutClick);
    // Only the browse buttons run checkboxes: a window that opens with "&Ok" enabled takes paths
    // typed by hand, and answers empty boxes with its message.
}

void rhinoravconv::showModal(QWidget* parent) {
    rhinoravconv window(parent);
    window.exec();
}

void rhinoravconv::checkboxes() {
    okbut_->setEnabled(!ravbox_->text().isEmpty() && !texbox_->text().isEmpty() && !rhinobox_->text().isEmpty());
}

void rhinoravconv::ravbutClick() {
    const std::string path =
        TheDesktop().OpenFile("Export RAV Text file...", "RAV Exported Text (*.txt)|*.txt", Text(ravbox_), "");
    if (!path.empty()) SetText(ravbox_, path);
    checkboxes();
}

void rhinoravconv::texbutClick() {
    const std::string folder = TheDesktop().BrowseForFolder("Select texture path...");
    if (!folder.empty()) SetText(texbox_, WithTrailingSeparator(folder));
    checkboxes();
}

void rhinoravconv::rhinobutClick() {
    const std::string path =
        TheDesktop().SaveFile("Save RhinoScipt...", "RhinoScript (*.txt)|*.txt", Text(rhinobox_), "");
    if (!path.empty()) SetText(rhinobox_, WithDefaultExtension(path, "txt"));
    checkboxes();
}

void rhinoravconv::okbutClick() {
    if (ravbox_->text().isEmpty() || texbox_->text().isEmpty() || rhinobox_->text().isEmpty()) {
        ShowMessage(MissingChoiceMessage, MessageIcon::Exclamation);
        return;
    }
    // A refused export keeps the window open, so that another file can be chosen.
    if (makescript(Text(ravbox_), Text(rhinobox_), Text(texbox_))) accept();
}

void rhinoravconv::helpbutClick() { OpenHelpPage("ravconvertor.html"); }
