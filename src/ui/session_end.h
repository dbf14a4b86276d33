// The end of the program from outside: by the session manager or by a signal.
#pragma once

#include <functional>

#include <QObject>

namespace kestrel {

class SessionEnd : public QObject {
  public:
    // `save` runs before the program ends; it must neither ask nor throw. At most one at a time.
    explicit SessionEnd(std::function<void()> save);

  private:
    void watchSignals();

    std::function<void()> save_;
};

}  // namespace kestrel
