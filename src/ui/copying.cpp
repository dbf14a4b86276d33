#include "ui/copying.h"

#include <utility>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>

namespace kestrel {

void offerCopying(QWidget& list, std::function<QString()> selected, std::function<QString()> all) {
    list.setContextMenuPolicy(Qt::ActionsContextMenu);
    const auto offer = [&](const char* caption, std::function<QString()> text) {
        auto* action = new QAction(QString::fromLatin1(caption), &list);
        QObject::connect(action, &QAction::triggered, &list, [text = std::move(text)] {
            QGuiApplication::clipboard()->setText(text());
        });
        list.addAction(action);
        return action;
    };
    QAction* copy = offer("&Copy", std::move(selected));
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    offer("Copy &All", std::move(all));
}

}  // namespace kestrel
