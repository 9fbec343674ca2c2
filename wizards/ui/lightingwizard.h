#pragma once
// "Stadium Lighting Wizard": bakes a light centred on the origin into the shadow colour of every
// vertex. It adds no geometry.
#include "wizards/ui/WizardFrame.h"

class QLineEdit;

class lightingwizard : public OneWizard<lightingwizard> {
    Q_OBJECT
public:
    explicit lightingwizard(QWidget* parent = nullptr);

    void nextbutClick() override;
    // Lights the whole document by originbox and shows the new colours in the OIF Editor.
    void applyLighting();

    QLineEdit* originbox() const { return originbox_; }
    // Shown and filtered like originbox, but the light's far end is always grey 30.
    QLineEdit* darknessbox() const { return darknessbox_; }

private:
    QLineEdit* originbox_;
    QLineEdit* darknessbox_;
};
