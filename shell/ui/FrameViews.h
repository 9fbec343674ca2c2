#pragma once
// The views of the main window: what the document commands ask of the windows (Views) answered
// by the children of vorn. vorn owns one and installs it while it lives.
#include <QMenu>
#include <QPointer>

#include "core/Views.h"
#include "editors/ui/vornselectobj.h"

class QMdiArea;

class FrameViews : public Views {
public:
    FrameViews(QMdiArea* area, QMenu* objselect);
    ~FrameViews() override;
    FrameViews(const FrameViews&) = delete;
    FrameViews& operator=(const FrameViews&) = delete;

    // Reloads objectbox from CurrentProject with every row selected. The lists of the OIF
    // Editor join here when that window exists.
    void RefreshPartsList() override;
    // The preview windows and their VRML files come with the previews; until then there is
    // nothing to open, rebuild or rejoin.
    void loadviews() override {}
    void RebuildPreviews() override {}
    void ReloadPreviews() override {}
    // Puts the parts list at the top left of the frame, 1850 by 9500 twips, and shows it.
    void showselectobj() override;
    // The rows selected in objectbox; none while the list does not exist.
    std::vector<bool> SelectedParts() override;

    // The parts list, made (hidden) the first time it is touched; it is made again after its
    // window was closed.
    vornselectobj* selectobj();
    // The parts list if it exists, else null.
    vornselectobj* existingSelectobj() const;

private:
    QMdiArea* area_;
    QPointer<QMenu> objselect_;
    QPointer<vornselectobj> selectobj_;
    Views* previous_ = nullptr;
};

// Twips, the unit of the window layout, at 15 to the pixel.
constexpr int TwipsToPixels(int twips) { return twips / 15; }
