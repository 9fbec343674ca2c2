#include "shell/ui/vornnewproj.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Cp1252.h"
#include "core/Desktop.h"
#include "shell/StadiumCatalogue.h"

vornnewproj::vornnewproj(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint) {
    setObjectName(QStringLiteral("vornnewproj"));
    setWindowTitle(QStringLiteral("Open existing project..."));
    setModal(true);

    stadiumbased_ = new QComboBox(this);
    stadiumbased_->setObjectName(QStringLiteral("stadiumbased"));
    for (const char* caption : StadiumCaptions) stadiumbased_->addItem(QString::fromUtf8(caption));
    stadiumbased_->setCurrentIndex(0);
    stadiumbased_->setMaxVisibleItems(15);

    projectbox_ = new QLineEdit(QStringLiteral("Project1"), this);
    projectbox_->setObjectName(QStringLiteral("projectbox"));

    okbut_ = new QPushButton(QStringLiteral("&Ok"), this);
    okbut_->setObjectName(QStringLiteral("okbut"));
    okbut_->setDefault(true);
    cancelbut_ = new QPushButton(QStringLiteral("Cancel"), this);
    cancelbut_->setObjectName(QStringLiteral("cancelbut"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Based on:"), stadiumbased_);
    form->addRow(QStringLiteral("Project name:"), projectbox_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(okbut_);
    buttons->addWidget(cancelbut_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    stadiumbased_->setMinimumWidth(stadiumbased_->sizeHint().width());

    connect(okbut_, &QPushButton::clicked, this,
            [this] { GuardedRun("Opening the project", [this] { okbutClick(); }); });
    connect(cancelbut_, &QPushButton::clicked, this, &QDialog::reject);
}

int vornnewproj::shownew() {
    projectbox_->selectAll();
    projectbox_->setFocus();
    return exec();
}

int vornnewproj::basedOn() const { return stadiumbased_->currentIndex(); }

std::string vornnewproj::projectName() const { return Utf8ToCp1252(projectbox_->text().toStdString()); }

void vornnewproj::okbutClick() {
    if (BaseUnsupported(basedOn())) {
        ShowMessage(UnsupportedBaseMessage, MessageIcon::Exclamation, "Terramason");
        return;
    }
    accept();
}
