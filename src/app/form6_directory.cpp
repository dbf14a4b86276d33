#include "app/form6_directory.h"

#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QStorageInfo>
#include <QVBoxLayout>

#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int pathColumns = 48;

std::string pathBytes(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

QString pathText(const std::string& path) {
    return QFile::decodeName(path.c_str());
}

// Mounted for the user, and not a part of the system itself.
bool holdsUserFiles(const QStorageInfo& volume) {
    const QString root = volume.rootPath();
    const bool removable = root.startsWith(QLatin1String("/run/media/"));
    for (const char* system : {"/proc", "/sys", "/dev", "/run", "/boot", "/snap", "/etc", "/var"}) {
        const QString folder = QString::fromLatin1(system);
        if (!removable && (root == folder || root.startsWith(folder + QLatin1Char('/'))))
            return false;
    }
    return volume.isValid() && volume.isReady() && QFileInfo(root).isDir();
}

}  // namespace

Form6::Form6(const ChosenDirectories& directories, WindowPlacement& placement, QWidget* parent)
    : ModalForm("Form6", "Optn...Marigold Dir", placement, parent),
      Label1(new QLabel(QStringLiteral("Marigold Dir"), this)),
      Drive1(new QComboBox(this)),
      Dir1(new QListWidget(this)),
      Text1(fixedPitchField(this, "Text1", pathColumns, "Chosen folder")),
      Command1(addButton("Command1", "&OK", "OK")),
      Command2(addButton("Command2", "&CANCEL", "Cancel")),
      directories_(directories) {
    placeControls();
    fillDrives();
    restorePlacement();
    Form_Load();
    connect(Drive1, &QComboBox::activated, this, &Form6::Drive1_Change);
    connect(Dir1, &QListWidget::itemActivated, this, &Form6::Dir1_Change);
    connect(Text1, &QLineEdit::returnPressed, this, &Form6::Command1_Click);
    connect(Command1, &QPushButton::clicked, this, &Form6::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &Form6::reject);
}

void Form6::placeControls() {
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setTextFormat(Qt::PlainText);
    Drive1->setObjectName(QStringLiteral("Drive1"));
    Drive1->setAccessibleName(tr("Drive"));
    Dir1->setObjectName(QStringLiteral("Dir1"));
    Dir1->setAccessibleName(tr("Folders"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(Command2);
    auto* column = new QVBoxLayout(this);
    column->addWidget(Label1);
    column->addWidget(Text1);
    column->addWidget(Drive1);
    column->addWidget(Dir1);
    column->addLayout(buttons);
    resize(520, 420);
    QWidget* order[] = {Text1, Drive1, Dir1, Command1, Command2};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
    Dir1->setFocus();
}

void Form6::fillDrives() {
    QStringList drives{QDir::rootPath(), QDir::homePath()};
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (holdsUserFiles(volume))
            drives += volume.rootPath();
    }
    drives.removeDuplicates();
    Drive1->addItems(drives);
}

void Form6::Form_Load() {
    setFolder(pathText(startDirectory(directories_)));
    Text1->setText(folder_);
    // The innermost drive that the start folder lies on.
    int drive = 0;
    for (int i = 0; i < Drive1->count(); ++i) {
        const QString root = Drive1->itemText(i);
        const bool inside = folder_ == root || folder_.startsWith(root + QLatin1Char('/'));
        if (inside && root.size() > Drive1->itemText(drive).size())
            drive = i;
    }
    Drive1->setCurrentIndex(drive);
}

void Form6::Drive1_Change() {
    setFolder(Drive1->currentText());
    Text1->setText(folder_);
}

void Form6::Dir1_Change() {
    setFolder(Dir1->currentItem()->data(Qt::UserRole).toString());
    Text1->setText(folder_);
}

void Form6::Command1_Click() {
    acceptDirectory(directories_, pathBytes(Text1->text()));
    accept();
}

void Form6::addFolder(const QString& path, const QString& name, int depth) {
    auto* item =
        new QListWidgetItem(style()->standardIcon(QStyle::SP_DirIcon),
                            QString(qsizetype{3} * depth, QLatin1Char(' ')) + asSigns(name), Dir1);
    item->setData(Qt::UserRole, path);
}

void Form6::setFolder(const QString& path) {
    folder_ = pathText(nearestDirectory(pathBytes(path)));
    Dir1->clear();
    QStringList chain;
    QDir above(folder_);
    do {
        chain.prepend(above.absolutePath());
    } while (!above.isRoot() && above.cdUp());
    int depth = 0;
    for (const QString& folder : std::as_const(chain)) {
        const QString name = depth == 0 ? folder : QDir(folder).dirName();
        addFolder(folder, name, depth++);
    }
    Dir1->setCurrentRow(Dir1->count() - 1);
    const QDir current(folder_);
    const auto kinds = QDir::Dirs | QDir::NoDotAndDotDot;
    for (const QString& name : current.entryList(kinds, QDir::Name | QDir::IgnoreCase))
        addFolder(current.absoluteFilePath(name), name, depth);
}

}  // namespace kestrel
