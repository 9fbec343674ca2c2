#pragma once
// Coin3D as the viewers use it: started once per process, its images read through QImage, its
// sensor queue run from the Qt event loop, and its messages kept instead of printed, so that a
// broken texture or world never puts text on the user's terminal.
#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

// Starts Coin the first time it is called; later calls do nothing. Needs a QCoreApplication.
void EnsureCoin();

// Runs `read` with `folder` first on the list where Coin looks for the files a world names, and
// takes it off again unless it was there before: textures are named relative to their world.
void WithCoinFolder(const QString& folder, const std::function<void()>& read);

// What Coin reported since the last call (read errors, warnings), oldest first, and forgets it.
// Kept for tests and for a look in a debugger; never shown.
QStringList TakeCoinMessages();

// Reads an image file into RGBA rows bottom first, as Coin's textures want them. Returns false
// when Qt cannot read the file.
struct CoinImage {
    int width = 0, height = 0;
    QByteArray rgba;
};
bool ReadCoinImage(const QString& path, CoinImage& image);
