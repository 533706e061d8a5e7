#pragma once

// `frmConfirmOperation`: the last question before an operation starts.

#include "operation/confirmation.h"

#include <QDialog>

namespace zr5 {

class ConfirmWindow : public QDialog {
  public:
    explicit ConfirmWindow(const Confirmation& confirmation, QWidget* parent = nullptr);
};

/// Asks in a ConfirmWindow over `parent`.
class ConfirmInWindow : public ConfirmationView {
  public:
    explicit ConfirmInWindow(QWidget* parent) : parent_(parent) {}
    [[nodiscard]] bool Confirm(const Confirmation& confirmation) override {
        return ConfirmWindow(confirmation, parent_).exec() == QDialog::Accepted;
    }

  private:
    QWidget* parent_;
};

} // namespace zr5
