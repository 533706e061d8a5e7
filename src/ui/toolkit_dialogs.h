#pragma once

// Whatever a name holds, the toolkit's own dialogs show it whole and take it as it is.

#include <QFileDialog>
#include <QMessageBox>
#include <QObject>

namespace zr5 {

/// While it lives, each message box of the program, also one that the toolkit opens by itself, is
/// written in plain text, which wraps inside a long name, is wide enough for its title as far as
/// the screen permits, and scrolls a text that is too tall for the screen.
class MessageBoxDresser : public QObject {
  public:
    MessageBoxDresser();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

/// A message box. One that must be answered is left by its buttons only: Escape and the frame's
/// own button do nothing.
class QuestionBox final : public QMessageBox {
  public:
    QuestionBox(QWidget* parent, bool mustBeAnswered)
        : QMessageBox(parent), mustBeAnswered_(mustBeAnswered) {}
    /// Closes the box without the user: by its default button where it must be answered.
    void LeaveByDefault();
    void done(int button) override;
    void reject() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] bool MayClose() const { return !mustBeAnswered_ || isAnswered_; }

    bool mustBeAnswered_;
    bool isAnswered_ = false;
};

/// The toolkit's picker reads quotes as the ends of several names. Here a typed or chosen name
/// that holds one is what it says, and the list cuts nothing but names.
class NamePicker final : public QFileDialog {
  public:
    NamePicker(QWidget* parent, const QString& title);
    /// The path that was accepted.
    [[nodiscard]] QString Chosen() const;

  protected:
    void accept() override;

  private:
    [[nodiscard]] bool MayReplace(const QString& path);

    QString literal_;
};

} // namespace zr5
