#include "ui/fonts.h"

#include <QString>
#include <QStringList>

namespace kestrel {
namespace {

QString fontName() {
    return QStringLiteral("ＭＳ ゴシック");
}

}  // namespace

void registerFontSubstitutes() {
    QFont::insertSubstitutions(
        fontName(), {QStringLiteral("MS Gothic"), QStringLiteral("IPAGothic"),
                     QStringLiteral("Noto Sans Mono CJK JP"), QStringLiteral("monospace")});
}

QFont fixedPitchFont(double points) {
    QFont font(fontName());
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(points);
    return font;
}

}  // namespace kestrel
