#pragma once
// The help book inside the program: its pages follow their links to each other, and addresses
// on the web go to the browser. A desktop without a handler for local files can still show help.
#include <QWidget>

class QTextBrowser;
class QToolButton;

class helpviewer : public QWidget {
    Q_OBJECT
public:
    explicit helpviewer(QWidget* parent = nullptr);

    // The one help window, made the first time it is touched; shows the page and comes to the front.
    static helpviewer* showPage(const QString& path);
    // The help window if it exists, else null.
    static helpviewer* existing();

    QTextBrowser* page() const { return page_; }
    QToolButton* backbut() const { return back_; }
    QToolButton* contentsbut() const { return contents_; }

private:
    void follow(const QUrl& link);

    QTextBrowser* page_;
    QToolButton* back_;
    QToolButton* forward_;
    QToolButton* contents_;
};
