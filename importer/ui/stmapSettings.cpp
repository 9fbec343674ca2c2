#include "importer/ui/stmapSettings.h"

#include <QCheckBox>
#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

#include "core/NumberText.h"
#include "editors/ui/EditorText.h"

namespace {

// The section "Settings" of the program's own per-user store.
struct Store {
    Store() { settings.beginGroup(QStringLiteral("Settings")); }
    QSettings settings{QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("VORN"),
                       QStringLiteral("Terramason")};
};

// A value of the store as a number; text that holds none counts as 0.
double Number(const Store& store, const char* key, double fallback) {
    const QVariant value = store.settings.value(QString::fromLatin1(key));
    return value.isValid() ? LeadingNumber(value.toString().toStdString()) : fallback;
}

std::int16_t Flag(const Store& store, const char* key, std::int16_t fallback) {
    return static_cast<std::int16_t>(Number(store, key, fallback));
}

QString FlagText(const QCheckBox* box) { return box->isChecked() ? QStringLiteral("1") : QStringLiteral("0"); }

}  // namespace

void ReadImporterSettings(ImportSettings& s) {
    const ImportSettings first;
    const Store store;
    s.Shade = Flag(store, "Shade", first.Shade);
    s.Merge = Flag(store, "Merge", first.Merge);
    s.MergeDist = static_cast<float>(Number(store, "MergeDist", first.MergeDist));
}

void ReadImporterFlips(ImportSettings& s, ImportKind kind) {
    const ImportSettings first = DefaultImportSettings(kind);
    const Store store;
    s.FlipU = Flag(store, "FlipU", first.FlipU);
    s.FlipV = Flag(store, "FlipV", first.FlipV);
}

stmapSettings::stmapSettings(QWidget* owner) : QDialog(owner) {
    setObjectName(QStringLiteral("stmapSettings"));
    setWindowTitle(QStringLiteral("Settings"));
    fraUV_ = Named(new QGroupBox(QStringLiteral("UV Mapping"), this), "fraUV");
    chkFlipU_ = Named(new QCheckBox(QStringLiteral("Flip U"), fraUV_), "chkFlipU");
    chkFlipV_ = Named(new QCheckBox(QStringLiteral("Flip V (required for Rhino models)"), fraUV_), "chkFlipV");
    auto* uv = new QVBoxLayout(fraUV_);
    uv->addWidget(chkFlipU_);
    uv->addWidget(chkFlipV_);

    fraOther_ = Named(new QGroupBox(QStringLiteral("Optimized Model"), this), "fraOther");
    chkShade_ = Named(new QCheckBox(QStringLiteral("Shade Model using a Distance Filter"), fraOther_), "chkShade");
    chkMerge_ = Named(new QCheckBox(QStringLiteral("Merge Vertices within (meters):"), fraOther_), "chkMerge");
    txtMergeDist_ = Named(new QLineEdit(QStringLiteral("0.5"), fraOther_), "txtMergeDist");
    txtMergeDist_->setMaximumWidth(60);
    txtMergeDist_->installEventFilter(this);
    auto* merge = new QHBoxLayout;
    merge->addWidget(chkMerge_);
    merge->addWidget(txtMergeDist_);
    auto* other = new QVBoxLayout(fraOther_);
    other->addWidget(chkShade_);
    other->addLayout(merge);

    cmdOK_ = Named(new QPushButton(QStringLiteral("Ok"), this), "cmdOK");
    cmdCancel_ = Named(new QPushButton(QStringLiteral("Cancel"), this), "cmdCancel");
    cmdOK_->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK_);
    buttons->addWidget(cmdCancel_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fraUV_);
    layout->addWidget(fraOther_);
    layout->addLayout(buttons);

    const ImportSettings& s = Importer.Settings;
    chkFlipU_->setChecked(s.FlipU == 1);
    chkFlipV_->setChecked(s.FlipV == 1);
    chkShade_->setChecked(s.Shade == 1);
    chkMerge_->setChecked(s.Merge == 1);
    txtMergeDist_->setText(QString::fromStdString(SingleText(s.MergeDist)));
    txtMergeDist_->setEnabled(chkMerge_->isChecked());

    connect(chkMerge_, &QCheckBox::clicked, this, &stmapSettings::chkMergeClick);
    connect(cmdOK_, &QPushButton::clicked, this, &stmapSettings::cmdOKClick);
    connect(cmdCancel_, &QPushButton::clicked, this, &QDialog::reject);
}

void stmapSettings::chkMergeClick() { txtMergeDist_->setEnabled(chkMerge_->isChecked()); }

// The number that the text begins with, written back plainly: "0,5" becomes 0, as the comma
// ends the number, and text without one becomes 0.
void stmapSettings::txtMergeDistLostFocus() {
    txtMergeDist_->setText(QString::fromStdString(DoubleText(LeadingNumber(txtMergeDist_->text().toStdString()))));
}

void stmapSettings::cmdOKClick() {
    Store store;
    store.settings.setValue(QStringLiteral("FlipU"), FlagText(chkFlipU_));
    store.settings.setValue(QStringLiteral("FlipV"), FlagText(chkFlipV_));
    store.settings.setValue(QStringLiteral("Shade"), FlagText(chkShade_));
    store.settings.setValue(QStringLiteral("Merge"), FlagText(chkMerge_));
    store.settings.setValue(QStringLiteral("MergeDist"), txtMergeDist_->text());
    ImportSettings& s = Importer.Settings;
    s.FlipU = chkFlipU_->isChecked() ? 1 : 0;
    s.FlipV = chkFlipV_->isChecked() ? 1 : 0;
    s.Shade = chkShade_->isChecked() ? 1 : 0;
    s.Merge = chkMerge_->isChecked() ? 1 : 0;
    s.MergeDist = static_cast<float>(LeadingNumber(txtMergeDist_->text().toStdString()));
    accept();
}

bool stmapSettings::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtMergeDist_ && event->type() == QEvent::FocusOut) txtMergeDistLostFocus();
    return QDialog::eventFilter(watched, event);
}
