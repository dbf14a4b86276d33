// What a screen reader finds: each control of each window has a role and a name.
#include <QAccessible>
#include <QDialog>
#include <QTimer>

#include "window_fixture.h"

namespace kestrel {
namespace {

class Accessibility : public test::WindowTest {
  protected:
    // Controls of a window that can have the focus and say not what they are.
    static void expectNames(QAccessibleInterface& item, const std::string& path) {
        const std::string name = item.text(QAccessible::Name).toStdString();
        const QAccessible::State state = item.state();
        const QObject* object = item.object();
        const std::string here =
            path + "/" + (object != nullptr ? object->metaObject()->className() : "item") + " " +
            (object != nullptr ? object->objectName().toStdString() : "") + " \"" + name + "\"";
        if (state.invisible)
            return;
        if (state.focusable) {
            EXPECT_NE(item.role(), QAccessible::NoRole) << here;
            EXPECT_FALSE(name.empty()) << here;
            ++checked;
        }
        // The cells of tables are their texts.
        if (item.tableInterface() != nullptr || item.role() == QAccessible::List)
            return;
        for (int i = 0; i < item.childCount(); ++i) {
            if (QAccessibleInterface* child = item.child(i))
                expectNames(*child, here);
        }
    }
    static void expectNamesIn(QWidget& window) {
        expectNames(*QAccessible::queryAccessibleInterface(&window), "");
    }
    void expectNamesInModal(const char* action) {
        bool seen = false;
        QTimer::singleShot(0, qApp, [&seen] {
            auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(window, nullptr);
            expectNamesIn(*window);
            seen = true;
            window->reject();
        });
        trigger(action);
        EXPECT_TRUE(seen) << action;
    }
    static inline int checked = 0;
};

TEST_F(Accessibility, EachControlHasARoleAndAName) {
    start();
    openSample();
    form2->openSpectrumPath(folder.write("cut.chn", std::string(2000, 'n')));
    openSample();
    dialogs.fileAnswer = {.path = KESTREL_SAMPLES "/eu152-co60-cs137-1024.chn"};
    trigger("openSecond");
    for (const char* name : {"pkarea", "f11(1)", "win_wngy", "win_nd", "peaks", "guide", "keys"})
        trigger(name);
    QApplication::processEvents();
    int windows = 0;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible())
            continue;
        expectNamesIn(*window);
        ++windows;
    }
    EXPECT_GE(windows, 8);
    for (const char* name : {"o11(0)", "o11(1)", "f11(20)"})
        expectNamesInModal(name);
    EXPECT_GE(checked, 50);
}

}  // namespace
}  // namespace kestrel
