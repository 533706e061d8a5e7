#pragma once

// Keeps a key from the listeners of the desktop: the toolkit tells them of every change of a text
// with the text itself, whether or not it is masked, and before that of every key that is pressed.

#include <QAccessible>
#include <QWidget>

namespace zr5 {

/// While it lives, no accessible event that carries or announces a text of `widget`, or of what is
/// in it, goes out, whatever listens, and no press of a key that types there; the others do. What
/// is shown can still be asked for.
class UnspokenText final : public QObject, public QAccessible::ActivationObserver {
  public:
    explicit UnspokenText(const QWidget& widget);
    ~UnspokenText() override;
    UnspokenText(const UnspokenText&) = delete;
    UnspokenText& operator=(const UnspokenText&) = delete;

    void accessibilityActiveChanged(bool active) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    const QWidget& widget_;
};

} // namespace zr5
