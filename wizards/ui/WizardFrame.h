#pragma once
// The frame the four wizards share: a picture down the left, the pages in `maintab` (one shown
// at a time, no tabs), and the buttons "<  &Back", "&Next  >", "&Cancel" and "&Help". Closing
// asks whether to leave, unless the wizard closes itself at its end.
#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;
class QVBoxLayout;

class WizardFrame : public QWidget {
    Q_OBJECT
public:
    QStackedWidget* maintab() const { return maintab_; }
    QPushButton* nextbut() const { return nextbut_; }
    QPushButton* backbut() const { return backbut_; }
    QPushButton* cancelbut() const { return cancelbut_; }
    QPushButton* helpbut() const { return helpbut_; }
    QLabel* picture() const { return picture_; }
    // The page on show, from 0.
    int page() const;
    int lastPage() const;
    // Set when the wizard closes itself at its end: then closing asks nothing.
    bool finishing() const { return finishing_; }

    virtual void nextbutClick() = 0;
    virtual void backbutClick();
    void cancelbutClick();
    void helpbutClick();

protected:
    // `name` is the window's object name, `caption` its title (and the title of the exit
    // question), `helpPage` its page of the help book ("" for none).
    WizardFrame(const char* name, const char* caption, const char* helpPage, QWidget* parent);

    // A new last page with its title and subtitle (either may be ""); gives the column to which
    // the page's own controls and texts are added.
    QVBoxLayout* addPage(const char* title, const char* subtitle);
    // A text of a page, wrapped to the page's width.
    QLabel* addText(QVBoxLayout* page, const char* text);

    void showPage(int page);
    // What Next does in every wizard once the page is chosen: Next reads "&Finished" on the last
    // page and "&Next  >" elsewhere, and both buttons are enabled.
    void advanceTo(int page);
    // What Back does in every wizard once the page is chosen: Back is enabled away from the
    // first page, Next is enabled and reads "&Next  >".
    void arriveBack(int page);
    // Closes the wizard without the exit question.
    void finish();

    void closeEvent(QCloseEvent* event) override;

private:
    QString caption_;
    QString helpPage_;
    bool finishing_ = false;
    QLabel* picture_;
    QStackedWidget* maintab_;
    QPushButton* nextbut_;
    QPushButton* backbut_;
    QPushButton* cancelbut_;
    QPushButton* helpbut_;
};

// Shows a wizard without blocking, made the first time and after each close; a wizard already
// open is brought to the front.
template <class W>
W* ShowWizard(W*& live, QWidget* parent) {
    if (!live) {
        live = new W(parent);
        live->setAttribute(Qt::WA_DeleteOnClose);
    }
    live->show();
    live->raise();
    live->activateWindow();
    return live;
}
