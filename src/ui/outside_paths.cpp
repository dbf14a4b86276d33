#include "ui/outside_paths.h"

#include <filesystem>

#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace kestrel {
namespace {

std::string fullPath(const QString& path) {
    return path.isEmpty() ? std::string()
                          : QFile::encodeName(QFileInfo(path).absoluteFilePath()).toStdString();
}

}  // namespace

std::string fullPathOf(const std::string& argument) {
    const QUrl url(QFile::decodeName(argument.c_str()));
    if (url.isLocalFile())
        return fullPath(url.toLocalFile());
    // The bytes as they are: a name of an old disk need not be UTF-8.
    return argument.empty() ? argument
                            : std::filesystem::absolute(argument).lexically_normal().string();
}

std::string droppedPath(const QMimeData& data) {
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            return fullPath(url.toLocalFile());
    }
    return {};
}

}  // namespace kestrel
