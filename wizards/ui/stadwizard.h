#pragma once
// "Stadium Building Wizard": ten pages of advice on building a stadium with this program and
// outside 3D software. It changes nothing; its only actions are its links, and its buttons for
// the tools it names are there to be seen, not pressed.
#include <array>

#include "wizards/ui/WizardFrame.h"

class QComboBox;
class QLineEdit;

class stadwizard : public OneWizard<stadwizard> {
    Q_OBJECT
public:
    explicit stadwizard(QWidget* parent = nullptr);

    void nextbutClick() override;
    void backbutClick() override;
    // Opens the site of suggested software i in the browser.
    void softwaresClick(int i);
    void addsoftwareClick();

    QLabel* steps() const { return steps_; }
    QLabel* softwares(int i) const { return softwares_[static_cast<std::size_t>(i)]; }
    QPushButton* launchsoftware(int i) const { return launchsoftware_[static_cast<std::size_t>(i)]; }
    QLabel* addsoftware() const { return addsoftware_; }
    QComboBox* Combo1() const { return combo1_; }

private:
    void addIntroPages();
    void addModelPages();
    void addFinishPages();
    void showStep(int page);

    QLabel* steps_;
    std::array<QLabel*, 4> softwares_{};
    std::array<QPushButton*, 4> launchsoftware_{};
    QLabel* addsoftware_;
    QComboBox* combo1_;
};
