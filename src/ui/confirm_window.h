#pragma once

// `frmConfirmOperation`: the last question before an operation starts.

#include "operation/confirmation.h"

#include <QCheckBox>
#include <QDialog>

namespace zr5 {

class ConfirmWindow : public QDialog {
  public:
    explicit ConfirmWindow(const Confirmation& confirmation, QWidget* parent = nullptr);
    /// Once it was closed.
    [[nodiscard]] ConfirmationAnswer Answer() const;

  private:
    QCheckBox* leaveOut_ = nullptr; ///< where it is offered
};

} // namespace zr5
