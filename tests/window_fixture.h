// What the tests of the windows need: a main window with its own state, dialogs and folder.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <QApplication>
#include <QTest>

#include "app/form2_main_window.h"
#include "app/module1.h"
#include "scripted_dialogs.h"
#include "temp_folder.h"
#include "ui/kestrel_application.h"

namespace kestrel::test {

class WindowTest : public testing::Test {
  protected:
    WindowTest() {
        static_cast<KestrelApplication*>(qApp)->showFaultsIn(dialogs);
        startModule1(*module, folder.path());
    }

    void start() {
        form2 = std::make_unique<Form2>(*module, dialogs);
        form2->show();
        QApplication::processEvents();
    }
    void key(Qt::Key which, Qt::KeyboardModifiers held = {}) const {
        QTest::keyClick(form2->plotArea, which, held);
    }
    void open(const std::string& path) {
        dialogs.fileAnswer = {.path = path, .filterIndex = 1};
        key(Qt::Key_G);
    }
    void openSample(const char* name = "eu152-co60-cs137-4096.chn") {
        open(std::string(KESTREL_SAMPLES "/") + name);
    }
    // Chooses a menu item of any window.
    static void trigger(const char* name) {
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* action = window->findChild<QAction*>(QString::fromLatin1(name)))
                return action->trigger();
        }
        FAIL() << name;
    }

    TempFolder folder;
    ScriptedDialogs dialogs;
    std::unique_ptr<Module1> module = std::make_unique<Module1>();
    std::unique_ptr<Form2> form2;
};

}  // namespace kestrel::test
