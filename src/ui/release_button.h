#pragma once

// A button of the main window that acts when the left mouse button is released inside it,
// unless that release belongs to the double-click that just closed a file picker.

#include <functional>
#include <QMouseEvent>
#include <QPushButton>

namespace zr5 {

class ReleaseButton : public QPushButton {
  public:
    using QPushButton::QPushButton;
    /// While `guard` answers true, releases of the mouse are not for this button.
    void SetGuard(std::function<bool()> guard) { guard_ = std::move(guard); }

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (guard_ && guard_()) {
            setDown(false);
            event->accept();
            return;
        }
        QPushButton::mouseReleaseEvent(event);
    }

  private:
    std::function<bool()> guard_;
};

} // namespace zr5
