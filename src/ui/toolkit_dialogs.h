#pragma once

// Whatever a name holds, the toolkit's own dialogs show it whole and take it as it is.

#include <QFileDialog>
#include <QFileIconProvider>
#include <QIcon>
#include <QMessageBox>
#include <QObject>

class QLineEdit;

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
    /// Closes the box without an answer, also where there must be one.
    void Leave();
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

/// Made when the program is to end: leaves every modal dialog that stands open, and every one that
/// opens from then on before anything of it is seen.
class DialogEnder final : public QObject {
  public:
    DialogEnder();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    static void Leave(QDialog& dialog);
};

/// Icons and types of a picker's entries, from kind and name alone. The toolkit's own look into
/// each file, and wait for good where that is a pipe or a device.
class PickerIcons final : public QFileIconProvider {
  public:
    PickerIcons();
    using QFileIconProvider::icon;
    /// Called from a thread of the toolkit too.
    [[nodiscard]] QIcon icon(const QFileInfo& entry) const override;
    [[nodiscard]] QString type(const QFileInfo& entry) const override;

  private:
    QIcon folder_, link_, file_;
};

/// A picker of one file or folder. What stands in its name box is what is chosen, whether or not it
/// exists, however the toolkit completes it and whatever is marked in the list for that; a folder
/// that stands there is entered where a file is asked for. The list cuts nothing but names.
class NamePicker final : public QFileDialog {
  public:
    /// `icons` outlives the picker.
    NamePicker(QWidget* parent, const QString& title, PickerIcons& icons);
    /// Writes a name for a file into the box.
    void Suggest(const QString& name);
    /// The path that was accepted.
    [[nodiscard]] const QString& Chosen() const { return chosen_; }

  protected:
    void accept() override;

  private:
    void SetUpList();
    void SetUpNameBox();
    [[nodiscard]] QString TypedPath() const;
    void EnterTyped(const QString& folder);
    [[nodiscard]] bool MayReplace(const QString& path);

    QLineEdit& box_;
    QString markedFolder_; ///< was marked in the list after the box had been changed last
    QString chosen_;
};

} // namespace zr5
