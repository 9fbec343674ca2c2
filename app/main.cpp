#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>

#include "core/Desktop.h"
#include "core/Memory.h"
#include "core/ProgramState.h"
#include "core/ui/Resources.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/ui/QtDesktop.h"
#include "shell/ui/stadiumsplash.h"

int main(int argc, char** argv) {
    KeepLargeBlocksForReuse();
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("VORN"));
    QApplication::setApplicationName(QStringLiteral("terramason"));
    // No display name: the window system would append it to every title that does not end
    // with it, and the main window's title is exactly the project's.
    LoadResources();
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/terramason.png")));
    // The program ends only by the quit question or the viewer download; the splash closing
    // before the main window is shown must not end it.
    QApplication::setQuitOnLastWindowClosed(false);

    // config.ini, the scratch folder and the hand-over files live in the user's own data folder:
    // the install stays read-only.
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/terramason");
    QDir().mkpath(folder + QStringLiteral("/temp"));
    AppFolder = QDir::cleanPath(folder).toStdString();
    EnsureConfigFile();
    ResourceFolder = FindResourceFolder(QCoreApplication::applicationDirPath().toStdString(), TM_SOURCE_RESOURCES);

    QtDesktop desktop;
    InstallDesktop(&desktop);

    int result = 0;
    {
        // "terramason stadium.oif", as the desktop's file manager starts it.
        const QStringList args = QCoreApplication::arguments();
        QString namedFile;
        if (args.size() > 1 && !args[1].startsWith(QLatin1Char('-'))) namedFile = QFileInfo(args[1]).absoluteFilePath();
        stadiumsplash splash(namedFile);
        splash.show();
        result = QApplication::exec();
    }
    InstallDesktop(nullptr);
    return result;
}
