#pragma once

// The toolkit's picker reads quotes as the ends of several names. Here a typed or chosen name
// that holds one is what it says.

#include <QFileDialog>

namespace zr5 {

class NamePicker final : public QFileDialog {
  public:
    using QFileDialog::QFileDialog;
    /// The path that was accepted.
    [[nodiscard]] QString Chosen() const;

  protected:
    void accept() override;

  private:
    [[nodiscard]] bool MayReplace(const QString& path);

    QString literal_;
};

} // namespace zr5
