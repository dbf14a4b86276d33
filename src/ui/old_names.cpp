#include "ui/old_names.h"

#include <filesystem>
#include <system_error>
#include <vector>

#include <QByteArray>
#include <QDir>
#include <QFile>

#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int rowsShown = 4;
constexpr int pathRole = Qt::UserRole;

std::vector<std::string> pathsIn(const QString& folder) {
    namespace fs = std::filesystem;
    std::vector<std::string> paths;
    std::error_code failed;
    const std::string start = QFile::encodeName(folder).toStdString();
    for (fs::directory_iterator entry(start, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const QByteArray name = QByteArray::fromStdString(entry->path().filename().string());
        std::error_code unknown;
        if (QFile::encodeName(QFile::decodeName(name)) != name && !entry->is_directory(unknown))
            paths.push_back(entry->path().string());
    }
    return paths;
}

}  // namespace

OldNames::OldNames(QWidget* parent) : QListWidget(parent) {
    setObjectName(QStringLiteral("oldNames"));
    setAccessibleName(tr("Files with names of old disks"));
    setSortingEnabled(true);
    setMaximumHeight(rowsShown * fontMetrics().lineSpacing() + 2 * frameWidth());
    connect(this, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
        emit chosen(item->data(pathRole).toByteArray().toStdString());
    });
}

bool OldNames::areIn(const QString& folder) {
    return !pathsIn(folder).empty();
}

void OldNames::list(const QString& folder, const QStringList& patterns) {
    clear();
    for (const std::string& path : pathsIn(folder)) {
        const QString name = toSigns(std::filesystem::path(path).filename().string());
        if (!QDir::match(patterns, name))
            continue;
        auto* item = new QListWidgetItem(name, this);
        item->setData(pathRole, QByteArray::fromStdString(path));
    }
    setVisible(count() > 0);
}

}  // namespace kestrel
