#pragma once

// A text that wraps between words and, where a name is too long for that, inside it.

#include <QLabel>

class QTextLayout;

namespace zr5 {

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
