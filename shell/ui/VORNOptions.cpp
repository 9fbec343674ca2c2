#include "shell/ui/VORNOptions.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "core/Desktop.h"
#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/VrmlView.h"

namespace {

// Builds the controls of one frame row by row: a check box across the frame, or a number box
// with its label to the right.
class FrameBuilder {
public:
    FrameBuilder(QWidget* page, const char* name, const char* title) {
        frame_ = new QGroupBox(QString::fromUtf8(title), page);
        frame_->setObjectName(QString::fromLatin1(name));
        grid_ = new QGridLayout(frame_);
        grid_->setColumnStretch(1, 1);
        grid_->setHorizontalSpacing(8);
    }
    FrameBuilder& check(const char* name, const char* caption) {
        auto* box = new QCheckBox(QString::fromUtf8(caption), frame_);
        box->setObjectName(QString::fromLatin1(name));
        grid_->addWidget(box, row_++, 0, 1, 2);
        return *this;
    }
    FrameBuilder& number(const char* name, const char* defaultText, const char* label) {
        auto* box = new QLineEdit(QString::fromUtf8(defaultText), frame_);
        box->setObjectName(QString::fromLatin1(name));
        box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("0000000000")));
        auto* caption = new QLabel(QString::fromUtf8(label), frame_);
        caption->setBuddy(box);
        grid_->addWidget(box, row_, 0);
        grid_->addWidget(caption, row_++, 1);
        return *this;
    }
    FrameBuilder& note(const char* name, const char* text) {
        auto* label = new QLabel(QString::fromUtf8(text), frame_);
        label->setObjectName(QString::fromLatin1(name));
        label->setWordWrap(true);
        grid_->addWidget(label, row_++, 0, 1, 2);
        return *this;
    }
    QGroupBox* frame() const { return frame_; }

private:
    QGroupBox* frame_;
    QGridLayout* grid_;
    int row_ = 0;
};

void AddPage(QTabWidget* tabs, QWidget* page, const char* caption, std::initializer_list<QGroupBox*> frames) {
    auto* layout = new QVBoxLayout(page);
    for (QGroupBox* f : frames) layout->addWidget(f);
    layout->addStretch();
    tabs->addTab(page, QString::fromUtf8(caption));
}

}  // namespace

VORNOptions::VORNOptions(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint) {
    setObjectName(QStringLiteral("VORNOptions"));
    setWindowTitle(QStringLiteral("Options"));
    setModal(true);

    optionsTab_ = new QTabWidget(this);
    optionsTab_->setObjectName(QStringLiteral("OptionsTab"));

    auto* windowsPage = new QWidget;
    AddPage(optionsTab_, windowsPage, "Windows",
            {FrameBuilder(windowsPage, "Frame1", "Windows")
                 .check("oifeditor", "OIF Editor")
                 .check("previews", "Load Stadium Previews (*)")
                 .note("Label1", "(*) denotes setting will only reset on program restart")
                 .frame()});

    auto* editingPage = new QWidget;
    AddPage(optionsTab_, editingPage, "Stadium &Editing",
            {FrameBuilder(editingPage, "Frame2", "Crowd Building")
                 .number("optimisecrowdheight", "260.00", "Optimised crowd height for Import Crowds...")
                 .number("crowdwizardheight", "260.00", "Crowd Wizard Default crowd height")
                 .number("noofrows", "10", "Default number of rows")
                 .number("crowdspacing", "150.00", "Default crowd spacing")
                 .check("homecrowd", "Default home crowd")
                 .frame(),
             FrameBuilder(editingPage, "Frame4", "Stadium Importer")
                 .check("closestmap", "Close Stadium Importer upon finishing model importing")
                 .frame()});

    auto* environmentPage = new QWidget;
    AddPage(optionsTab_, environmentPage, "En&vironment",
            {FrameBuilder(environmentPage, "Frame3", "Program start")
                 .check("vrmlreminder", "Display Parallel Graphics VRML plugin download reminder")
                 .check("newproj", "Display New Project Dialog")
                 .check("maxwindow", "Maximise Window")
                 .frame()});

    auto* previewsPage = new QWidget;
    AddPage(optionsTab_, previewsPage, "&Previews",
            {FrameBuilder(previewsPage, "Frame5", "Settings")
                 .check("refreshpreviewbox", "Stadium Preview Auto-Refresh")
                 .check("viewtextures", "Perspective View with Textures")
                 .number("zoomamount", "", "Zoom Amount")
                 .frame()});

    cmdApply_ = new QPushButton(QStringLiteral("Apply"), this);
    cmdApply_->setObjectName(QStringLiteral("cmdApply"));
    cmdCancel_ = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
    cmdOK_ = new QPushButton(QStringLiteral("OK"), this);
    cmdOK_->setObjectName(QStringLiteral("cmdOK"));
    cmdOK_->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdApply_);
    buttons->addWidget(cmdCancel_);
    buttons->addWidget(cmdOK_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(optionsTab_);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdApply_, &QPushButton::clicked, this,
            [this] { GuardedRun("Storing the options", [this] { cmdApplyClick(); }); });
    connect(cmdOK_, &QPushButton::clicked, this,
            [this] { GuardedRun("Storing the options", [this] { cmdOKClick(); }); });
    connect(cmdCancel_, &QPushButton::clicked, this, &VORNOptions::cmdCancelClick);

    fill(ReadOptions());
}

void VORNOptions::showModal(QWidget* parent) {
    VORNOptions window(parent);
    window.exec();
}

void VORNOptions::fill(const OptionContents& contents) {
    for (const OptionKey& k : OptionKeys) {
        const QString name = QString::fromLatin1(k.control);
        const std::string& content = contents.at(k.control);
        if (k.kind == OptionKind::Flag) findChild<QCheckBox*>(name)->setChecked(content == "1");
        else findChild<QLineEdit*>(name)->setText(QString::fromStdString(content));
    }
}

OptionContents VORNOptions::contents() const {
    OptionContents result;
    for (const OptionKey& k : OptionKeys) {
        const QString name = QString::fromLatin1(k.control);
        if (k.kind == OptionKind::Flag) result[k.control] = FlagStored(findChild<QCheckBox*>(name)->isChecked());
        else result[k.control] = findChild<QLineEdit*>(name)->text().toStdString();
    }
    return result;
}

void VORNOptions::changePerspectiveViewer() {
    VrmlView* viewer = CortonaViewer::window(ViewPerspective)->Cortona1();
    const ViewerChange change = PerspectiveViewerChange(viewer->renderFlags());
    viewer->setRenderFlags(change.flags);
    if (change.refresh) viewer->refresh();
}

void VORNOptions::cmdApplyClick() { ApplyOptions(contents(), &VORNOptions::changePerspectiveViewer); }

void VORNOptions::cmdOKClick() {
    cmdApplyClick();
    accept();
}

void VORNOptions::cmdCancelClick() { reject(); }
