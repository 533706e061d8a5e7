#pragma once

// `frmReliabilityTest`: asks how often the reliability test is to be performed.

#include "operation/reliability_rules.h"

#include <optional>
#include <QDialog>

class QLayout;
class QLineEdit;

namespace zr5 {

class ReliabilityTestWindow : public QDialog {
  public:
    /// `form` outlives the window and holds the answer.
    explicit ReliabilityTestWindow(ReliabilityTestForm& form, QWidget* parent = nullptr);

  private:
    QLayout* NumberRow();
    void AskForNumber();
    void Start();

    ReliabilityTestForm& form_;
    QLineEdit* number_;
};

} // namespace zr5
