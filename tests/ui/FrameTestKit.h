#pragma once
// The main window as a user has it with a project open: made, shown, active, with a project of
// one textured part listed and previewed; or a frame with a project of named parts, listed.
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "shell/ui/vorn.h"

inline void OpenFrameWithProject(std::unique_ptr<vorn>& frame) {
    frame = std::make_unique<vorn>();
    frame->resize(1200, 900);
    QVERIFY(MakeActive(*frame));
    frame->createnew(0, "Project1");
    CurrentProject.OIF = TexturedQuad();
    TheViews().RefreshPartsList();
    TheViews().loadviews();
}

inline void OpenProjectOf(vorn& frame, std::initializer_list<const char*> names) {
    frame.createnew(0, "Project1");
    CurrentProject.OIF = NamedParts(names);
    TheViews().RefreshPartsList();
}
