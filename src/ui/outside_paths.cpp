#include "ui/outside_paths.h"

#include <filesystem>

#include <QByteArray>
#include <QFile>
#include <QUrl>

namespace kestrel {
namespace {

// The bytes as they are: a name of an old disk need not be UTF-8.
std::string fullPath(const std::string& path) {
    return path.empty() ? path : std::filesystem::absolute(path).lexically_normal().string();
}

bool isHere(const QUrl& url) {
    return url.isLocalFile() && (url.host().isEmpty() || url.host() == QLatin1String("localhost"));
}

std::string pathOf(const QUrl& url) {
    const QByteArray encoded = url.path(QUrl::FullyEncoded).toLatin1();
    return fullPath(QByteArray::fromPercentEncoding(encoded).toStdString());
}

}  // namespace

std::string fullPathOf(const std::string& argument) {
    const QUrl url(QFile::decodeName(argument.c_str()));
    return isHere(url) ? pathOf(url) : fullPath(argument);
}

std::string droppedPath(const QMimeData& data) {
    for (const QUrl& url : data.urls()) {
        if (isHere(url))
            return pathOf(url);
    }
    return {};
}

}  // namespace kestrel
