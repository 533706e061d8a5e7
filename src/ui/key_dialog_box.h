#pragma once

// The text box into which a key is typed. It shows what the dialog's rules hold, keeps nothing
// that could be undone, tells no listener what is typed, and overwrites its text when it goes.

#include "libs/system/secret.h"
#include "ui/unspoken_text.h"

#include <functional>
#include <QLineEdit>
#include <string_view>

namespace zr5 {

class KeyBox final : public QLineEdit {
    Q_OBJECT

  public:
    enum class Characters { Shown, Masked };
    /// Told of every change, composed (NFC); says no to refuse it.
    using Edit = std::function<bool(std::u16string_view typed)>;
    /// What the box is to hold: after an edit, or after `ShowEntry`.
    using Entry = std::function<const SecretBytes&()>;

    KeyBox(Characters characters, Edit edit, Entry entry);
    ~KeyBox() override;
    KeyBox(const KeyBox&) = delete;
    KeyBox& operator=(const KeyBox&) = delete;

    /// Shows the entry that the rules hold now.
    void ShowEntry();

    /// Wide enough for the longest key.
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    /// Whatever changes the text, the old one is overwritten afterwards.
    bool event(QEvent* event) override;
    /// Alt and a letter is meant for a menu or a button, never for the key.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void TakeEdit();
    void OfferPasting(const QPoint& place);
    void OverwriteText();

    UnspokenText unspoken_{*this};
    Edit edit_;
    Entry entry_;
    bool marked_ = false; ///< some of the text was once marked
};

} // namespace zr5
