#include "editors/ui/vorntexture.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>
#include <stdexcept>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/NumberText.h"
#include "core/ProgramState.h"
#include "editors/OIFEditorOps.h"
#include "editors/TextureManagerOps.h"
#include "editors/ui/EditorText.h"
#include "editors/ui/NumericKeys.h"
#include "editors/ui/vornoifform.h"
#include "shell/HistoryOps.h"

namespace {

QPointer<vorntexture> liveManager;

// The picture sits at the top left; the controls stand in a column right of it, which moves
// with the picture's width, as the window's design places them.
constexpr int Margin = 8;
constexpr int ColumnWidth = 232;

QImage ReadImage(const std::string& path) {
    QImage image(QString::fromStdString(path));
    if (image.isNull()) throw std::runtime_error("The image \"" + path + "\" cannot be read.");
    return image;
}

}  // namespace

vorntexture::vorntexture(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("vorntexture"));
    setWindowTitle(QStringLiteral("Texture Manager"));
    setMouseTracking(true);

    buildPicture();
    buildColumn();
    buildStatusBar();
    wireHandlers();

    enablePointControls(false);
    showImage(QImage());
}

vorntexture::~vorntexture() = default;

vorntexture* vorntexture::window(QWidget* owner) {
    if (!liveManager) liveManager = new vorntexture(owner);
    return liveManager;
}

vorntexture* vorntexture::existing() { return liveManager; }

void vorntexture::enablePointControls(bool enabled) {
    for (QWidget* w : std::initializer_list<QWidget*>{texturepartchange_, uvbox_[0], uvbox_[1], mylabel_[0],
                                                      mylabel_[1], mylabel_[2], texturepartbox_})
        w->setEnabled(enabled);
}

void vorntexture::showImage(const QImage& image) {
    if (image.isNull()) image1_->clear();
    else image1_->setPixmap(QPixmap::fromImage(image));
    image1_->resize(image.size());
    picture1_->setFixedSize(image.size());
    Picture1Resize();
}

void vorntexture::Picture1Resize() {
    column_->move(picture1_->x() + picture1_->width() + Margin, Margin);
    const int uvBottom = column_->y() + uvbox_[1]->mapTo(column_, QPoint(0, uvbox_[1]->height())).y();
    const WindowPixels size = TextureWindowSize(picture1_->width(), picture1_->height(), uvBottom);
    resize(size.width, size.height);
}

void vorntexture::resizeEvent(QResizeEvent* event) {
    const int barHeight = statusBar1_->sizeHint().height();
    statusBar1_->setGeometry(0, height() - barHeight, width(), barHeight);
    QWidget::resizeEvent(event);
}

void vorntexture::textureboxClick() {
    const int t = texturebox_->currentIndex();
    if (t < 0) return;
    QStringList names;
    if (const TextureSlot* slot = SlotOfTextureRow(CurrentProject.Textures, t))
        for (const TexturePart& p : slot->Parts) names << UiText(p.Name);
    handlers_.fill(texturepartbox_, names);
    if (!names.isEmpty()) handlers_.setRow(texturepartbox_, 0);
    else enablePointControls(false);

    const std::string png = TexturePngPath(DocumentText(texturebox_->currentText()));
    if (!FileExists(png)) {
        showImage(QImage());
        return;
    }
    // An image that cannot be read leaves the picture as it was.
    const QImage image(QString::fromStdString(png));
    if (!image.isNull()) showImage(image);
}

void vorntexture::texturepartboxClick() {
    const TexturePart* point =
        TexturePointAt(CurrentProject.Textures, texturebox_->currentIndex(), texturepartbox_->currentIndex());
    enablePointControls(point != nullptr);
    if (!point) return;
    // Copies: each field's handler stores its text back into the point.
    const TexturePart shown = *point;
    handlers_.setText(texturepartchange_, UiText(shown.Name));
    handlers_.setText(uvbox_[0], QString::fromStdString(SingleText(shown.U)));
    handlers_.setText(uvbox_[1], QString::fromStdString(SingleText(shown.V)));
}

