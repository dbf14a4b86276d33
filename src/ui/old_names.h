// The files of a folder whose names are not UTF-8, as those of old disks: Qt's own file dialog
// leaves them out.
#pragma once

#include <string>

#include <QListWidget>
#include <QStringList>

namespace kestrel {

class OldNames : public QListWidget {
    Q_OBJECT

  public:
    explicit OldNames(QWidget* parent);

    static bool areIn(const QString& folder);
    // Those that fit one of the patterns; hidden where there are none.
    void list(const QString& folder, const QStringList& patterns);

  signals:
    // A file was chosen: its full path, with the bytes of its name.
    void chosen(const std::string& path);
};

}  // namespace kestrel
