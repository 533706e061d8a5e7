#pragma once

// Keeps a key from the listeners of the desktop: the toolkit tells them of every change of a text
// with the text itself, whether or not it is masked.

#include <QWidget>

namespace zr5 {

/// While it lives, no accessible event that carries or announces a text of `widget`, or of what is
/// in it, goes out, whatever listens; the others do. What is shown can still be asked for.
class UnspokenText {
  public:
    explicit UnspokenText(const QWidget& widget);
    ~UnspokenText();
    UnspokenText(const UnspokenText&) = delete;
    UnspokenText& operator=(const UnspokenText&) = delete;

  private:
    const QWidget& widget_;
};

} // namespace zr5
