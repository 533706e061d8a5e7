#pragma once

// Finds words in a text that is shown: Ctrl+F, then Enter or F3 for the next place.

#include <QWidget>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace zr5 {

class FindBar final : public QWidget {
  public:
    /// Is hidden until the user asks for it. `text` outlives it.
    FindBar(QPlainTextEdit& text, QWidget* parent);

    void Open();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    enum class Way { Next, Previous };
    /// Goes on at the other end where there is nothing more.
    void Find(Way way);
    void Close();

    QPlainTextEdit& text_;
    QLineEdit* words_;
    QLabel* result_;
};

} // namespace zr5
