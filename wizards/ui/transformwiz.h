#pragma once
// "Stadium Transformation Wizard": scales, rotates, translates and mirrors the vertices of the
// ticked parts, and flips their UVs, in that order.
#include <array>

#include "wizards/TransformOps.h"
#include "wizards/ui/WizardFrame.h"

class QCheckBox;
class QLineEdit;
class QListWidget;

class transformwiz : public OneWizard<transformwiz> {
    Q_OBJECT
public:
    explicit transformwiz(QWidget* parent = nullptr);

    void nextbutClick() override;
    // Transforms the ticked parts as the controls say, then refreshes the lists and previews.
    void dotransform();
    TransformSettings settings() const;

    // One row per part of the document when the wizard was opened, all ticked at first.
    QListWidget* transformlist() const { return transformlist_; }
    // Axis 0 x, 1 y, 2 z.
    QLineEdit* scale(int axis) const { return scale_[static_cast<std::size_t>(axis)]; }
    QLineEdit* rotate(int axis) const { return rotate_[static_cast<std::size_t>(axis)]; }
    QLineEdit* translate(int axis) const { return translate_[static_cast<std::size_t>(axis)]; }
    QCheckBox* mirror(int axis) const { return mirror_[static_cast<std::size_t>(axis)]; }
    QCheckBox* flipu() const { return flipu_; }
    QCheckBox* flipv() const { return flipv_; }

private:
    QListWidget* transformlist_;
    std::array<QLineEdit*, 3> scale_{}, rotate_{}, translate_{};
    std::array<QCheckBox*, 3> mirror_{};
    QCheckBox* flipu_;
    QCheckBox* flipv_;
};
