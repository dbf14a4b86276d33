// The fixed-pitch font of plot, status line and lists, in which Japanese characters are two columns
// wide.
#pragma once

#include <QFont>

namespace kestrel {

// To be called once, after the application object exists.
void registerFontSubstitutes();

QFont fixedPitchFont(double points);

}  // namespace kestrel
