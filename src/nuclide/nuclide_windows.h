// How the nuclide windows bring each other and the main window to the front, and mark on its plot.
#pragma once

namespace kestrel {

class NuclideWindows {
  public:
    virtual ~NuclideWindows() = default;
    virtual void showMainWindow() = 0;
    virtual void showEnergyList() = 0;
    virtual void showNuclideData() = 0;
    // The nuclide of the nuclide data window beside others, or no more.
    virtual void switchMarkedNuclide() = 0;
};

}  // namespace kestrel
