#include "wizards/ui/stadwizard.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Desktop.h"
#include "shell/HelpOps.h"
#include "shell/StadiumCatalogue.h"
#include "wizards/StadiumWizardOps.h"

namespace {

QPushButton* Command(const char* name, const char* caption) {
    auto* button = new QPushButton(QString::fromUtf8(caption));
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

QLineEdit* FileBox(const char* name) {
    auto* box = new QLineEdit;
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

// A text that reads as a link and says when it is clicked.
QLabel* Link(const QString& name, const char* caption) {
    auto* label = new QLabel(QStringLiteral("<a href=\"#\">%1</a>").arg(QString::fromUtf8(caption).toHtmlEscaped()));
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    label->setWordWrap(true);
    return label;
}

QHBoxLayout* Row(std::initializer_list<QWidget*> widgets, QWidget* stretching) {
    auto* row = new QHBoxLayout;
    for (QWidget* w : widgets) row->addWidget(w, w == stretching ? 1 : 0);
    return row;
}

}  // namespace

stadwizard::stadwizard(QWidget* parent)
    : OneWizard("stadwizard", "Stadium Building Wizard", "stadiumwizard.html", parent) {
    addIntroPages();
    addModelPages();
    addFinishPages();

    steps_ = new QLabel;
    steps_->setObjectName(QStringLiteral("steps"));
    buttonRow()->insertWidget(1, steps_);
    showStep(0);
}

// The introduction, the modelling software and texturing.
void stadwizard::addIntroPages() {
    QVBoxLayout* page = addPage("Stadium Building Wizard", "");
    addText(page,
            "The Stadium Building Wizard will guide you through buildling a stadium for FIFA Football 2003 using "
            "various 3D graphics tools.");
    page->addStretch();
    addText(page, "Click Next to continue.");

    page = addPage("Creating the stadium structure", "Using your favourite 3D software");
    addText(page,
            "Choose your favourite 3D software to create a .3ds file.  The following shows some of the software "
            "that you may use:");
    auto* table = new QGridLayout;
    table->addWidget(new QLabel(QStringLiteral("Launch")), 0, 0);
    table->addWidget(new QLabel(QStringLiteral("Get it!")), 0, 1);
    for (std::size_t i = 0; i < SuggestedSoftwares.size(); ++i) {
        const QString n = QString::number(i);
        launchsoftware_[i] = Command(qPrintable("launchsoftware" + n), SuggestedSoftwares[i].name);
        softwares_[i] = Link("softwares" + n, SuggestedSoftwares[i].caption);
        table->addWidget(launchsoftware_[i], static_cast<int>(i) + 1, 0);
        table->addWidget(softwares_[i], static_cast<int>(i) + 1, 1);
        connect(softwares_[i], &QLabel::linkActivated, this, [this, i] { softwaresClick(static_cast<int>(i)); });
    }
    table->setColumnStretch(1, 1);
    page->addLayout(table);
    addsoftware_ = Link(QStringLiteral("addsoftware"), "Add my software to the list!");
    connect(addsoftware_, &QLabel::linkActivated, this, &stadwizard::addsoftwareClick);
    page->addWidget(addsoftware_);
    page->addStretch();

    page = addPage("Texturing your stadium", "Useful tools to help you texture the stadium");
    addText(page, "There are various ways to texture the stadium:");
    addText(page, "- UV mapping using your 3D graphics software.");
    addText(page, "- UV mapping vertex by vertex using Terramason. (Very tedious, not recommended)");
    QLabel* importer = addText(page, "Stadium Importer");
    QFont bold = importer->font();
    bold.setBold(true);
    importer->setFont(bold);
    addText(page,
            "This tool allows you to convert mutilple textures into one single texture.  You simply texture each "
            "mesh in your 3D software and then open the 3ds file, and then map those textures into one.  Remember "
            "to separate the parts which require different texture in separate 3ds files. (Highly recommended)");
    page->addStretch();
    addText(page, "Click Next if you have already done the UV texture mapping, or wish to do so using Terramason.");
    addText(page, "Click Next when you have finished your model.");
}

// Importing the model, its crowds and its vertex shadows.
void stadwizard::addModelPages() {
    QVBoxLayout* page = addPage("Importing your stadium", "Importing the stadium into Terramason");
    addText(page, "Select the stadium structure file (.3ds, .oif or .o) you want to import into Terramason:");
    QLineEdit* text2 = FileBox("Text2");
    page->addLayout(Row({text2, Command("Command1", "..."), Command("Command2", "&Import")}, text2));
    page->addStretch();

    page = addPage("Creating the crowds", "Automatic generation of crowd vertices using Crowd Manager");
    addText(page,
            "Crowd Manager (part of Terramason) allows you to add crowd vertices and texture them automatically by "
            "simply entering in the base vertices and various other information.  You may observe the changes it "
            "makes using the previews, and delete the parts accordingly, until you have them exactly where you "
            "want them.");
    page->addLayout(Row({Command("Command3", "Launch Crowd Manager")}, nullptr));
    page->addStretch();
    addText(page,
            "Click Next if you have already done the crowd parts manually, or you do not wish to include crowds in "
            "your stadium.");
    addText(page,
            "You should minimise this wizard regularly to check the progress in the main Terramason window and make "
            "changes appropriately.");

    page = addPage("Editing the vertices shadow", "Editing the shadows or vertex colour in the stadium structure");
    addText(page,
            "Shadow Manager (part of Terramason) allows you edit the shadow or vertex colour of each of the vertices "
            "in your stadium automatically.  It calculates the distance each vertex is from the origin, and the "
            "further the vertex is, the darker the shadow or vertex colour.");
    page->addLayout(Row({Command("Command4", "Launch Shadow Manager")}, nullptr));
    addText(page, "You may also do so manually using the OIF Editor in Terramason.");
    page->addStretch();
    addText(page, "Click Next when you have done the vertex shadows or you do not wish to do so.");
}

// The stadium replaced, its shadow, the sky and the end.
void stadwizard::addFinishPages() {
    QVBoxLayout* page = addPage("Select an EA stadium that your stadium will replace", "Stadium to base on");
    addText(page, "You must choose a stadium for which your stadium will be based on.");
    combo1_ = new QComboBox;
    combo1_->setObjectName(QStringLiteral("Combo1"));
    for (const char* caption : StadiumCaptions) combo1_->addItem(QString::fromUtf8(caption));
    page->addWidget(combo1_);
    page->addStretch();

    page = addPage("Editing the stadium shadow", "Creating day or night stadiums");
    addText(page, "You can edit the stadium shadow files to change the shape of the shadows, using O-Edit.");
    page->addLayout(Row({Command("Command6", "Launch O-Edit to edit the stadium shadows")}, nullptr));
    page->addStretch();
    addText(page, "Click Next if you have already done so, or you wish to keep the original shadows");

    page = addPage("Editing the sky", "Creating day or night stadiums");
    addText(page, "You can now import a sky texture for use with your stadium.");
    QLineEdit* text4 = FileBox("Text4");
    page->addLayout(Row({text4, Command("Command5", "...")}, text4));
    addText(page, "You can also edit the sky structure using O-Edit.");
    page->addLayout(Row({Command("Command7", "Launch O-Edit to edit the sky structure")}, nullptr));
    page->addStretch();

    page = addPage("Stadium Created", "Examine your stadium and making your stadium.big");
    addText(page, "You can examine your stadium in full textures and then simply make the stadium.big now.");
    addText(page, "Well done, stadium architect!");
    page->addStretch();
}

void stadwizard::showStep(int page) {
    showPage(page);
    steps_->setText(QString::fromStdString(StepsText(page, lastPage() + 1)));
}

void stadwizard::nextbutClick() {
    // The last page's "&Finished" closes the guide.
    if (page() == lastPage()) {
        finish();
        return;
    }
    advanceTo(page() + 1);
    showStep(page());
}

void stadwizard::backbutClick() {
    arriveBack(page() - 1);
    showStep(page());
}

void stadwizard::softwaresClick(int i) { OpenWebPage(SuggestedSoftwares[static_cast<std::size_t>(i)].site); }

void stadwizard::addsoftwareClick() { OpenWebPage(ContactPageAddress()); }
