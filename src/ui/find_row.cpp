#include "ui/find_row.h"

#include <QLabel>

namespace kestrel {

QHBoxLayout* findRow(QLineEdit& field, const char* caption, const char* toolTip) {
    const QString words = QString::fromLatin1(caption);
    field.setObjectName(QStringLiteral("find"));
    field.setAccessibleName(QString(words).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    field.setToolTip(QString::fromLatin1(toolTip));
    field.setClearButtonEnabled(true);
    auto* label = new QLabel(words, field.parentWidget());
    label->setBuddy(&field);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(&field);
    return row;
}

}  // namespace kestrel