void vorntexture::addtexturepartClick() {
    const CommandStep step("Add UV point");
    if (!AddTexturePart(CurrentProject.Textures, texturebox_->currentIndex())) return;
    textureboxClick();
    handlers_.setRow(texturepartbox_, texturepartbox_->count() - 1);
    if (vornoifform* editor = vornoifform::existing()) editor->oifparttextureChange();
}

void vorntexture::texturepartchangeChange() {
    const int row = texturepartbox_->currentIndex();
    TexturePart* point = TexturePointAt(CurrentProject.Textures, texturebox_->currentIndex(), row);
    if (!point) return;
    point->Name = DocumentText(texturepartchange_->text());
    texturepartbox_->setItemText(row, texturepartchange_->text());
}

void vorntexture::uvboxChange(int index) {
    TexturePart* point =
        TexturePointAt(CurrentProject.Textures, texturebox_->currentIndex(), texturepartbox_->currentIndex());
    if (point) StoreUVText(*point, index, uvbox_[index]->text().toStdString());
}

void vorntexture::importtexClick() {
    // Without a texture row there is no name to import under.
    if (texturebox_->currentIndex() < 0) return;
    const std::string path = TheDesktop().OpenFile(ImportTextureTitle, ImportTextureFilter, "", "");
    if (path.empty()) return;
    const QImage image = ReadImage(path);
    ImportTextureImage(path, DocumentText(texturebox_->currentText()),
                       [&](const std::string& target) { return image.save(QString::fromStdString(target), "PNG"); });
    showImage(image);
}

void vorntexture::Picture1MouseDown(Qt::MouseButton button, int x, int y) {
    if (button != Qt::LeftButton) return;
    TexturePart* point =
        TexturePointAt(CurrentProject.Textures, texturebox_->currentIndex(), texturepartbox_->currentIndex());
    if (!point) return;
    const CommandStep step("Pick UV point");
    const ImagePick pick = PickOnImage(*point, x, y, picture1_->width(), picture1_->height());
    if (!pick.uText.empty()) handlers_.setText(uvbox_[0], QString::fromStdString(pick.uText));
    if (!pick.vText.empty()) handlers_.setText(uvbox_[1], QString::fromStdString(pick.vText));
}

void vorntexture::Picture1MouseMove(int x, int y) {
    panels_[2]->setText(QString::fromStdString(PointerPositionText(x, y)));
}

