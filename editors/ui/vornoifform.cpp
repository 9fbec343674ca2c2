#include "editors/ui/vornoifform.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Desktop.h"
#include "core/NumberText.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "editors/OIFEditorOps.h"
#include "editors/PartOps.h"
#include "editors/ui/EditorText.h"
#include "editors/ui/NumericKeys.h"
#include "editors/ui/vorntexture.h"
#include "shell/HistoryOps.h"

namespace {

vornoifform* liveForm = nullptr;

constexpr VertexField FieldOrder[5] = {VertexField::X, VertexField::Y, VertexField::Z, VertexField::U, VertexField::V};
constexpr const char* FieldNames[5] = {"oifvertexx", "oifvertexy", "oifvertexz", "oifvertextexx", "oifvertextexy"};
constexpr const char* FieldCaptions[5] = {"X:", "Y:", "Z:", "U:", "V:"};
constexpr const char* PointPrompt = "[Select predefined UV]";

OIFPart& PartAt(int p) { return CurrentProject.OIF.Parts[static_cast<std::size_t>(p)]; }

// A drop-down list that may hold a row per vertex: its width must not come from its rows.
QComboBox* LongList(QWidget* parent, const char* name) {
    auto* box = Named(new QComboBox(parent), name);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(24);
    if (auto* view = qobject_cast<QListView*>(box->view())) view->setUniformItemSizes(true);
    return box;
}

QLabel* Caption(QWidget* parent, const char* text, QWidget* buddy) {
    auto* label = new QLabel(QString::fromUtf8(text), parent);
    label->setBuddy(buddy);
    return label;
}

}  // namespace

vornoifform::vornoifform(QWidget* parent) : QWidget(parent) {
    liveForm = this;
    setObjectName(QStringLiteral("vornoifform"));
    setWindowTitle(QStringLiteral("OIF Editor"));

    auto* frame1 = buildPartFrame();
    buildVertexFrame();

    frame3_ = Named(new QGroupBox(QStringLiteral("Indices"), this), "Frame3");
    indicesbox_ = Named(new QListWidget(frame3_), "indicesbox");
    indicesbox_->setUniformItemSizes(true);
    auto* indices = new QVBoxLayout(frame3_);
    indices->addWidget(indicesbox_);

    auto* left = new QVBoxLayout;
    left->addWidget(frame1);
    left->addWidget(frame2_);
    left->addStretch();
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(left);
    layout->addWidget(frame3_, 1);

    wireHandlers();

    // Nothing is listed before the first refresh.
    enablePartControls(false);
}

vornoifform::~vornoifform() {
    if (liveForm == this) liveForm = nullptr;
}

vornoifform* vornoifform::existing() { return liveForm; }

int vornoifform::selectedPart() const {
    const int row = oifpartbox_->currentIndex();
    // Rows outlive their parts when a command changed the document without a refresh.
    return row >= 0 && static_cast<std::size_t>(row) < CurrentProject.OIF.Parts.size() ? row : -1;
}

int vornoifform::selectedVertex() const {
    const int p = selectedPart();
    const int row = oifpartvertices_->currentIndex();
    if (p < 0 || row < 0) return -1;
    return static_cast<std::size_t>(row) < PartAt(p).Vertices.size() ? row : -1;
}

void vornoifform::fillFromDocument() {
    QStringList names;
    for (const OIFPart& p : CurrentProject.OIF.Parts) names << UiText(p.Header.Name.view());
    handlers_.fill(oifpartbox_, names);
    handlers_.fill(oifpartvertices_, {});
    handlers_.fill(oifvertexpointsel_, {});
    indicesbox_->clear();
    if (!names.isEmpty()) {
        handlers_.setRow(oifpartbox_, 0);
        enablePartControls(true);
    } else {
        enablePartControls(false);
        handlers_.setText(oifpartname_, QString());
    }
}

