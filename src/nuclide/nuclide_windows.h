// How the nuclide windows bring each other and the main window to the front.
#pragma once

namespace kestrel {

class NuclideWindows {
  public:
    virtual ~NuclideWindows() = default;
    virtual void showMainWindow() = 0;
    virtual void showEnergyList() = 0;
    virtual void showNuclideData() = 0;
};

}  // namespace kestrel
