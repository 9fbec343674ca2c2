#pragma once
// "Crowd Building Wizard": five pages that lead to crowd rows filling a typed plane or every
// four-vertex mesh of a 3DS file, dealt to the crowd parts of the current document.
#include <array>

#include "wizards/CrowdModule.h"
#include "wizards/ui/WizardFrame.h"

class QLineEdit;
class QRadioButton;

class crowdwizard : public OneWizard<crowdwizard> {
    Q_OBJECT
public:
    explicit crowdwizard(QWidget* parent = nullptr);

    void nextbutClick() override;
    void backbutClick() override;
    // The enable rule of Next on the plane choice page.
    void polyfromClick();
    void getfileClick();
    void rowoptionClick();
    // Fills the current document's crowd parts from the controls.
    void makecrowds();
    // What the controls say, as makecrowds reads them.
    CrowdWizardInput input() const;

    // polyfrom(0) "From file", polyfrom(1) "Manually".
    QRadioButton* polyfrom(int i) const { return polyfrom_[static_cast<std::size_t>(i)]; }
    QPushButton* getfile() const { return getfile_; }
    QLineEdit* file3dsname() const { return file3dsname_; }
    // Corner i: 0 Bottom Left, 1 Bottom Right, 2 Top Right, 3 Top Left.
    QLineEdit* xbox(int i) const { return xbox_[static_cast<std::size_t>(i)]; }
    QLineEdit* ybox(int i) const { return ybox_[static_cast<std::size_t>(i)]; }
    QLineEdit* zbox(int i) const { return zbox_[static_cast<std::size_t>(i)]; }
    // rowoption(0) "Fixed", rowoption(1) "Calculate by crowd spacing".
    QRadioButton* rowoption(int i) const { return rowoption_[static_cast<std::size_t>(i)]; }
    QLineEdit* noofrows() const { return noofrows_; }
    QLineEdit* crowdspacing() const { return crowdspacing_; }
    QLineEdit* rowheight() const { return rowheight_; }
    // venuebutton(0) "Home", venuebutton(1) "Away".
    QRadioButton* venuebutton(int i) const { return venuebutton_[static_cast<std::size_t>(i)]; }

private:
    void addSourcePage();
    void addPlanePage();
    void addOptionsPage();
    void buildPages();
    bool fromFile() const;

    std::array<QRadioButton*, 2> polyfrom_{};
    QPushButton* getfile_ = nullptr;
    QLineEdit* file3dsname_ = nullptr;
    std::array<QLineEdit*, 4> xbox_{}, ybox_{}, zbox_{};
    std::array<QRadioButton*, 2> rowoption_{};
    QLineEdit* noofrows_ = nullptr;
    QLineEdit* crowdspacing_ = nullptr;
    QLineEdit* rowheight_ = nullptr;
    std::array<QRadioButton*, 2> venuebutton_{};
};
