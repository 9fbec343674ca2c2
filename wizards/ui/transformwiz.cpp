#include "wizards/ui/transformwiz.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Cp1252.h"
#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "shell/HistoryOps.h"

namespace {

constexpr int OptionsPage = 1;
constexpr const char* AxisNames[3] = {"x", "y", "z"};

}  // namespace

transformwiz::transformwiz(QWidget* parent)
    : OneWizard("transformwiz", "Stadium Transformation Wizard", "transformationwizard.html", parent) {
    QVBoxLayout* intro = addPage("Stadium Transformation Wizard",
                                 "The Stadium Transformation Wizard will guide you through rescaling, rotating, "
                                 "translating and/or mirroring your stadium.");
    addText(intro, "The transformation is done in the order: Scale, Rotate, Translate, Mirror.");
    intro->addStretch();

    QVBoxLayout* options = addPage("Transformation Options", "Choose how you want to transform the model.");
    auto* columns = new QHBoxLayout;
    auto* partsColumn = new QVBoxLayout;
    addText(partsColumn, "Select the parts you wish to transform.");
    transformlist_ = new QListWidget;
    transformlist_->setObjectName(QStringLiteral("transformlist"));
    // The names keep the blanks of their fixed-length field; a fixed-pitch font shows them as such.
    for (const OIFPart& part : CurrentProject.OIF.Parts) {
        auto* item = new QListWidgetItem(QString::fromStdString(Cp1252ToUtf8(part.Header.Name.view())), transformlist_);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    partsColumn->addWidget(transformlist_);
    columns->addLayout(partsColumn, 1);

    auto* grid = new QGridLayout;
    for (int a = 0; a < 3; ++a) {
        auto* head = new QLabel(QString::fromLatin1(AxisNames[a]).toUpper());
        head->setAlignment(Qt::AlignCenter);
        grid->addWidget(head, 0, a + 1);
    }
    // The scale boxes are named "scalex1" and so on, the others "rotatex".
    const auto boxRow = [&](int row, const char* caption, const char* prefix, const char* suffix, const char* text,
                            std::array<QLineEdit*, 3>& boxes) {
        grid->addWidget(new QLabel(QString::fromUtf8(caption)), row, 0);
        for (std::size_t a = 0; a < 3; ++a) {
            boxes[a] = new QLineEdit(QString::fromLatin1(text));
            boxes[a]->setObjectName(QString::fromLatin1(prefix) + QLatin1String(AxisNames[a]) + QLatin1String(suffix));
            boxes[a]->setMaximumWidth(boxes[a]->fontMetrics().horizontalAdvance(QStringLiteral("00000000")));
            grid->addWidget(boxes[a], row, static_cast<int>(a) + 1);
        }
    };
    boxRow(1, "Scale (%):", "scale", "1", "100", scale_);
    boxRow(2, "Rotate (degrees):", "rotate", "", "0.00", rotate_);
    boxRow(3, "Translate:", "translate", "", "0.00", translate_);
    grid->addWidget(new QLabel(QStringLiteral("Mirror:")), 4, 0);
    for (std::size_t a = 0; a < 3; ++a) {
        mirror_[a] = new QCheckBox;
        mirror_[a]->setObjectName(QStringLiteral("mirror") + QLatin1String(AxisNames[a]));
        grid->addWidget(mirror_[a], 4, static_cast<int>(a) + 1, Qt::AlignCenter);
    }
    auto* flips = new QLabel(QStringLiteral("Only use when UV image fits whole OIF part image width/height:"));
    flips->setWordWrap(true);
    grid->addWidget(flips, 5, 0, 1, 4);
    flipu_ = new QCheckBox(QStringLiteral("Flip U"));
    flipu_->setObjectName(QStringLiteral("flipu"));
    flipv_ = new QCheckBox(QStringLiteral("Flip V"));
    flipv_->setObjectName(QStringLiteral("flipv"));
    auto* flipRow = new QHBoxLayout;
    flipRow->addWidget(flipu_);
    flipRow->addSpacing(20);
    flipRow->addWidget(flipv_);
    flipRow->addStretch();
    grid->addLayout(flipRow, 6, 0, 1, 4);
    columns->addLayout(grid);
    options->addLayout(columns);
    addText(options,
            "The tool will keep all UV values in the OIF the same, simply changing the coordinates of each "
            "vertex in the selected OIF parts.");
    addText(options, "Click Next to transform the selected parts.");

    QVBoxLayout* done = addPage("Transformation finished!", "Transformation applied to selected parts.");
    addText(done, "All parts in the OIF file has now been transformed as instructed.");
    done->addStretch();
    addText(done, "Click Finish to exit the Stadium Transformation Wizard.");
    showPage(0);
}

TransformSettings transformwiz::settings() const {
    TransformSettings s;
    for (int i = 0; i < transformlist_->count(); ++i)
        s.parts.push_back(transformlist_->item(i)->checkState() == Qt::Checked);
    for (std::size_t a = 0; a < 3; ++a) {
        s.scale[a] = scale_[a]->text().toStdString();
        s.rotate[a] = rotate_[a]->text().toStdString();
        s.translate[a] = translate_[a]->text().toStdString();
        s.mirror[a] = mirror_[a]->isChecked();
    }
    s.flipU = flipu_->isChecked();
    s.flipV = flipv_->isChecked();
    return s;
}

void transformwiz::dotransform() {
    const CommandStep step("Transformation");
    CurrentProject.OIF = TransformParts(CurrentProject.OIF, settings());
    TheViews().RefreshPartsList();
    TheViews().RebuildPreviews();
}

void transformwiz::nextbutClick() {
    nextAfterStep(OptionsPage, "Transforming the parts", [this] { dotransform(); });
}