void vornoifform::enablePartControls(bool enabled) {
    for (QWidget* w : std::initializer_list<QWidget*>{oifpartdel_, oifpartexp_, oifpartname_, oifparttexture_,
                                                      nameLabel_, textureLabel_, frame2_, frame3_})
        w->setEnabled(enabled);
}

void vornoifform::enableVertexControls(bool enabled) {
    for (QWidget* w :
         std::initializer_list<QWidget*>{oifpartvertices_, vertexFields_[0], vertexFields_[1], vertexFields_[2],
                                         vertexFields_[3], vertexFields_[4], oifvertexshadowbox_, oifvertexpointsel_})
        w->setEnabled(enabled);
}

void vornoifform::oifpartboxClick() {
    const int p = selectedPart();
    if (p < 0) return;
    handlers_.setText(oifpartname_, oifpartbox_->itemText(p));
    handlers_.setText(oifparttexture_, UiText(PartAt(p).Header.Texture.view()));

    const OIFPart& part = PartAt(p);
    QStringList rows;
    rows.reserve(static_cast<qsizetype>(part.Vertices.size()));
    for (const OIFVertex& v : part.Vertices) rows << QString::fromStdString(VertexRowText(v));
    handlers_.fill(oifpartvertices_, rows);
    if (!rows.isEmpty()) handlers_.setRow(oifpartvertices_, 0);
    enableVertexControls(!rows.isEmpty());

    QStringList indices;
    indices.reserve(static_cast<qsizetype>(part.Indices.size()));
    for (const std::int16_t index : part.Indices) indices << QString::fromStdString(IndexRowText(index, part.Vertices));
    indicesbox_->clear();
    indicesbox_->addItems(indices);

    const std::string caption =
        TextureManagerCaption(oifpartbox_->itemText(p).toStdString(), Cp1252ToUtf8(part.Header.Texture.view()));
    vorntexture::window(window())->setWindowTitle(QString::fromStdString(caption));
}

void vornoifform::oifpartverticesClick() {
    const int p = selectedPart();
    const int v = selectedVertex();
    if (v < 0) return;
    // Each field's handler stores its text back into the vertex, through 7 digits.
    for (int i = 0; i < 5; ++i) {
        const float value = VertexFieldValue(PartAt(p).Vertices[static_cast<std::size_t>(v)], FieldOrder[i]);
        handlers_.setText(vertexFields_[i], QString::fromStdString(SingleText(value)));
    }
    const int brightness = VertexBrightness(PartAt(p).Vertices[static_cast<std::size_t>(v)].Shadow);
    oifvertexshadowbox_->setText(QString::number(brightness));
    percentbright_->setText(QString::fromStdString(BrightnessPercentText(brightness)));
}

void vornoifform::oifpartnameChange() {
    const int p = selectedPart();
    if (p < 0) return;
    const std::string name = StorePartName(PartAt(p).Header, DocumentText(oifpartname_->text()));
    oifpartbox_->setItemText(p, UiText(name));
}

void vornoifform::vertexFieldChange(int field) {
    const int v = selectedVertex();
    if (v < 0) return;
    OIFVertex& vertex = PartAt(selectedPart()).Vertices[static_cast<std::size_t>(v)];
    StoreVertexField(vertex, FieldOrder[field], vertexFields_[field]->text().toStdString());
}

void vornoifform::oifparttextureChange() {
    const std::string text = DocumentText(oifparttexture_->currentText());
    QStringList points{QString::fromLatin1(PointPrompt)};
    for (const std::string& name : PredefinedUVNames(CurrentProject.Textures, text)) points << UiText(name);
    handlers_.fill(oifvertexpointsel_, points);
    handlers_.setRow(oifvertexpointsel_, 0);
    if (const int p = selectedPart(); p >= 0) PartAt(p).Header.Texture = text;
}

