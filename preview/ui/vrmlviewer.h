#pragma once
// "Stadium Preview": the window of the wireframe file, one viewer that fills it less a margin.
// No command shows it; it comes into being when the wireframe writer hands it a file.
#include <QWidget>

class VrmlView;

class vrmlviewer : public QWidget {
    Q_OBJECT
public:
    explicit vrmlviewer(QWidget* parent = nullptr);
    ~vrmlviewer() override;

    // The window, made (hidden, without parent) the first time it is touched, and again after a
    // close that deletes it.
    static vrmlviewer* window();
    // The window if it exists, else null.
    static vrmlviewer* existing();

    // showvrml: sizes the window by the screen it is on, puts it at the right edge of a main
    // window frameWidth pixels wide, and shows it.
    void showvrml(int frameWidth);

    VrmlView* Cortona1() const { return cortona1_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    VrmlView* cortona1_;
};
