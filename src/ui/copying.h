// Copy and Copy All in the context menu of a list.
#pragma once

#include <functional>

#include <QWidget>

namespace kestrel {

// The texts are asked for when they are copied. Ctrl+C copies what is selected.
void offerCopying(QWidget& list, std::function<QString()> selected, std::function<QString()> all);

}  // namespace kestrel
