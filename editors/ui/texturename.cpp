#include "editors/ui/texturename.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "core/Cp1252.h"
#include "core/Desktop.h"
#include "editors/OIFEditorOps.h"
#include "editors/TextureManagerOps.h"

texturename::texturename(const std::string& file, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      file_(file) {
    setObjectName(QStringLiteral("texturename"));
    setWindowTitle(QStringLiteral("Select texture name..."));
    setModal(true);

    texbox_ = new QComboBox(this);
    texbox_->setObjectName(QStringLiteral("texbox"));
    texbox_->setEditable(true);
    // Any name may be typed: the list neither completes it nor takes it in.
    texbox_->setCompleter(nullptr);
    texbox_->setInsertPolicy(QComboBox::NoInsert);
    for (const std::string& name : TextureListNames()) texbox_->addItem(QString::fromStdString(name));
    texbox_->setCurrentIndex(0);
    okbut_ = new QPushButton(QStringLiteral("&Ok"), this);
    okbut_->setObjectName(QStringLiteral("okbut"));
    okbut_->setDefault(true);

    auto* label = new QLabel(QStringLiteral("Texture name:"), this);
    label->setBuddy(texbox_);
    auto* layout = new QGridLayout(this);
    layout->addWidget(label, 0, 0);
    layout->addWidget(texbox_, 0, 1);
    layout->addWidget(okbut_, 1, 1, Qt::AlignRight);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(okbut_, &QPushButton::clicked, this,
            [this] { GuardedRun("Importing the texture for previews", [this] { okbutClick(); }); });
}

void texturename::showModal(const std::string& file, QWidget* parent) {
    texturename window(file, parent);
    window.exec();
}

void texturename::okbutClick() {
    if (NameTextureForPreview(file_, Utf8ToCp1252(texbox_->currentText().toStdString()))) accept();
}
