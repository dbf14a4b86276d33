// The program: its state, its dialogs and its main window.

#include <cstdio>
#include <memory>

#include <QFile>
#include <QIcon>
#include <QMetaObject>
#include <QStandardPaths>

#include "app/command_line.h"
#include "app/form2_main_window.h"
#include "app/module1.h"
#include "app/nuclide_location.h"
#include "app/places.h"
#include "ui/kestrel_application.h"
#include "ui/outside_paths.h"
#include "ui/qt_dialogs.h"
#include "ui/session_end.h"

int main(int argc, char** argv) {
    const kestrel::CommandLine line =
        kestrel::readCommandLine({argv, static_cast<std::size_t>(argc)});
    if (line.ends) {
        std::fputs(line.answer.c_str(), line.status == 0 ? stdout : stderr);
        return line.status;
    }
    int ownName = 1;
    kestrel::KestrelApplication application(ownName, argv);
    kestrel::KestrelApplication::setWindowIcon(QIcon(QStringLiteral(":/kestrel.png")));
    // Before the settings make another directory the current one.
    const std::string path = kestrel::fullPathOf(line.file);
    kestrel::QtDialogs dialogs;
    application.showFaultsIn(dialogs);

    const auto module = std::make_unique<kestrel::Module1>();
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const kestrel::Places places = kestrel::findPlaces();
    module->database = kestrel::NuclideDatabase(places.jetReader);
    kestrel::startModule1(
        *module, QFile::encodeName(folder).toStdString(), [&](std::string& marigoldDir) {
            kestrel::checkNuclideDatabase(marigoldDir, places.nuclideData, dialogs);
        });

    kestrel::Form2 form2(*module, dialogs);
    const kestrel::SessionEnd sessionEnd([&form2] { form2.endSession(); });
    form2.show();
    // In the event loop, where faults are caught.
    if (!path.empty())
        QMetaObject::invokeMethod(
            &form2, [&] { form2.openSpectrumPath(path); }, Qt::QueuedConnection);
    return kestrel::KestrelApplication::exec();
}
