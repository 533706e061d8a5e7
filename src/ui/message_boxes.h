#pragma once

// Whatever a name holds, a message box shows it whole and as it is: also the boxes that the toolkit
// opens by itself, such as a file picker's.

#include <QObject>

namespace zr5 {

/// While it lives, each message box of the program is written in plain text, which wraps inside a
/// long name, is wide enough for its title as far as the screen permits, and scrolls a text that is
/// too tall for the screen.
class MessageBoxDresser : public QObject {
  public:
    MessageBoxDresser();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace zr5
