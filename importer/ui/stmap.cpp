#include "importer/ui/stmap.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QTreeWidget>
#include <algorithm>
#include <map>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "editors/OIFEditorOps.h"
#include "editors/ui/EditorText.h"
#include "importer/image/AtlasImage.h"
#include "importer/ui/SheetWidgets.h"
#include "importer/ui/stmapSettings.h"
#include "shell/HelpOps.h"
#include "shell/HistoryOps.h"
#include "shell/IniOps.h"

namespace {

QPointer<stmap> liveImporter;

constexpr int ColumnLeft = 4, ColumnWidth = 148;
const QColor HandleColour(0xC1, 0xCA, 0xFD);
const QColor BoxColour(0xE0, 0xE0, 0xE0);

// The two small icons of the list: an empty frame for a texture not on the sheet, a filled
// green square for one that is.
QIcon MappedIcon(bool mapped) {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setPen(QColor(0x40, 0x40, 0x40));
    p.setBrush(mapped ? QColor(0x30, 0xA0, 0x40) : QColor(Qt::white));
    p.drawRect(2, 2, 11, 11);
    return QIcon(pixmap);
}

QWidget* Box(QWidget* box, const char* name, const QColor& colour) {
    Named(box, name);
    FillWith(box, colour);
    box->hide();
    return box;
}

ArrowKey Arrow(int key) {
    switch (key) {
    case Qt::Key_Left: return ArrowKey::Left;
    case Qt::Key_Right: return ArrowKey::Right;
    case Qt::Key_Up: return ArrowKey::Up;
    default: return ArrowKey::Down;
    }
}

bool IsArrow(int key) {
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

}  // namespace

stmap::stmap(QWidget* owner) : QWidget(owner, Qt::Window) {
    setObjectName(QStringLiteral("stmap"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Stadium Importer (by the VORN team)"));
    // The column's captions were set for a small dialog font; at the desktop's usual size the
    // longest of them would not fit its 148 pixels.
    QFont small = font();
    small.setPointSizeF(std::min(small.pointSizeF(), 8.0));
    setFont(small);

    buildColumn();
    buildSheet();
    buildStatusBar();
    wireHandlers();
}

stmap::~stmap() = default;

void stmap::open(QWidget* owner) {
    if (liveImporter && liveImporter->isVisible()) {
        liveImporter->raise();
        liveImporter->activateWindow();
        return;
    }
    if (!liveImporter) liveImporter = new stmap(owner);
    liveImporter->StartImport();
}

stmap* stmap::existing() { return liveImporter; }

void stmap::StartImport() {
    // A new opening starts from no model, so nothing of the last one can be exported by mistake.
    Importer.ImportTextures.clear();
    Importer.ImportFile.clear();
    ReadImporterSettings(Importer.Settings);
    if (!loadModel() &&
        AskQuestion(ExitQuestion, MessageButtons::YesNo, MessageIcon::Question, ImporterTitle) == MessageAnswer::Yes) {
        if (liveImporter == this) liveImporter = nullptr;
        hide();
        deleteLater();
        return;
    }
    DoLoad();
    cboTexsize_->setCurrentIndex(0);
    cboTexsizeChange();
}

bool stmap::loadModel() {
    Desktop& desktop = TheDesktop();
    const std::string file = desktop.OpenFile(
        "Select file to import...",
        "All supported files|*.3ds;*.txt|Autodesk 3DS (*.3ds)|*.3ds|RAV Exported Text (*.txt)|*.txt", "", "");
    pictures_.clear();
    if (file.empty()) return false;
    const std::string folder = desktop.BrowseForFolder("Select Textures Path");
    if (folder.empty()) return false;
    // The pictures are decoded once, for the list's sizes and for painting.
    std::map<std::string, QImage> decoded;
    const PictureReader read = [&decoded](const std::string& path) -> std::optional<PictureSize> {
        const QImage picture = ReadPicture(path);
        if (picture.isNull()) return std::nullopt;
        decoded[path] = picture;
        return PictureSize{picture.width(), picture.height()};
    };
    if (LoadImportModel(file, folder, read) != LoadResult::Loaded) return false;
    ReadImporterFlips(Importer.Settings, ImportKindOf(file));
    for (const ImportTexture& t : Importer.ImportTextures) pictures_.push_back(decoded[t.Path]);
    return true;
}

void stmap::DoLoad() {
    static const Qt::CursorShape pointers[9] = {Qt::ArrowCursor,     Qt::SizeFDiagCursor, Qt::SizeVerCursor,
                                                Qt::SizeBDiagCursor, Qt::SizeHorCursor,   Qt::SizeHorCursor,
                                                Qt::SizeBDiagCursor, Qt::SizeVerCursor,   Qt::SizeFDiagCursor};
    for (int e = 1; e <= 8; ++e) {
        auto* handle = new SizingHandle(picBg_);
        Box(handle, "picHandle", HandleColour)->setObjectName(QStringLiteral("picHandle%1").arg(e));
        handle->resize(picHandle_[0]->size());
        handle->setCursor(pointers[e]);
        handle->onPress = [this, e](Qt::MouseButton button, QPointF at) { picHandleMouseDown(e, button, at); };
        handle->onFocus = [this] {
            if (currentItem_ >= 1) picTex_[static_cast<std::size_t>(currentItem_)]->setFocus();
        };
        picHandle_.push_back(handle);
    }
    // The list's first row becomes current as it is added, before its box exists: the list is
    // quiet until it is whole.
    QSignalBlocker quiet(lvTex_);
    for (const ImportTexture& t : Importer.ImportTextures) {
        auto* item = new QTreeWidgetItem(lvTex_, {UiText(t.Name)});
        item->setIcon(0, MappedIcon(false));
        const int n = static_cast<int>(picTex_.size());
        auto* box = new TextureBoxView(
            picBg_, [this, n]() -> const QImage& { return pictures_[static_cast<std::size_t>(n - 1)]; },
            [this, n] { return n == currentItem_; });
        Box(box, "picTex", BoxColour)->setObjectName(QStringLiteral("picTex%1").arg(n));
        box->onPress = [this, n](Qt::MouseButton button, QPointF at) { picTexMouseDown(n, button, at); };
        box->onMove = [this, n](QPointF at) { picTexMouseMove(n, at); };
        box->onRelease = [this, n] { picTexMouseUp(n); };
        box->onKey = [this, n](int key, Qt::KeyboardModifiers modifiers) { picTexKeyDown(n, key, modifiers); };
        picTex_.push_back(box);
        boxes_.push_back(NaturalBox(t.Picture, picBg_->width(), picBg_->height()));
        placeBox(static_cast<int>(picTex_.size()) - 1);
    }
    // Without a model (the load given up, and the exit question answered No) the window shows an
    // empty list and sheet.
    if (!boxes_.empty()) {
        lvTex_->setCurrentItem(lvTex_->topLevelItem(0));
        currentItem_ = 1;
    }
    quiet.unblock();
    setEnabled(true);
    show();
}

ImportSheet stmap::sheet() const { return {picBg_->width(), picBg_->height()}; }

void stmap::placeBox(int n) {
    const TextureBox& b = box(n);
    picTex_[static_cast<std::size_t>(n)]->setGeometry(b.Left, b.Top, b.Width, b.Height);
    picTex_[static_cast<std::size_t>(n)]->setVisible(b.Visible);
}

void stmap::cboTexsizeChange() {
    const std::int32_t width = SheetWidthFor(cboTexsize_->currentIndex());
    const std::int32_t windowWidth = WindowWidthForSheet(this->width(), picBg_->x(), picBg_->width(), width);
    picBg_->resize(width, picBg_->height());
    setFixedSize(windowWidth, height());
    statusBar1_->setGeometry(0, height() - 22, windowWidth, 22);
    DrawBackground();
}

void stmap::DrawBackground() {
    picBg_->update();
    update();
}

void stmap::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setPen(Qt::black);
    p.drawRect(picBg_->x() - 1, picBg_->y() - 1, picBg_->width() + 1, picBg_->height() + 1);
}

void stmap::PaintTexture(int n) { picTex_[static_cast<std::size_t>(n)]->update(); }

void stmap::lvTexItemClick(int n) {
    if (n < 1 || n > textureCount()) return;
    const int before = currentItem_;
    currentItem_ = n;
    lvTex_->setCurrentItem(lvTex_->topLevelItem(n - 1));
    picTex_[static_cast<std::size_t>(n)]->raise();
    texDragging_ = false;
    PlaceHandles();
    // The frame of the selected texture moves with the selection.
    if (before >= 1) PaintTexture(before);
    PaintTexture(n);
}

void stmap::setMapped(int n, bool mapped) {
    boxes_[static_cast<std::size_t>(n - 1)].Visible = mapped;
    lvTex_->topLevelItem(n - 1)->setIcon(0, MappedIcon(mapped));
    placeBox(n);
}

void stmap::cmdMapClick() {
    if (currentItem_ < 1) return;
    setMapped(currentItem_, !box(currentItem_).Visible);
    lvTex_->setFocus();
    PlaceHandles();
}

void stmap::cmdMapCtrlRelease() {
    for (int n = 1; n <= textureCount(); ++n) setMapped(n, true);
    lvTex_->setFocus();
    PlaceHandles();
}

void stmap::resetBox(int n) {
    ResetBox(boxes_[static_cast<std::size_t>(n - 1)], Importer.ImportTextures[static_cast<std::size_t>(n - 1)].Picture,
             picBg_->width(), picBg_->height());
    placeBox(n);
}

void stmap::cmdResetClick() {
    if (currentItem_ < 1) return;
    resetBox(currentItem_);
    PaintTexture(currentItem_);
    lvTex_->setFocus();
    PlaceHandles();
}

void stmap::cmdResetCtrlRelease() {
    for (int n = 1; n <= textureCount(); ++n) resetBox(n);
    lvTex_->setFocus();
    PlaceHandles();
}

bool stmap::CheckBounds(bool verbose) {
    const QRect outer = frameGeometry();
    return ::CheckBounds(boxes_, Importer.ImportTextures, outer.width() * TwipsPerPixel, outer.height() * TwipsPerPixel,
                         verbose);
}

void stmap::PlaceHandles() {
    for (int e = 1; e < static_cast<int>(picHandle_.size()); ++e) picHandle_[static_cast<std::size_t>(e)]->hide();
    if (texDragging_ || handleDragging_ || currentItem_ < 1 || !box(currentItem_).Visible) return;
    const auto places = HandlePlaces(box(currentItem_), RoundEven(picHandle_[0]->width()));
    for (int e = 1; e < static_cast<int>(picHandle_.size()); ++e) {
        QWidget* handle = picHandle_[static_cast<std::size_t>(e)];
        handle->move(places[static_cast<std::size_t>(e - 1)].Left, places[static_cast<std::size_t>(e - 1)].Top);
        handle->show();
        handle->raise();
    }
}

std::string stmap::chooseBitmap() {
    while (true) {
        std::string file = TheDesktop().SaveFile("Save Bitmap As...", "Windows Bitmap (*.bmp)|*.bmp",
                                                 DocumentText(texturebox_->currentText()), AppFolder);
        if (file.empty()) return file;
        if (FileExtension(file).empty()) file += ".bmp";
        if (!FileExists(file) ||
            AskQuestion(file + " already exists.\r\nDo you want to replace it?", MessageButtons::YesNo,
                        MessageIcon::Exclamation, "Save Bitmap As...") == MessageAnswer::Yes)
            return file;
    }
}

void stmap::cmdExportClick() {
    if (AskQuestion(ExportQuestion, MessageButtons::YesNo, MessageIcon::Question, ImporterTitle) != MessageAnswer::Yes)
        return;
    if (!CheckBounds(false)) {
        ShowMessage(CannotMakeTextureMessage, MessageIcon::Exclamation);
        return;
    }
    setEnabled(false);
    const std::string file = chooseBitmap();
    if (file.empty()) return;  // the window stays disabled, as users of the tool know it
    const auto paint = [&](const std::vector<ImportTexture>& textures) {
        SaveBitmap(PaintAtlas(picBg_->width(), picBg_->height(), textures, pictures_), file);
        DrawBackground();
        PlaceHandles();
    };
    const AtlasExport done = ExportAtlas(boxes_, sheet(), DocumentText(texturebox_->currentText()), paint);
    if (done == AtlasExport::Failed) {
        setEnabled(true);
        return;
    }
    if (done == AtlasExport::PartAdded) RecordCommand("Stadium Importer");
    TheViews().RefreshPartsList();
    TheViews().RebuildPreviews();
    if (ReadConfig("Stadium Importer", "AutoClose") == "1") {
        close();
        return;
    }
    ShowMessage(ImportedMessage, MessageIcon::Information, "Terramason");
    setEnabled(true);
}

void stmap::cmdSettingsClick() {
    stmapSettings settings(this);
    settings.exec();
}

void stmap::Command1Click() { OpenHelpPage("stadiumimporter.html"); }

void stmap::closeEvent(QCloseEvent* event) {
    if (AskQuestion(ExitQuestion, MessageButtons::YesNo, MessageIcon::Question, ImporterTitle) != MessageAnswer::Yes)
        event->ignore();
    else event->accept();
}

// ---- the sheet's boxes

void stmap::picTexMouseDown(int n, Qt::MouseButton button, QPointF position) {
    if (button != Qt::LeftButton) return;
    if (n != currentItem_ && chkAutoselect_->isChecked()) lvTexItemClick(n);
    if (n != currentItem_) return;
    texDragging_ = true;
    dragStartX_ = RoundEven(position.x());
    dragStartY_ = RoundEven(position.y());
    PlaceHandles();
}

void stmap::picTexMouseMove(int n, QPointF position) {
    if (n != currentItem_ || !texDragging_) return;
    const BoxPlace place =
        DragPlace(boxes_, static_cast<std::size_t>(n - 1), position.x(), position.y(), dragStartX_, dragStartY_,
                  picBg_->width(), picBg_->height(), {chkSnapToEdge_->isChecked(), chkSnapToTex_->isChecked()});
    TextureBox& b = boxes_[static_cast<std::size_t>(n - 1)];
    b.Left = place.Left;
    b.Top = place.Top;
    placeBox(n);
    panels_[1]->setText(QString::fromStdString(DragStatusText(b)));
}

void stmap::picTexMouseUp(int) {
    texDragging_ = false;
    PlaceHandles();
}

void stmap::picTexKeyDown(int n, int key, Qt::KeyboardModifiers modifiers) {
    if (!IsArrow(key)) return;
    const bool shift = modifiers & Qt::ShiftModifier;
    ArrowKeyStep(boxes_[static_cast<std::size_t>(n - 1)], Arrow(key), shift, modifiers & Qt::ControlModifier);
    placeBox(n);
    PlaceHandles();
    if (shift) PaintTexture(n);
}

// The pressed handle is hidden with the others; the sheet holds the mouse for it until the
// button is released, and hands on the positions in the handle's own pixels.
void stmap::picHandleMouseDown(int e, Qt::MouseButton button, QPointF position) {
    if (button != Qt::LeftButton) return;
    handleDragging_ = true;
    handleDragged_ = e;
    dragStartX_ = RoundEven(position.x());
    dragStartY_ = RoundEven(position.y());
    PlaceHandles();
    picBg_->grabMouse();
}

void stmap::picHandleMouseMove(int e, QPointF position) {
    if (!handleDragging_ || currentItem_ < 1) return;
    ResizeByHandle(boxes_[static_cast<std::size_t>(currentItem_ - 1)], e, position.x() - dragStartX_,
                   position.y() - dragStartY_);
    placeBox(currentItem_);
    PaintTexture(currentItem_);
    dragStartX_ = RoundEven(position.x());
    dragStartY_ = RoundEven(position.y());
}

void stmap::picHandleMouseUp(int) {
    picBg_->releaseMouse();
    handleDragging_ = false;
    handleDragged_ = 0;
    PlaceHandles();
}

void stmap::buildColumn() {
    lvTex_ = Named(new QTreeWidget(this), "lvTex");
    lvTex_->setHeaderLabels({QStringLiteral("Texture")});
    lvTex_->setRootIsDecorated(false);
    lvTex_->setGeometry(ColumnLeft, 4, ColumnWidth, 180);

    int y = 190;
    auto row = [&](QWidget* w, int height = 23) {
        w->setGeometry(ColumnLeft, y, ColumnWidth, height);
        y += height + 3;
    };
    cmdMap_ = Named(new QPushButton(QStringLiteral("&Map/Unmap"), this), "cmdMap");
    row(cmdMap_);
    cmdReset_ = Named(new QPushButton(QStringLiteral("&Reset"), this), "cmdReset");
    row(cmdReset_);
    chkSnapToEdge_ = Named(new QCheckBox(QStringLiteral("Snap to &Edges"), this), "chkSnapToEdge");
    row(chkSnapToEdge_, 20);
    chkSnapToTex_ = Named(new QCheckBox(QStringLiteral("Snap to Other &Textures"), this), "chkSnapToTex");
    row(chkSnapToTex_, 20);
    chkAutoselect_ = Named(new QCheckBox(QStringLiteral("Auto&select"), this), "chkAutoselect");
    row(chkAutoselect_, 20);
    for (QCheckBox* box : {chkSnapToEdge_, chkSnapToTex_, chkAutoselect_}) box->setChecked(true);
    lblSize_ = Named(new QLabel(QStringLiteral("Size: "), this), "lblSize");
    lblSize_->setGeometry(ColumnLeft, y + 3, 36, 20);
    cboTexsize_ = Named(new QComboBox(this), "cboTexsize");
    for (const char* text : SheetSizeTexts) cboTexsize_->addItem(QString::fromLatin1(text));
    cboTexsize_->setGeometry(ColumnLeft + 40, y, ColumnWidth - 40, 23);
    y += 28;
    label1_ = Named(new QLabel(QStringLiteral("Texture name:"), this), "Label1");
    row(label1_, 16);
    texturebox_ = Named(new QComboBox(this), "texturebox");
    texturebox_->setEditable(true);
    for (const std::string& name : TextureListNames()) texturebox_->addItem(QString::fromStdString(name));
    texturebox_->setCurrentIndex(0);
    row(texturebox_);
    y += 6;
    cmdCheckBounds_ = Named(new QPushButton(QStringLiteral("&Check Bounds"), this), "cmdCheckBounds");
    row(cmdCheckBounds_);
    cmdExport_ = Named(new QPushButton(QStringLiteral("&Import Model and Texture"), this), "cmdExport");
    row(cmdExport_);
    cmdSettings_ = Named(new QPushButton(QStringLiteral("&Settings"), this), "cmdSettings");
    row(cmdSettings_);
    cmdExit_ = Named(new QPushButton(QStringLiteral("Close"), this), "cmdExit");
    row(cmdExit_);
    command1_ = Named(new QPushButton(QStringLiteral("&Help"), this), "Command1");
    row(command1_);
}

void stmap::buildSheet() {
    auto* sheet = Named(new AtlasSheet(this), "picBg");
    sheet->handleDragging = [this] { return handleDragging_; };
    sheet->onHandleMove = [this](QPointF at) {
        const QWidget* handle = picHandle_[static_cast<std::size_t>(handleDragged_)];
        picHandleMouseMove(handleDragged_, at - QPointF(handle->pos()));
    };
    sheet->onHandleRelease = [this] { picHandleMouseUp(handleDragged_); };
    picBg_ = sheet;
    picBg_->setGeometry(SheetLeft, SheetTop, 512, SheetHeight);
    picTex_.push_back(Box(new QWidget(picBg_), "picTex0", BoxColour));
    picHandle_.push_back(Box(new QWidget(picBg_), "picHandle0", HandleColour));
    picHandle_[0]->resize(HandleSize, HandleSize);
}

void stmap::buildStatusBar() {
    statusBar1_ = Named(new QStatusBar(this), "StatusBar1");
    statusBar1_->setSizeGripEnabled(false);
    for (int i = 0; i < 2; ++i) {
        panels_[i] = new QLabel(statusBar1_);
        panels_[i]->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        statusBar1_->addWidget(panels_[i], i == 0 ? 0 : 1);
    }
    panels_[0]->setMinimumWidth(ColumnWidth);
    setFixedSize(DesignClientWidth, DesignClientHeight);
    statusBar1_->setGeometry(0, DesignClientHeight - 22, DesignClientWidth, 22);
}

void stmap::wireHandlers() {
    connect(lvTex_, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { lvTexItemClick(lvTex_->indexOfTopLevelItem(item) + 1); });
    // The keys that move through the list choose the texture as a click does.
    connect(lvTex_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        const int n = lvTex_->indexOfTopLevelItem(item) + 1;
        if (n >= 1 && n != currentItem_) lvTexItemClick(n);
    });
    connect(cboTexsize_, &QComboBox::currentIndexChanged, this, &stmap::cboTexsizeChange);
    connect(cmdMap_, &QPushButton::clicked, this, &stmap::cmdMapClick);
    connect(cmdReset_, &QPushButton::clicked, this, &stmap::cmdResetClick);
    // Both hand the focus to the list. Taking it from the button in the Ctrl release would stop
    // the button's own click, which has to follow that release.
    for (QPushButton* button : {cmdMap_, cmdReset_}) button->setFocusPolicy(Qt::NoFocus);
    new CtrlReleaseWatcher(cmdMap_, [this] { cmdMapCtrlRelease(); });
    new CtrlReleaseWatcher(cmdReset_, [this] { cmdResetCtrlRelease(); });
    connect(cmdCheckBounds_, &QPushButton::clicked, this, [this] { CheckBounds(true); });
    connect(cmdExport_, &QPushButton::clicked, this, &stmap::cmdExportClick);
    connect(cmdSettings_, &QPushButton::clicked, this, &stmap::cmdSettingsClick);
    connect(cmdExit_, &QPushButton::clicked, this, &QWidget::close);
    connect(command1_, &QPushButton::clicked, this, &stmap::Command1Click);
}
