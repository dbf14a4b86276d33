// Takes from the process what the reading of one file does not need, before the file is looked at.
#pragma once

namespace kestrel::jet {

// From here on the process has bounded time and memory, only its three standard handles, no way to
// write a file or to make one, and, where the system can deny them, no network, no other program
// and no other rights. What the system cannot deny it leaves.
void enterSandbox();

}  // namespace kestrel::jet
