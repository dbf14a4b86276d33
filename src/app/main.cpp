// The program: its state, its dialogs and its main window.

#include <memory>

#include <QFile>
#include <QStandardPaths>

#include "app/form2.h"
#include "app/module1.h"
#include "base/qt/kestrel_application.h"
#include "base/qt/qt_dialogs.h"

int main(int argc, char** argv) {
    kestrel::KestrelApplication application(argc, argv);
    kestrel::QtDialogs dialogs;
    application.showFaultsIn(dialogs);

    const auto module = std::make_unique<kestrel::Module1>();
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    kestrel::startModule1(*module, QFile::encodeName(folder).toStdString());

    kestrel::Form2 form2(*module, dialogs);
    form2.show();
    return kestrel::KestrelApplication::exec();
}
