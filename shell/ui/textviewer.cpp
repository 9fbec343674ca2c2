#include "shell/ui/textviewer.h"

#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QMap>
#include <QPlainTextEdit>
#include <QPointer>
#include <QStringDecoder>
#include <QVBoxLayout>

#include "core/Cp1252.h"

namespace {
QMap<QString, QPointer<textviewer>>& Windows() {
    static QMap<QString, QPointer<textviewer>> windows;
    return windows;
}

// The read-me is UTF-8; files written for the game's tools may hold Windows-1252 text.
QString Decoded(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(bytes);
    if (!utf8.hasError()) return text;
    return QString::fromStdString(Cp1252ToUtf8(bytes.toStdString()));
}
}  // namespace

textviewer::textviewer(const QString& path, QWidget* parent) : QWidget(parent, Qt::Window), path_(path) {
    setObjectName(QStringLiteral("textviewer"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QFileInfo(path).fileName() + QStringLiteral(" - Terramason"));
    resize(760, 560);
    text_ = new QPlainTextEdit(this);
    text_->setObjectName(QStringLiteral("text"));
    text_->setReadOnly(true);
    text_->setLineWrapMode(QPlainTextEdit::NoWrap);
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text_);
}

void textviewer::reload() {
    QFile file(path_);
    text_->setPlainText(file.open(QIODevice::ReadOnly) ? Decoded(file.readAll()) : QString());
}

textviewer* textviewer::showFile(const QString& path) {
    QPointer<textviewer>& w = Windows()[path];
    if (!w) w = new textviewer(path);
    w->reload();
    w->show();
    w->raise();
    w->activateWindow();
    return w;
}
