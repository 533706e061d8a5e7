#pragma once

// How a run went, in a line with a picture: in the report, and in the main window.

#include "operation/report/run_outcome.h"

#include <QFrame>

class QLabel;

namespace zr5 {

/// Shows its words in `lblOutcome`.
class OutcomeStrip final : public QFrame {
  public:
    enum class Wrapping { OneLine, TwoLines };
    OutcomeStrip(Wrapping wrapping, QWidget* parent);

    void ShowOutcome(const RunOutcome& outcome);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void Colour();

    QLabel* picture_;
    QLabel* words_;
    Verdict verdict_ = Verdict::None;
};

} // namespace zr5
