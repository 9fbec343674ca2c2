#include "wizards/ui/crowdwizard.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/NumberText.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "shell/HistoryOps.h"
#include "shell/IniOps.h"

namespace {

constexpr int PlanePage = 2;
constexpr int OptionsPage = 3;

QRadioButton* Option(const char* name, const char* caption) {
    auto* button = new QRadioButton(QString::fromUtf8(caption));
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

QLineEdit* Box(const char* name, const QString& text = QString()) {
    auto* box = new QLineEdit(text);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

std::string Text(const QLineEdit* box) { return box->text().toStdString(); }

// A number key of the wizard, read as a number and shown as plain text.
QString StoredNumber(const char* key) {
    return QString::fromStdString(DoubleText(ReadConfigNumber("Crowd Wizard", key)));
}

}  // namespace

crowdwizard::crowdwizard(QWidget* parent)
    : OneWizard("crowdwizard", "Crowd Building Wizard", "crowdwizard.html", parent) {
    buildPages();
    rowheight_->setText(StoredNumber("CrowdHeight"));
    noofrows_->setText(StoredNumber("NoOfRows"));
    crowdspacing_->setText(StoredNumber("CrowdSpacing"));
    venuebutton_[ReadConfig("Crowd Wizard", "Home") == "1" ? 0 : 1]->setChecked(true);
    showPage(0);
}

void crowdwizard::buildPages() {
    QVBoxLayout* intro =
        addPage("Crowd Building Wizard",
                "The Crowd Building Wizard will guide you through filling your stadium with crowd polygons.");
    addText(intro,
            "It will automatically generate polygons to avoid tedious repetition creating of crowds.  Furthermore, "
            "it will improve randomisation of the crowd and the crowd texture should not stretch.");
    intro->addStretch();

    addSourcePage();

    addPlanePage();

    addOptionsPage();

    QVBoxLayout* done = addPage("Crowds created!", "Crowds imported to current project OIF file.");
    addText(done,
            "The defined plane has now been filled with crowds.  The project OIF file has been updated "
            "automatically.");
    addText(done,
            "The crowds can be seen in the parts with texture rwa0, rwa1, rwa2, rwa3, rwh0, rwh1, rwh2 or rwh3. "
            "('a' for away, 'h' for home)");
    done->addStretch();
    addText(done, "Click Back if you wish to create more crowds.");

    rowoptionClick();
    connect(polyfrom_[0], &QRadioButton::clicked, this, &crowdwizard::polyfromClick);
    connect(polyfrom_[1], &QRadioButton::clicked, this, &crowdwizard::polyfromClick);
    connect(getfile_, &QPushButton::clicked, this, &crowdwizard::getfileClick);
    connect(rowoption_[0], &QRadioButton::clicked, this, &crowdwizard::rowoptionClick);
    connect(rowoption_[1], &QRadioButton::clicked, this, &crowdwizard::rowoptionClick);
}

bool crowdwizard::fromFile() const { return polyfrom_[0]->isChecked(); }

void crowdwizard::rowoptionClick() {
    const bool fixed = rowoption_[0]->isChecked();
    noofrows_->setEnabled(fixed);
    crowdspacing_->setEnabled(!fixed);
}

void crowdwizard::polyfromClick() {
    nextbut()->setEnabled(false);
    const std::string file = Text(file3dsname_);
    if (polyfrom_[1]->isChecked() || (!file.empty() && FileExists(file))) nextbut()->setEnabled(true);
}

void crowdwizard::getfileClick() {
    polyfrom_[0]->setChecked(true);
    const std::string path =
        TheDesktop().OpenFile("Import crowd 3ds file...", "3DS File (*.3ds)|*.3ds", Text(file3dsname_), "");
    // A cancelled dialog keeps the file chosen before.
    if (!path.empty()) file3dsname_->setText(QString::fromStdString(path));
    polyfromClick();
}

CrowdWizardInput crowdwizard::input() const {
    CrowdWizardInput in;
    in.fromFile = fromFile();
    in.file = Text(file3dsname_);
    for (std::size_t i = 0; i < 4; ++i) {
        in.x[i] = Text(xbox_[i]);
        in.y[i] = Text(ybox_[i]);
        in.z[i] = Text(zbox_[i]);
    }
    in.bySpacing = rowoption_[1]->isChecked();
    in.rows = Text(noofrows_);
    in.spacing = Text(crowdspacing_);
    in.rowHeight = Text(rowheight_);
    in.home = venuebutton_[0]->isChecked();
    return in;
}

void crowdwizard::makecrowds() {
    const CommandStep step("Create crowds");
    CurrentProject.OIF = MakeCrowds(CurrentProject.OIF, input());
}

void crowdwizard::nextbutClick() {
    int t = page();
    if (t == OptionsPage) {
        TheDesktop().ShowLoading("Creating crowds...");
        const bool made = GuardedRun("Creating crowds", [this] { makecrowds(); });
        TheDesktop().HideLoading();
        // Crowds that could not be made are not reported as created.
        if (!made) return;
    }
    if (t == lastPage()) {
        TheViews().RefreshPartsList();
        TheViews().RebuildPreviews();
        finish();
        return;
    }
    t += 1;
    if (t == PlanePage && fromFile()) t += 1;
    advanceTo(t);
    if (t == 1) polyfromClick();
}

void crowdwizard::backbutClick() {
    int t = page() - 1;
    if (t == PlanePage && fromFile()) t -= 1;
    arriveBack(t);
}

void crowdwizard::addSourcePage() {
    QVBoxLayout* source =
        addPage("Defining the block coordinates", "Choosing how you want to enter the block coordinates");
    addText(source, "How would you like to define the plane(s) for which you would like to fill with crowd polygons?");
    polyfrom_[1] = Option("polyfrom1", "Manually");
    polyfrom_[0] = Option("polyfrom0", "From file");
    polyfrom_[1]->setChecked(true);
    file3dsname_ = Box("file3dsname");
    getfile_ = new QPushButton(QStringLiteral("..."));
    getfile_->setObjectName(QStringLiteral("getfile"));
    getfile_->setMaximumWidth(getfile_->fontMetrics().horizontalAdvance(QStringLiteral("...")) + 24);
    auto* fileRow = new QHBoxLayout;
    fileRow->addSpacing(20);
    fileRow->addWidget(file3dsname_, 1);
    fileRow->addWidget(getfile_);
    source->addWidget(polyfrom_[1]);
    source->addWidget(polyfrom_[0]);
    source->addLayout(fileRow);
    source->addStretch();
}

void crowdwizard::addPlanePage() {
    QVBoxLayout* plane =
        addPage("Defining the plane",
                "Enter the 3D Coordinates which defines the plane that you would like filled with crowds.");
    auto* corners = new QGridLayout;
    static constexpr const char* cornerNames[4] = {"Bottom Left", "Bottom Right", "Top Right", "Top Left"};
    // Laid out as the plane stands: the top corners above the bottom ones.
    static constexpr int cell[4][2] = {{1, 0}, {1, 1}, {0, 1}, {0, 0}};
    for (std::size_t i = 0; i < 4; ++i) {
        auto* group = new QGroupBox(QString::fromLatin1(cornerNames[i]));
        auto* form = new QGridLayout(group);
        const QString n = QString::number(i);
        xbox_[i] = Box(qPrintable("xbox" + n), QStringLiteral("0.00"));
        ybox_[i] = Box(qPrintable("ybox" + n), QStringLiteral("0.00"));
        zbox_[i] = Box(qPrintable("zbox" + n), QStringLiteral("0.00"));
        int row = 0;
        for (auto [axis, box] : {std::pair{"X:", xbox_[i]}, std::pair{"Y:", ybox_[i]}, std::pair{"Z:", zbox_[i]}}) {
            form->addWidget(new QLabel(QString::fromLatin1(axis)), row, 0);
            form->addWidget(box, row++, 1);
        }
        corners->addWidget(group, cell[i][0], cell[i][1]);
    }
    plane->addLayout(corners);
    plane->addStretch();
}

void crowdwizard::addOptionsPage() {
    QVBoxLayout* options = addPage("Crowd Options", "Defining how you want to create your crowds");
    rowoption_[0] = Option("rowoption0", "Fixed");
    rowoption_[1] = Option("rowoption1", "Calculate by crowd spacing");
    noofrows_ = Box("noofrows", QStringLiteral("10"));
    crowdspacing_ = Box("crowdspacing", QStringLiteral("150.00"));
    rowheight_ = Box("rowheight", QStringLiteral("300.00"));
    auto* rows = new QGroupBox(QStringLiteral("Rows"));
    auto* rowGrid = new QGridLayout(rows);
    rowGrid->addWidget(rowoption_[0], 0, 0);
    rowGrid->addWidget(noofrows_, 0, 1);
    rowGrid->addWidget(rowoption_[1], 1, 0);
    rowGrid->addWidget(crowdspacing_, 1, 1);
    rowGrid->addWidget(rowheight_, 2, 1);
    auto* heightText = new QLabel(QStringLiteral("Row height defines how high each row should be."));
    heightText->setWordWrap(true);
    rowGrid->addWidget(heightText, 2, 0);
    auto* rowChoice = new QButtonGroup(this);
    rowChoice->addButton(rowoption_[0]);
    rowChoice->addButton(rowoption_[1]);
    rowoption_[0]->setChecked(true);
    options->addWidget(rows);
    auto* venue = new QGroupBox(QStringLiteral("Venue"));
    auto* venueRow = new QHBoxLayout(venue);
    venuebutton_[0] = Option("venuebutton0", "Home");
    venuebutton_[1] = Option("venuebutton1", "Away");
    venueRow->addWidget(new QLabel(QStringLiteral("Is the crowd home or away?")), 1);
    venueRow->addWidget(venuebutton_[0]);
    venueRow->addWidget(venuebutton_[1]);
    options->addWidget(venue);
    options->addStretch();
    addText(options, "Click Next to create the crowds.");
}
