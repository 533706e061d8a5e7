#pragma once

// Labels for names and for texts that hold names, of any length.

#include <QLabel>

class QTextLayout;

namespace zr5 {

/// A label for a name: where it does not fit, its middle gives way to "…", and the tooltip has the
/// whole.
class ElidedLabel : public QLabel {
  public:
    explicit ElidedLabel(QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    [[nodiscard]] QString FittingText() const;
};

/// A text that wraps between words and, where a name is too long for that, inside it.
class WrappingLabel : public QLabel {
  public:
    explicit WrappingLabel(const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    /// Breaks `layout` into lines of `width`; returns the height of all.
    [[nodiscard]] static qreal BreakLines(QTextLayout& layout, qreal width);
    [[nodiscard]] QString LayoutText() const;
};

/// `text`, or, where it is taller at its least width than this part of the screen, what scrolls it:
/// it must not push the buttons off the screen.
[[nodiscard]] QWidget* FitToScreen(WrappingLabel* text, double partOfScreen);

} // namespace zr5
