#include "base/qt/outside_paths.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace kestrel {
namespace {

std::string fullPath(const QString& path) {
    return path.isEmpty() ? std::string()
                          : QFile::encodeName(QFileInfo(path).absoluteFilePath()).toStdString();
}

QString firstPlainArgument(const QStringList& arguments) {
    for (int i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--"))
            return arguments.value(i + 1);
        if (!arguments[i].startsWith(QLatin1Char('-')))
            return arguments[i];
    }
    return {};
}

}  // namespace

std::string pathInArguments(const QStringList& arguments) {
    const QString argument = firstPlainArgument(arguments);
    const QUrl url(argument);
    return fullPath(url.isLocalFile() ? url.toLocalFile() : argument);
}

std::string droppedPath(const QMimeData& data) {
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            return fullPath(url.toLocalFile());
    }
    return {};
}

}  // namespace kestrel
