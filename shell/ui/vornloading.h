#pragma once
// The progress window: a small tool window with one line of text, shown without blocking while a
// long operation runs on the window thread. The main window and this one show the busy pointer
// for as long as it is up.
#include <QWidget>

class QLabel;

class vornloading : public QWidget {
    Q_OBJECT
public:
    explicit vornloading(QWidget* parent = nullptr);

    // Sets loadtext, shows the window and paints it before returning: the caller keeps the
    // thread and does not go back to the event loop until its work is done.
    void showLoading(const QString& text);
    void hideLoading();

    QLabel* loadtext() const { return loadtext_; }

private:
    void setBusy(bool busy);
    void placeCentred();

    QLabel* loadtext_;
};
