#pragma once

// The picture of byte pairs: a square, scaled to the room there is, with its two axes.

#include "operation/pair_counts.h"

#include <QImage>
#include <QWidget>

namespace zr5 {

class PairPicture : public QWidget {
  public:
    explicit PairPicture(QWidget* parent = nullptr);

    void ShowCounts(const PairCounts& counts);
    /// One pixel a pair: first byte from left to right, second from top to bottom.
    [[nodiscard]] const QImage& Image() const { return image_; }
    /// What is saved: the picture with its axes, dark on white, four pixels a pair in both
    /// directions.
    [[nodiscard]] QImage Page() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] int AxisRoom() const { return fontMetrics().height() + 4; }

    QImage image_;
};

} // namespace zr5
