#pragma once

// The window across which the user moves mouse, pen or finger to create a random key.

#include "keys/key_windows.h"
#include "keys/random_key.h"
#include "util/machine.h"

#include <QDialog>
#include <QTimer>

class QLabel;

namespace zr5 {

/// `frmRandomKey`; accepted when the key is complete.
class RandomKeyWindow final : public QDialog {
    Q_OBJECT

  public:
    explicit RandomKeyWindow(RandomKeyCollector& rules, QWidget* parent = nullptr);

  protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void LayOut();
    void ShowProgress();

    RandomKeyCollector& rules_;
    QTimer clock_;
    QLabel* instruction_;
    QLabel* progress_;
    QLabel* hint_;
};

/// Opens the window over `parent`.
class CollectInWindow final : public KeyCollector {
  public:
    CollectInWindow(QWidget* parent, Machine& machine) : parent_(parent), machine_(machine) {}
    [[nodiscard]] SecretBytes Collect() override;

  private:
    QWidget* parent_;
    Machine& machine_;
};

} // namespace zr5