void vornoifform::oifvertexpointselClick() {
    const int row = oifvertexpointsel_->currentIndex();
    if (row <= 0) return;
    const int t = TextureListRow(DocumentText(oifparttexture_->currentText()));
    const int v = selectedVertex();
    if (t < 0 || v < 0) return;
    OIFVertex& vertex = PartAt(selectedPart()).Vertices[static_cast<std::size_t>(v)];
    if (!ApplyPredefinedUV(vertex, CurrentProject.Textures, t, row)) return;
    const float u = vertex.U, vv = vertex.V;
    handlers_.setText(oifvertextexx(), QString::fromStdString(SingleText(u)));
    handlers_.setText(oifvertextexy(), QString::fromStdString(SingleText(vv)));
}

void vornoifform::recordEdit(QObject* control) {
    // Typing on in the same field of the same part and vertex is one step. Choosing a part or a
    // vertex is none: what its refresh of the fields changes goes with the next step.
    static const char* const vertexCaptions[5] = {"Vertex X", "Vertex Y", "Vertex Z", "Vertex U", "Vertex V"};
    const std::string at = ":" + std::to_string(selectedPart()) + ":" + std::to_string(selectedVertex());
    if (control == oifpartname_) RecordCommand("Part name", "name" + at);
    else if (control == oifparttexture_) RecordCommand("Part texture", "texture" + at);
    else if (control == oifvertexpointsel_) RecordCommand("Predefined UV");
    for (int i = 0; i < 5; ++i)
        if (control == vertexFields_[i]) RecordCommand(vertexCaptions[i], "field" + std::to_string(i) + at);
}

void vornoifform::oifpartdelClick() {
    const int p = selectedPart();
    if (p < 0) return;
    const CommandStep step("Delete part");
    std::vector<bool> gone(CurrentProject.OIF.Parts.size(), false);
    gone[static_cast<std::size_t>(p)] = true;
    CurrentProject.OIF = RemoveParts(CurrentProject.OIF, gone);
    TheViews().RefreshPartsList();
}

void vornoifform::oifpartexpClick() {
    const int p = selectedPart();
    if (p < 0) return;
    GuardedRun("Export OIF part", [p] {
        if (ExportPart(CurrentProject.OIF, static_cast<std::size_t>(p))) TheViews().RefreshPartsList();
    });
}

void vornoifform::refreshoifClick() { TheViews().RefreshPartsList(); }

void vornoifform::texturesmanagerbutClick() {
    vorntexture* manager = vorntexture::window(window());
    manager->show();
    manager->raise();
    manager->activateWindow();
}

void vornoifform::closeEvent(QCloseEvent* event) {
    // On its way out: the next touch makes a new window.
    if (liveForm == this) liveForm = nullptr;
    emit unloaded();
    QWidget::closeEvent(event);
}

QGroupBox* vornoifform::buildPartFrame() {
    auto* frame1 = Named(new QGroupBox(QStringLiteral("Part"), this), "Frame1");
    oifpartbox_ = LongList(frame1, "oifpartbox");
    oifpartname_ = Named(new QLineEdit(frame1), "oifpartname");
    nameLabel_ = Named(Caption(frame1, "Name:", oifpartname_), "Label1");
    oifparttexture_ = Named(new QComboBox(frame1), "oifparttexture");
    oifparttexture_->setEditable(true);
    // A typed name is stored as typed: no completion from the list, and Enter adds no row.
    oifparttexture_->setCompleter(nullptr);
    oifparttexture_->setInsertPolicy(QComboBox::NoInsert);
    for (const std::string& name : TextureListNames()) oifparttexture_->addItem(QString::fromStdString(name));
    textureLabel_ = Named(Caption(frame1, "Texture:", oifparttexture_), "Label2");
    oifpartdel_ = Named(new QPushButton(QStringLiteral("Delete"), frame1), "oifpartdel");
    oifpartexp_ = Named(new QPushButton(QStringLiteral("Export"), frame1), "oifpartexp");
    refreshoif_ = Named(new QPushButton(QStringLiteral("Refresh"), frame1), "refreshoif");
    auto* part = new QGridLayout(frame1);
    part->addWidget(oifpartbox_, 0, 0, 1, 2);
    part->addWidget(nameLabel_, 1, 0);
    part->addWidget(oifpartname_, 1, 1);
    part->addWidget(textureLabel_, 2, 0);
    part->addWidget(oifparttexture_, 2, 1);
    auto* partButtons = new QHBoxLayout;
    for (QPushButton* b : {oifpartdel_, oifpartexp_, refreshoif_}) partButtons->addWidget(b);
    part->addLayout(partButtons, 3, 0, 1, 2);
    return frame1;
}

