// A field for what is looked for, behind its label.
#pragma once

#include <QHBoxLayout>
#include <QLineEdit>

namespace kestrel {

// The caption, "&Find:", is also the field's accessible name.
QHBoxLayout* findRow(QLineEdit& field, const char* caption, const char* toolTip);

}  // namespace kestrel
