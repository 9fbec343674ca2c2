#pragma once
// A textured preview window: a title strip whose colour marks the active one of the four, a grey
// strip that holds the keyboard focus with the "+" and "-" buttons, and the viewer. Zoom, pan and
// turn change the view in PreviewViews and rewrite its file; the viewer shows the change at once,
// before the file is written, and a turn follows the mouse while the button is held.
//
// There are four, one per view, reached by their index (ViewTop ... ViewPerspective). Every input
// handler acts on the first window that shows the active colour, in the order Top, Right, Back,
// Perspective, not on the one the event arrived in.
#include <QColor>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <string>

#include "preview/PreviewViewOps.h"

class QFrame;
class QLabel;
class QPushButton;
class VrmlView;

class CortonaViewer : public QWidget {
    Q_OBJECT
public:
    explicit CortonaViewer(int index, QWidget* parent = nullptr);
    ~CortonaViewer() override;

    // The window of a view, made (hidden, without parent) the first time it is touched, and again
    // after a close that deletes it: the next touch does not wait for the deletion.
    static CortonaViewer* window(int index);
    // The window of a view if it exists, else null.
    static CortonaViewer* existing(int index);
    // The window whose view has this description ("Top", ...); null for any other text or when
    // that window does not exist.
    static CortonaViewer* existing(const std::string& description);
    // The index of the first window showing the active colour; -1 when none does.
    static int activeIndex();

    // The hooks of InstallView: let go of the file before it is rewritten, then show it again.
    // Both do nothing for a description without a window. A file the writers describe is shown
    // from what they wrote, without reading it.
    static void ReleaseView(const std::string& description);
    static void LoadView(const std::string& description, const std::string& path);

    // The colours of Frame1: the palette's active and inactive title colours.
    static QColor activeTitleColour();
    static QColor inactiveTitleColour();

    int index() const { return index_; }
    bool showsActiveColour() const;

    // The handlers, as the controls run them.
    void wheelTurned(int notches);
    void keyPressed(int keyCode);
    void zoominClick();
    void zoomoutClick();

    QFrame* Frame1() const { return frame1_; }
    QLabel* Label() const { return label_; }
    QFrame* Picture1() const { return picture1_; }
    QPushButton* zoomin() const { return zoomin_; }
    QPushButton* zoomout() const { return zoomout_; }
    VrmlView* Cortona1() const { return cortona1_; }
    // What the last press over the viewer left behind.
    const TurnStart& turnStart() const { return turnStart_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setActiveColour(bool active);
    void zoomButton(int notches);
    void viewerPressed(int button, int shift, float x, float y);
    void viewerReleased(int button, int shift, float x, float y);
    void viewerMoved(int buttons, int shift, float x, float y);
    // The twips in a pixel of the screen the window is on.
    double twipsPerPixel() const;
    // WriteViewHeader and InstallView for view a, after its change.
    static void applyView(int a);
    void layoutControls();

    int index_;
    TurnStart turnStart_;
    QFrame* frame1_;
    QLabel* label_;
    QFrame* picture1_;
    QPushButton* zoomin_;
    QPushButton* zoomout_;
    VrmlView* cortona1_;
};
