// The floor of Kestrel's start and of its memory: an empty window. With a number as argument, so
// many windows with a menu bar, buttons and a text field, which is what Qt itself takes for those.
// Usage: empty_window [WINDOWS]

#include <cstdlib>
#include <memory>
#include <vector>

#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>

namespace {

constexpr QSize mainSize(1100, 740);  // of Kestrel's main window
constexpr QSize otherSize(600, 400);  // about as large as its others are on the average

void furnish(QMainWindow& window) {
    for (const char* caption : {"File", "pkArea", "Jump", "Option", "Window"})
        window.menuBar()->addMenu(QString::fromLatin1(caption))->addAction(QStringLiteral("Open"));
    auto* central = new QWidget(&window);
    auto* row = new QHBoxLayout(central);
    for (const char* caption : {"<>", "><", "Lin", "Yexp", "Ycnt", "<-", "->"})
        row->addWidget(new QPushButton(QString::fromLatin1(caption), central));
    row->addWidget(new QLineEdit(QStringLiteral("ch:"), central));
    window.setCentralWidget(central);
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const int furnished = argc > 1 ? std::atoi(argv[1]) : 0;
    std::vector<std::unique_ptr<QMainWindow>> windows;
    do {
        QMainWindow& window = *windows.emplace_back(std::make_unique<QMainWindow>());
        window.setWindowTitle(QStringLiteral("Empty window"));
        if (furnished > 0)
            furnish(window);
        window.resize(windows.size() == 1 ? mainSize : otherSize);
        window.show();
    } while (std::ssize(windows) < furnished);
    return QApplication::exec();
}
