#pragma once
// The frame the four wizards share: a picture down the left, the pages in `maintab` (one shown
// at a time, no tabs), and the buttons "<  &Back", "&Next  >", "&Cancel" and "&Help". Closing
// asks whether to leave, unless the wizard closes itself at its end.
#include <QWidget>
#include <functional>

class QHBoxLayout;
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
    // The row of the buttons along the bottom, Help at its left end.
    QHBoxLayout* buttonRow() const { return buttonRow_; }
    // What Next does in every wizard once the page is chosen: Next reads "&Finished" on the last
    // page and "&Next  >" elsewhere, and both buttons are enabled.
    void advanceTo(int page);
    // What Back does in every wizard once the page is chosen: Back is enabled away from the
    // first page, Next is enabled and reads "&Next  >".
    void arriveBack(int page);
    // Closes the wizard without the exit question.
    void finish();
    // Next of a wizard whose work is done on one page: on the last page it finishes; on
    // `stepPage` it runs `step` first and stays there if that fails.
    void nextAfterStep(int stepPage, const char* what, const std::function<void()>& step);

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
    QHBoxLayout* buttonRow_;
};

// A wizard of which there is one at a time, shown without blocking: made when it is opened and
// after each close (so it starts again from its first page and its defaults), brought to the
// front when it is open already.
template <class W>
class OneWizard : public WizardFrame {
public:
    static W* showWizard(QWidget* parent) {
        if (!live_) {
            live_ = new W(parent);
            live_->setAttribute(Qt::WA_DeleteOnClose);
        }
        live_->show();
        live_->raise();
        live_->activateWindow();
        return live_;
    }
    // The open wizard, or null.
    static W* existing() { return live_; }

protected:
    using WizardFrame::WizardFrame;
    ~OneWizard() override {
        if (live_ == this) live_ = nullptr;
    }

private:
    inline static W* live_ = nullptr;
};
