#pragma once

// The picture of a file's byte pairs, in a window beside that of random bytes.

#include "operation/measure/byte_pair_picture.h"

#include <cstddef>
#include <functional>
#include <QDialog>
#include <QImage>
#include <QWidget>
#include <span>

class QAction;
class QFrame;
class QLabel;
class QLayout;
class QPushButton;

namespace zr5 {

/// The picture of byte pairs: a square, scaled to the room there is, with its two axes.
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

/// `frmGraphic`
class GraphicWindow : public QDialog {
  public:
    using SaveFunction = std::function<void(std::span<const std::byte> png)>;

    /// `rules` outlives the window.
    GraphicWindow(BytePairPicture& rules, SaveFunction save, QWidget* parent = nullptr);
    ~GraphicWindow() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void reject() override;

  private:
    void OfferSaving();
    void LayOut();
    QLayout* Pictures();
    QLayout* Foot();
    void Show();
    void ShowProgress();
    void Save();

    BytePairPicture& rules_;
    SaveFunction save_;
    PairPicture* picture_;
    PairPicture* random_;
    QFrame* track_;
    QLabel* progress_;
    QPushButton* display_;
    QAction* saving_;
};

} // namespace zr5
