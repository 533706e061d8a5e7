#pragma once

// The window in which a key is typed once and seen as it is typed.

#include "keys/current_key.h"
#include "keys/keyboard_with_display.h"

#include <QDialog>

class QLabel;
class QPushButton;

namespace zr5 {

class KeyBox;

/// `frmKeyboardWithDisplay`
class KeyDialogWithDisplay final : public QDialog {
    Q_OBJECT

  public:
    explicit KeyDialogWithDisplay(KeyboardWithDisplay& rules, QWidget* parent = nullptr);

    /// How the dialog ended; Cancel until it has.
    [[nodiscard]] KeyAnswer Answer() const { return answer_; }

  private:
    void LayOut();
    void Refresh();
    void End(KeyAnswer answer);

    KeyboardWithDisplay& rules_;
    KeyAnswer answer_ = KeyAnswer::Cancel;
    QLabel* prompt_;
    KeyBox* box_;
    QLabel* hint_;
    QLabel* checksum_;
    QLabel* useThisKey_;
    QPushButton* yes_;
    QPushButton* no_;
    QPushButton* cancel_;
};

/// Lets the user type a key and makes it the current one, drops the current one, or leaves it.
void GetKeyFromKeyboardWithDisplay(QWidget* parent, Function operation, CurrentKey& key);

} // namespace zr5
