#pragma once
// The Edit menu's clipboard commands on the control that has the keyboard focus. They work on
// that control only, never on the stadium.
#include "shell/CommandOps.h"

class QWidget;

// Text boxes are line and text edits; list boxes are list widgets; a picture box is a label that
// takes the focus (labels of text never do). Null is no control at all.
ControlKind KindOfControl(const QWidget* control);

void CopyFromControl(QWidget* control);
void CutFromControl(QWidget* control);
void PasteIntoControl(QWidget* control);
