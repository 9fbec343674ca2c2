#include "wizards/ui/lightingwizard.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "editors/ui/NumericKeys.h"
#include "editors/ui/vornoifform.h"
#include "shell/HistoryOps.h"
#include "wizards/LightingOps.h"

namespace {

constexpr int OptionsPage = 1;

QLineEdit* PercentBox(const char* name, const char* text) {
    auto* box = new QLineEdit(QString::fromLatin1(text));
    box->setObjectName(QString::fromLatin1(name));
    box->setMaximumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("0000000")));
    FilterNumericKeys(box, LightingKeyFilter);
    return box;
}

}  // namespace

lightingwizard::lightingwizard(QWidget* parent)
    : OneWizard("lightingwizard", "Stadium Lighting Wizard", "lightingwizard.html", parent) {
    QVBoxLayout* intro =
        addPage("Stadium Lighting Wizard",
                "The Stadium Lighting Wizard will guide you through adding lighting and shadows to your "
                "stadium.");
    addText(intro,
            "This is NOT a tool to add actual shadow polygons, but to change the vertex colour of your stadium.");
    intro->addStretch();

    QVBoxLayout* options = addPage("Lighting Options", "Choose the overall brightness.");
    addText(options, "Define the brightness for the origin (i.e. brightest point).");
    originbox_ = PercentBox("originbox", "80");
    darknessbox_ = PercentBox("darknessbox", "30");
    auto* boxes = new QFormLayout;
    boxes->addRow(QStringLiteral("Origin:"), originbox_);
    boxes->addRow(QStringLiteral("Furthest point:"), darknessbox_);
    options->addLayout(boxes);
    addText(options,
            "The tool calculates the distance each vertex is from the origin, and using values provided by you "
            "as well, it will give vertices closest to the origin the most lighting and the those furthest "
            "away, the least.");
    options->addStretch();
    addText(options, "Click Next to apply the lighting.");

    QVBoxLayout* done = addPage("Lighting finished!", "Lighting applied to all vertices");
    addText(done, "All vertices in the OIF file has now been applied with the lighting required.");
    done->addStretch();
    addText(done, "Click Finish to exit the Stadium Lighting Wizard.");
    showPage(0);
}

void lightingwizard::applyLighting() {
    const CommandStep step("Lighting");
    CurrentProject.OIF = ApplyLighting(CurrentProject.OIF, originbox_->text().toStdString());
    // The editor's vertex rows show colours; the preview and the parts list are left as they are.
    if (vornoifform* editor = vornoifform::existing()) editor->oifpartboxClick();
}

void lightingwizard::nextbutClick() {
    nextAfterStep(OptionsPage, "Applying the lighting", [this] { applyLighting(); });
}