bool vorntexture::eventFilter(QObject* watched, QEvent* event) {
    if (watched == picture1_) {
        if (event->type() == QEvent::MouseButtonPress) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            const QPoint at = mouse->position().toPoint();
            Picture1MouseDown(mouse->button(), at.x(), at.y());
            return true;
        }
        if (event->type() == QEvent::MouseMove) {
            const QPoint at = static_cast<QMouseEvent*>(event)->position().toPoint();
            Picture1MouseMove(at.x(), at.y());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void vorntexture::mouseMoveEvent(QMouseEvent* event) {
    panels_[2]->clear();
    QWidget::mouseMoveEvent(event);
}

void vorntexture::buildPicture() {
    picture1_ = Named(new QWidget(this), "Picture1");
    picture1_->setMouseTracking(true);
    picture1_->installEventFilter(this);
    picture1_->move(Margin, Margin);
    image1_ = Named(new QLabel(picture1_), "Image1");
    image1_->setAttribute(Qt::WA_TransparentForMouseEvents);
    // The marker has never been moved or used: shown at the image's corner it would pass for a
    // picked point, so it stays hidden.
    points_ = Named(new QWidget(picture1_), "points");
    points_->setAttribute(Qt::WA_TransparentForMouseEvents);
    points_->setGeometry(0, 0, 5, 5);
    points_->hide();
}

void vorntexture::buildColumn() {
    auto* column = column_ = new QWidget(this);
    texturebox_ = Named(new QComboBox(column), "texturebox");
    QStringList names;
    for (const std::string& name : TextureListNames()) names << QString::fromStdString(name);
    handlers_.fill(texturebox_, names);
    importtex_ = Named(new QPushButton(QStringLiteral("Import"), column), "importtex");
    texturepartbox_ = Named(new QComboBox(column), "texturepartbox");
    addtexturepart_ = Named(new QPushButton(QStringLiteral("Add"), column), "addtexturepart");
    deltexturepart_ = Named(new QPushButton(QStringLiteral("Delete"), column), "deltexturepart");
    texturepartchange_ = Named(new QLineEdit(column), "texturepartchange");
    uvbox_[0] = Named(new QLineEdit(column), "uvbox0");
    uvbox_[1] = Named(new QLineEdit(column), "uvbox1");
    mylabel_[0] = Named(new QLabel(QStringLiteral("Name"), column), "mylabel0");
    mylabel_[1] = Named(new QLabel(QStringLiteral("U"), column), "mylabel1");
    mylabel_[2] = Named(new QLabel(QStringLiteral("V"), column), "mylabel2");
    mylabel_[0]->setBuddy(texturepartchange_);
    mylabel_[1]->setBuddy(uvbox_[0]);
    mylabel_[2]->setBuddy(uvbox_[1]);

    auto* textureRow = new QHBoxLayout;
    textureRow->addWidget(new QLabel(QStringLiteral("Texture"), column));
    textureRow->addWidget(texturebox_, 1);
    textureRow->addWidget(importtex_);
    auto* pointButtons = new QHBoxLayout;
    pointButtons->addWidget(addtexturepart_);
    pointButtons->addWidget(deltexturepart_);
    auto* point = new QGridLayout;
    point->addWidget(mylabel_[0], 0, 0);
    point->addWidget(texturepartchange_, 0, 1);
    point->addWidget(mylabel_[1], 1, 0);
    point->addWidget(uvbox_[0], 1, 1);
    point->addWidget(mylabel_[2], 2, 0);
    point->addWidget(uvbox_[1], 2, 1);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(textureRow);
    layout->addSpacing(12);
    layout->addWidget(new QLabel(QStringLiteral("Predefined UV Coordinates"), column));
    layout->addWidget(texturepartbox_);
    layout->addLayout(pointButtons);
    layout->addLayout(point);
    column->setFixedSize(ColumnWidth, column->sizeHint().height());
    layout->activate();
}

void vorntexture::buildStatusBar() {
    statusBar1_ = Named(new QStatusBar(this), "StatusBar1");
    statusBar1_->setSizeGripEnabled(false);
    for (int i = 0; i < 3; ++i) {
        panels_[i] = Named(new QLabel(statusBar1_), i == 2 ? "panel3" : i == 1 ? "panel2" : "panel1");
        panels_[i]->setFrameShape(QFrame::Panel);
        panels_[i]->setFrameShadow(QFrame::Sunken);
        statusBar1_->addWidget(panels_[i], 1);
    }
}

void vorntexture::wireHandlers() {
    handlers_.bind(texturebox_, [this] { textureboxClick(); });
    handlers_.bind(texturepartbox_, [this] { texturepartboxClick(); });
    handlers_.bind(texturepartchange_, [this] { texturepartchangeChange(); });
    for (int i = 0; i < 2; ++i) {
        handlers_.bind(uvbox_[i], [this, i] { uvboxChange(i); });
        FilterNumericKeys(uvbox_[i]);
    }
    handlers_.afterUserChange([this](QObject* control) {
        const std::string at =
            ":" + std::to_string(texturebox_->currentIndex()) + ":" + std::to_string(texturepartbox_->currentIndex());
        if (control == texturepartchange_) RecordCommand("UV point name", "name" + at);
        else if (control == uvbox_[0]) RecordCommand("UV point U", "u" + at);
        else if (control == uvbox_[1]) RecordCommand("UV point V", "v" + at);
    });
    connect(addtexturepart_, &QPushButton::clicked, this, &vorntexture::addtexturepartClick);
    connect(importtex_, &QPushButton::clicked, this,
            [this] { GuardedRun("Importing the texture", [this] { importtexClick(); }); });
    // deltexturepart has no handler: a predefined UV cannot be removed.
}
