// The peaks window of the main window.

#include <algorithm>

#include "app/form2_main_window.h"

namespace kestrel {

void Form2::showPeaks() {
    if (!peaks_)
        peaks_ = new PeaksWindow(
            {module_.spectrum, module_.derived, module_.view.cursorCh, module_.palette,
             module_.preferences.peaksWindow, module_.settings.lastDirectory, dialogs_, *this,
             [this](int channel) { view_.jumpTo(channel); }},
            this);
    peaks_->show();
    peaks_->raise();
    peaks_->activateWindow();
}

}  // namespace kestrel
