#pragma once

// The two windows in which a key is typed: once and seen, or twice and never seen.

#include "keys/current_key.h"
#include "keys/typed_key.h"
#include "util/machine.h"

#include <array>
#include <cstddef>
#include <QDialog>

class QLabel;
class QPushButton;

namespace zr5 {

class KeyBox;

/// `frmKeyboardWithDisplay`: a key is typed once and seen as it is typed.
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

/// `frmKeyboardWithoutDisplay`: a key is typed twice and never seen. Accepted once both entries are
/// the same key.
class KeyDialogWithoutDisplay final : public QDialog {
    Q_OBJECT

  public:
    KeyDialogWithoutDisplay(KeyboardWithoutDisplay& rules, UserPort& user,
                            QWidget* parent = nullptr);

  private:
    KeyBox* MakeBox(std::size_t index);
    void LayOut();
    void Refresh();
    void CompareEntries();

    KeyboardWithoutDisplay& rules_;
    UserPort& user_;
    QLabel* prompt_;
    QLabel* reEnter_;
    std::array<KeyBox*, 2> boxes_;
    std::array<QLabel*, 2> hints_;
    QLabel* checksum_;
    QPushButton* ok_;
    QPushButton* cancel_;
};

/// Lets the user type a key and makes it the current one, drops the current one, or leaves it.
void GetKeyFromKeyboardWithDisplay(QWidget* parent, Direction operation, Machine& machine,
                                   CurrentKey& key);

/// Lets the user type a key twice, offers to inspect it, and makes it the current one, drops the
/// current one, or leaves it.
void GetKeyFromKeyboardWithoutDisplay(QWidget* parent, Direction operation, Machine& machine,
                                      CurrentKey& key);

} // namespace zr5
