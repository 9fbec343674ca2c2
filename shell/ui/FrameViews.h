#pragma once
// The views of the main window: what the document commands ask of the windows (Views) answered
// by the children of vorn. vorn owns one and installs it while it lives.
#include <QMenu>
#include <QPointer>

#include "core/Views.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vornselectobj.h"
#include "shell/Startup.h"

class QMdiArea;
class QMdiSubWindow;

class FrameViews : public Views {
public:
    FrameViews(QMdiArea* area, QMenu* objselect);
    ~FrameViews() override;
    FrameViews(const FrameViews&) = delete;
    FrameViews& operator=(const FrameViews&) = delete;

    // Reloads objectbox from CurrentProject with every row selected, and the OIF Editor, when it
    // is open, with its first part selected.
    void RefreshPartsList() override;
    // With "Terramason"/"Previews" at "1": the start views, their files rebuilt, and the four
    // preview windows laid out right of the parts list and shown. Otherwise nothing.
    void loadviews() override;
    // The preview files of CurrentProject for the parts shown in objectbox.
    void RebuildPreviews() override;
    void ReloadPreviews() override;
    // Puts the parts list at the top left of the frame, 1850 by 9500 twips, and shows it.
    void showselectobj() override;
    // The rows selected in objectbox; none while the list does not exist.
    std::vector<bool> SelectedParts() override;
    // With the part and vertex selected in the OIF Editor, for the wireframe's vertex marker.
    PreviewSelection Selection() override;
    void ReleaseView(const std::string& description) override;
    void LoadView(const std::string& description, const std::string& path) override;
    // Loads the file into "Stadium Preview", a child of the frame, and shows it.
    void ShowWirePreview(const std::string& path) override;

    // The parts list, made (hidden) the first time it is touched; it is made again after its
    // window was closed.
    vornselectobj* selectobj();
    // The parts list if it exists, else null.
    vornselectobj* existingSelectobj() const;

    // The OIF Editor, made hidden the first time it is touched and again after it was closed.
    // Until it is shown nothing touches it: a closed editor costs a refresh nothing.
    vornoifform* oifform();
    vornoifform* existingOifform() const;
    // Shows the OIF Editor beside the previews, widening the main window for it when the screen
    // has room, else at the right edge of the frame; a new one is filled first, and a minimised
    // one comes back whole.
    void showoifform();
    // What the working area must hold whole: the parts list and the four previews.
    static PixelSize WorkingAreaNeed();
    // The main window's placement for an area of WorkingAreaNeed() with `beside` more width,
    // on the screen the window is on.
    static FramePlacement PlaceFrame(const QWidget& frame, const QWidget& area, int beside);
    void hideoifform();

private:
    // The frame of w inside the area, made the first time; a window made elsewhere (the Options
    // window makes the Perspective one) moves into the area.
    QMdiSubWindow* childFrame(QWidget* w, Qt::WindowFlags flags);

    QMdiArea* area_;
    QPointer<QMenu> objselect_;
    QPointer<vornselectobj> selectobj_;
    Views* previous_ = nullptr;
};
