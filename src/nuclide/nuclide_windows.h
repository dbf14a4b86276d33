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

// Virtual-key numbers of the keys in their grids.
namespace virtual_key {
inline constexpr int f10 = 121;
inline constexpr int f11 = 122;
}  // namespace virtual_key

}  // namespace kestrel
