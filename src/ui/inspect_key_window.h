#pragma once

// The window in which the user looks at a key before using it.

#include "keys/key_inspection.h"
#include "keys/key_windows.h"
#include "ui/unspoken_text.h"
#include "util/machine.h"

#include <array>
#include <cstddef>
#include <QDialog>

class QFrame;
class QLabel;
class QLayout;
class QPushButton;
class QRadioButton;

namespace zr5 {

/// `frmInspectKey`; accepted when the user wants to use the key.
class InspectKeyWindow final : public QDialog {
    Q_OBJECT

  public:
    InspectKeyWindow(KeyInspection& rules, UserPort& user, QWidget* parent = nullptr);
    /// Overwrites the rows.
    ~InspectKeyWindow() override;
    InspectKeyWindow(const InspectKeyWindow&) = delete;
    InspectKeyWindow& operator=(const InspectKeyWindow&) = delete;

    /// Closing the window is no answer: the question is whether to use the key.
    void reject() override {}

  private:
    QRadioButton* AddOption(const char* name, const char* caption, KeyView view);
    void MakeKeyRow(std::size_t row);
    void LayOut();
    QFrame* Table();
    QLayout* Answers();
    void ShowView();
    void WipeRows();
    [[nodiscard]] int RowWidth() const;

    UnspokenText unspoken_{*this};
    KeyInspection& rules_;
    std::array<QRadioButton*, 3> options_;
    std::array<QLabel*, KeyInspection::Rows> places_{};
    std::array<QLabel*, KeyInspection::Rows> rows_{};
    QLabel* layoutNote_;
    QPushButton* yes_ = nullptr;
};

/// Opens the window over `parent`.
class InspectInWindow final : public KeyInspector {
  public:
    InspectInWindow(QWidget* parent, Machine& machine) : parent_(parent), machine_(machine) {}
    [[nodiscard]] bool Inspect(const InspectedKey& key) override;

  private:
    QWidget* parent_;
    Machine& machine_;
};

} // namespace zr5
