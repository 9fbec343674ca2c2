#include "preview/ui/CoinRuntime.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QPointer>
#include <QTimer>

#include <Inventor/SbImage.h>
#include <Inventor/SbTime.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/VRMLnodes/SoVRMLImageTexture.h>
#include <Inventor/errors/SoDebugError.h>
#include <Inventor/errors/SoError.h>
#include <Inventor/errors/SoMemoryError.h>
#include <Inventor/errors/SoReadError.h>
#include <Inventor/lists/SbStringList.h>
#include <Inventor/sensors/SoSensorManager.h>

#include <algorithm>

#include "preview/ui/PartShapeNode.h"

namespace {

QStringList messages;
// A world with thousands of broken lines must not grow this without bound.
constexpr int MessageLimit = 200;

void KeepMessage(const SoError* error, void*) {
    if (messages.size() >= MessageLimit) messages.removeFirst();
    messages.append(QString::fromUtf8(error->getDebugString().getString()));
}

SbBool ReadImage(const SbString& filename, SbImage* image, void*) {
    CoinImage read;
    if (!ReadCoinImage(QString::fromUtf8(filename.getString()), read)) return FALSE;
    image->setValue(SbVec2s(static_cast<short>(read.width), static_cast<short>(read.height)), 4,
                    reinterpret_cast<const unsigned char*>(read.rgba.constData()));
    return TRUE;
}

// Coin asks to be called back when its sensor queue changes; one single-shot timer, owned by the
// application, runs the queue when the next sensor is due.
QPointer<QTimer> sensorTimer;

void ScheduleSensors(void*) {
    if (!sensorTimer) return;
    SoSensorManager* sensors = SoDB::getSensorManager();
    SbTime due;
    int wait = -1;
    if (sensors->isDelaySensorPending()) {
        wait = 0;
    } else if (sensors->isTimerSensorPending(due)) {
        const double seconds = (due - SbTime::getTimeOfDay()).getValue();
        wait = std::clamp(static_cast<int>(seconds * 1000), 0, 60 * 60 * 1000);
    }
    if (wait < 0) {
        sensorTimer->stop();
    } else if (!sensorTimer->isActive() || sensorTimer->remainingTime() > wait) {
        sensorTimer->start(wait);
    }
}

bool IsSearched(const QByteArray& folder) {
    const SbStringList& folders = SoInput::getDirectories();
    for (int i = 0; i < folders.getLength(); ++i)
        if (folders[i]->getString() == folder) return true;
    return false;
}

void RunSensors() {
    SoSensorManager* sensors = SoDB::getSensorManager();
    sensors->processTimerQueue();
    sensors->processDelayQueue(TRUE);
    ScheduleSensors(nullptr);
}

}  // namespace

bool ReadCoinImage(const QString& path, CoinImage& image) {
    QImage loaded(path);
    // Coin keeps texture sizes in shorts.
    if (loaded.isNull() || loaded.width() > 32767 || loaded.height() > 32767) return false;
    const QImage rows = loaded.convertToFormat(QImage::Format_RGBA8888).mirrored(false, true);
    image.width = rows.width();
    image.height = rows.height();
    image.rgba.resize(qsizetype(image.width) * image.height * 4);
    const qsizetype line = qsizetype(image.width) * 4;
    for (int y = 0; y < image.height; ++y) std::copy_n(rows.constScanLine(y), line, image.rgba.data() + y * line);
    return true;
}

void EnsureCoin() {
    static bool started = false;
    if (started) return;
    started = true;

    SoDB::init();
    // Nothing in a preview moves; without this the clock field would wake the program 12 times
    // a second.
    SoDB::setRealTimeInterval(SbTime(0.0));
    SoError::setHandlerCallback(KeepMessage, nullptr);
    SoDebugError::setHandlerCallback(KeepMessage, nullptr);
    SoReadError::setHandlerCallback(KeepMessage, nullptr);
    SoMemoryError::setHandlerCallback(KeepMessage, nullptr);

    PartShapeNode::initClass();
    SbImage::addReadImageCB(ReadImage, nullptr);
    // The world is read whole while its folder is on the search list; a later fetch would look in
    // the wrong place, or find a file the writer has since replaced.
    SoVRMLImageTexture::setDelayFetchURL(FALSE);

    sensorTimer = new QTimer(QCoreApplication::instance());
    sensorTimer->setSingleShot(true);
    QObject::connect(sensorTimer, &QTimer::timeout, RunSensors);
    SoDB::getSensorManager()->setChangedCallback(ScheduleSensors, nullptr);
}

void WithCoinFolder(const QString& folder, const std::function<void()>& read) {
    const QByteArray name = QFile::encodeName(folder);
    const bool searched = IsSearched(name);
    if (!searched) SoInput::addDirectoryFirst(name.constData());
    read();
    if (!searched) SoInput::removeDirectory(name.constData());
}

QStringList TakeCoinMessages() {
    QStringList taken;
    taken.swap(messages);
    return taken;
}
