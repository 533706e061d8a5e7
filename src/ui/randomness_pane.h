#pragma once

// `fraRandomnessFiles`: the randomness report in the place of the menu.

#include "operation/measure/randomness_report.h"

#include <array>
#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace zr5 {

class WrappingLabel;

class RandomnessPane : public QFrame {
  public:
    explicit RandomnessPane(QWidget* parent);

    /// Shows what the rules say now.
    void Show(const RandomnessReport& rules);

  private:
    void ShowProgress(const RandomnessReport& rules);
    void ShowResult(const RandomnessReport& rules);

    std::array<QPushButton*, 2> files_;
    QLabel* checking_;
    QProgressBar* progress_;
    WrappingLabel* file_;
    QLabel* size_;
    QLabel* randomness_;
    WrappingLabel* meaning_;
    QPushButton* display_;
    QPushButton* close_;
    RandomnessReport::State shown_ = RandomnessReport::State::Closed;
};

} // namespace zr5
