#pragma once
// "Settings" of the Stadium Importer: the UV flips, shading and merging of the part it makes,
// kept in the per-user store (not config.ini) and used from the next export on.
#include <QDialog>

#include "importer/stmapOps.h"

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QPushButton;

// The store: section "Settings" of the program's per-user settings, values written as text.
// Shade, Merge and MergeDist are read when the importer opens; the flips once its model's
// textures are listed, as their defaults depend on the kind of model.
void ReadImporterSettings(ImportSettings& settings);
void ReadImporterFlips(ImportSettings& settings, ImportKind kind);

class stmapSettings : public QDialog {
    Q_OBJECT
public:
    explicit stmapSettings(QWidget* owner = nullptr);

    // Handlers.
    void chkMergeClick();
    void txtMergeDistLostFocus();
    void cmdOKClick();

    QCheckBox* chkFlipU() const { return chkFlipU_; }
    QCheckBox* chkFlipV() const { return chkFlipV_; }
    QCheckBox* chkShade() const { return chkShade_; }
    QCheckBox* chkMerge() const { return chkMerge_; }
    QLineEdit* txtMergeDist() const { return txtMergeDist_; }
    QPushButton* cmdOK() const { return cmdOK_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QGroupBox* fraUV_;
    QGroupBox* fraOther_;
    QCheckBox* chkFlipU_;
    QCheckBox* chkFlipV_;
    QCheckBox* chkShade_;
    QCheckBox* chkMerge_;
    QLineEdit* txtMergeDist_;
    QPushButton* cmdOK_;
    QPushButton* cmdCancel_;
};
