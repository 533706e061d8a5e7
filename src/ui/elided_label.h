#pragma once

// A label for names: where its text does not fit, the middle gives way to "…", and the tooltip
// has the whole.

#include <QLabel>

namespace zr5 {

class ElidedLabel : public QLabel {
  public:
    explicit ElidedLabel(QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    [[nodiscard]] QString FittingText() const;
};

} // namespace zr5
