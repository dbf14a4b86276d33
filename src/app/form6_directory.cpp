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
      prompt(new QLabel(QStringLiteral("Marigold Dir"), this)),
      volumes(new QComboBox(this)),
      folders(new QListWidget(this)),
      chosenFolder(fixedPitchField(this, "Text1", pathColumns, "Chosen folder")),
      okButton(addButton("Command1", "&OK", "OK")),
      cancelButton(addButton("Command2", "&CANCEL", "Cancel")),
      directories_(directories) {
    placeControls();
    fillDrives();
    restorePlacement();
    showStartFolder();
    connect(volumes, &QComboBox::activated, this, &Form6::openVolume);
    connect(folders, &QListWidget::itemActivated, this, &Form6::openFolder);
    connect(chosenFolder, &QLineEdit::returnPressed, this, &Form6::acceptFolder);
    connect(okButton, &QPushButton::clicked, this, &Form6::acceptFolder);
    connect(cancelButton, &QPushButton::clicked, this, &Form6::reject);
}

void Form6::placeControls() {
    prompt->setObjectName(QStringLiteral("Label1"));
    prompt->setTextFormat(Qt::PlainText);
    volumes->setObjectName(QStringLiteral("Drive1"));
    volumes->setAccessibleName(tr("Drive"));
    folders->setObjectName(QStringLiteral("Dir1"));
    folders->setAccessibleName(tr("Folders"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(okButton);
    buttons->addWidget(cancelButton);
    auto* column = new QVBoxLayout(this);
    column->addWidget(prompt);
    column->addWidget(chosenFolder);
    column->addWidget(volumes);
    column->addWidget(folders);
    column->addLayout(buttons);
    resize(520, 420);
    QWidget* order[] = {chosenFolder, volumes, folders, okButton, cancelButton};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
    folders->setFocus();
}

void Form6::fillDrives() {
    QStringList drives{QDir::rootPath(), QDir::homePath()};
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (holdsUserFiles(volume))
            drives += volume.rootPath();
    }
    drives.removeDuplicates();
    volumes->addItems(drives);
}

void Form6::showStartFolder() {
    // The field has it as it is set, also where it is gone; the lists stand on what is left of it.
    chosenFolder->setText(pathText(startDirectory(directories_)));
    setFolder(chosenFolder->text());
    // The innermost drive that the start folder lies on.
    int drive = 0;
    for (int i = 0; i < volumes->count(); ++i) {
        const QString root = volumes->itemText(i);
        const bool inside = folder_ == root || folder_.startsWith(root + QLatin1Char('/'));
        if (inside && root.size() > volumes->itemText(drive).size())
            drive = i;
    }
    volumes->setCurrentIndex(drive);
}

void Form6::openVolume() {
    setFolder(volumes->currentText());
    chosenFolder->setText(folder_);
}

void Form6::openFolder() {
    setFolder(folders->currentItem()->data(Qt::UserRole).toString());
    chosenFolder->setText(folder_);
}

void Form6::acceptFolder() {
    acceptDirectory(directories_, pathBytes(chosenFolder->text()));
    accept();
}

void Form6::addFolder(const QString& path, const QString& name, int depth) {
    auto* item = new QListWidgetItem(
        style()->standardIcon(QStyle::SP_DirIcon),
        QString(qsizetype{3} * depth, QLatin1Char(' ')) + asSigns(name), folders);
    item->setData(Qt::UserRole, path);
}

void Form6::setFolder(const QString& path) {
    folder_ = pathText(nearestDirectory(pathBytes(path)));
    folders->clear();
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
    folders->setCurrentRow(folders->count() - 1);
    const QDir current(folder_);
    const auto kinds = QDir::Dirs | QDir::NoDotAndDotDot;
    for (const QString& name : current.entryList(kinds, QDir::Name | QDir::IgnoreCase))
        addFolder(current.absoluteFilePath(name), name, depth);
}

}  // namespace kestrel
