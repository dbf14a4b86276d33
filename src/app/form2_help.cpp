// The Help menu: the guide, the keys and what the program is made of.

#include <QMenu>

#include "app/form2_main_window.h"
#include "ui/reading_window.h"
#include "ui/text_codec.h"
#include "version.h"

namespace kestrel {
namespace {

// A row of a table; what Markdown would take for its own stays as it is.
QString tableRow(QString first, QString second) {
    for (QString* cell : {&first, &second}) {
        for (const char* sign : {"\\", "|", "<", ">", "*", "_", "`", "[", "&"})
            cell->replace(QLatin1String(sign), QLatin1Char('\\') + QLatin1String(sign));
    }
    return QStringLiteral("| %1 | %2 |\n").arg(first, second);
}

// The keys that only the plot knows; those of one sentence in one row.
QString plotKeyRows() {
    QString rows;
    QString names;
    const std::vector<PlotKey> keys = SpectrumView::keys();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].does.empty())
            continue;
        names += (names.isEmpty() ? QString() : QStringLiteral(" or ")) + toWindow(keys[i].name);
        if (i + 1 < keys.size() && keys[i + 1].does == keys[i].does)
            continue;
        rows += tableRow(names, toWindow(keys[i].does));
        names.clear();
    }
    return rows;
}

void showFront(ReadingWindow& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace

QString Form2::keysPage() {
    QString page =
        QStringLiteral("# Keys\n\nIn the main window:\n\n| Key | Action |\n|---|---|\n") +
        plotKeyRows() + tableRow(QStringLiteral("Ctrl+C"), QStringLiteral("Copy the plot"));
    for (const Action& action : actions()) {
        const QString keys = QLatin1String(action.plotKeys) + QLatin1String(action.shortcut);
        if (!keys.isEmpty())
            page += tableRow(QString(keys).replace(QStringLiteral(", "), QStringLiteral(" or ")),
                             QLatin1String(action.does));
    }
    for (const Action& action : actions()) {
        const QString caption = QLatin1String(action.caption);
        if (action.menu[0] == '\0')
            page += tableRow(QKeySequence::mnemonic(caption).toString(),
                             QStringLiteral("Menu %1").arg(QString(caption).remove(u'&')));
    }
    return page + QStringLiteral(
                      "\nThe keys of the other windows are in the guide, under"
                      " [Keys and mouse](user-guide.md#keys-and-mouse).\n");
}

QString Form2::aboutPage() {
    QString page = QStringLiteral("# %1\n\nA viewer for gamma-ray pulse-height spectra.\n\n")
                       .arg(baseCaption());
    page += QStringLiteral("| Library | Version |\n|---|---|\n");
    for (const Library& library : libraries)
        page += tableRow(QLatin1String(library.name), QLatin1String(library.version));
    page += QStringLiteral("\n| Nuclide data | Date |\n|---|---|\n");
    for (const DataSource& source : module_.database.sources(module_.settings.marigoldDir))
        page += tableRow(toSigns(source.name), toSigns(source.date));
    return page;
}

ReadingWindow& Form2::readingWindow(const char* name, const QString& title) {
    auto* window = findChild<ReadingWindow*>(QLatin1String(name));
    if (window == nullptr) {
        window = new ReadingWindow(title, this);
        window->setObjectName(QLatin1String(name));
    }
    return *window;
}

void Form2::showGuide() {
    ReadingWindow& window = readingWindow("guideWindow", QStringLiteral("Kestrel - Guide"));
    if (window.page->source().isEmpty())
        window.showResource(QStringLiteral("user-guide.md"));
    showFront(window);
}

void Form2::showKeys() {
    ReadingWindow& window = readingWindow("keysWindow", QStringLiteral("Kestrel - Keys"));
    window.showMarkdown(keysPage());
    showFront(window);
}

void Form2::showAbout() {
    ReadingWindow& window = readingWindow("aboutWindow", QStringLiteral("About Kestrel"));
    window.showMarkdown(aboutPage());
    showFront(window);
}

}  // namespace kestrel
