#pragma once
// A text file shown read-only inside the program: the read-me and the preview files. One window
// per file; showing a file again reads it again, so a preview file shows as last written.
#include <QWidget>

class QPlainTextEdit;

class textviewer : public QWidget {
    Q_OBJECT
public:
    explicit textviewer(const QString& path, QWidget* parent = nullptr);

    // The window of the file, made the first time, with the file read anew.
    static textviewer* showFile(const QString& path);

    QString path() const { return path_; }
    QPlainTextEdit* text() const { return text_; }
    void reload();

private:
    QString path_;
    QPlainTextEdit* text_;
};