void vornoifform::buildVertexFrame() {
    frame2_ = Named(new QGroupBox(QStringLiteral("Vertices"), this), "Frame2");
    oifpartvertices_ = LongList(frame2_, "oifpartvertices");
    auto* vertices = new QGridLayout(frame2_);
    vertices->addWidget(oifpartvertices_, 0, 0, 1, 3);
    int row = 1;
    for (int i = 0; i < 5; ++i) {
        if (i == 3) vertices->addWidget(new QLabel(QStringLiteral("Textures UV Mapping"), frame2_), row++, 0, 1, 3);
        vertexFields_[i] = Named(new QLineEdit(frame2_), FieldNames[i]);
        vertices->addWidget(Caption(frame2_, FieldCaptions[i], vertexFields_[i]), row, 0);
        vertices->addWidget(vertexFields_[i], row++, 1, 1, 2);
    }
    oifvertexshadowbox_ = Named(new QLineEdit(frame2_), "oifvertexshadowbox");
    percentbright_ = Named(new QLabel(QStringLiteral("100%"), frame2_), "percentbright");
    vertices->addWidget(Caption(frame2_, "Brightness", oifvertexshadowbox_), row, 0);
    vertices->addWidget(oifvertexshadowbox_, row, 1);
    vertices->addWidget(percentbright_, row++, 2);
    oifvertexpointsel_ = Named(new QComboBox(frame2_), "oifvertexpointsel");
    vertices->addWidget(Caption(frame2_, "Point:", oifvertexpointsel_), row, 0);
    vertices->addWidget(oifvertexpointsel_, row++, 1, 1, 2);
    texturesmanagerbut_ = Named(new QPushButton(QStringLiteral("Textures Manager"), frame2_), "texturesmanagerbut");
    vertices->addWidget(texturesmanagerbut_, row, 0, 1, 3);
    vertices->setColumnStretch(1, 1);
}

void vornoifform::wireHandlers() {
    handlers_.bind(oifpartbox_, [this] { oifpartboxClick(); });
    handlers_.bind(oifpartname_, [this] { oifpartnameChange(); });
    handlers_.bind(oifparttexture_, [this] { oifparttextureChange(); });
    handlers_.bind(oifpartvertices_, [this] { oifpartverticesClick(); });
    for (int i = 0; i < 5; ++i) handlers_.bind(vertexFields_[i], [this, i] { vertexFieldChange(i); });
    handlers_.bind(oifvertexpointsel_, [this] { oifvertexpointselClick(); });
    handlers_.afterUserChange([this](QObject* control) { recordEdit(control); });
    FilterNumericKeys(oifvertextexx());
    FilterNumericKeys(oifvertextexy());
    connect(oifpartdel_, &QPushButton::clicked, this, &vornoifform::oifpartdelClick);
    connect(oifpartexp_, &QPushButton::clicked, this, &vornoifform::oifpartexpClick);
    connect(refreshoif_, &QPushButton::clicked, this, &vornoifform::refreshoifClick);
    connect(texturesmanagerbut_, &QPushButton::clicked, this, &vornoifform::texturesmanagerbutClick);
}
