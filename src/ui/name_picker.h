#pragma once

// The toolkit's picker reads quotes as the ends of several names. Here a typed or chosen name
// that holds one is what it says, and the list cuts nothing but names.

#include <QFileDialog>

namespace zr5 {

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
