#pragma once

// `frmConfirmOperation`: the last question before an operation starts.

#include "operation/confirmation.h"

#include <QDialog>

namespace zr5 {

class ConfirmWindow : public QDialog {
  public:
    explicit ConfirmWindow(const Confirmation& confirmation, QWidget* parent = nullptr);
};

} // namespace zr5
