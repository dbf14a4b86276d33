// Fields that numbers are typed into.
#pragma once

#include <QLineEdit>

namespace kestrel {

// A comma becomes a point as it is typed or pasted: "511,9" would count as 511. The field's text is
// selected whenever it gets the focus, so that typing replaces it.
void takeNumbers(QLineEdit& field);

// The selection alone, for fields of other texts.
void selectOnFocus(QLineEdit& field);

}  // namespace kestrel
