#pragma once

// The windows that only tell: how to begin, and what is about to happen to a plaintext file.

#include "operation/report/extension_warnings.h"

#include <QDialog>
#include <string>

namespace zr5 {

/// `frmHelp`: how to begin. May stay open beside the main window.
class HelpWindow : public QDialog {
  public:
    explicit HelpWindow(QWidget* parent = nullptr);
};

/// `frmPurgeWarning`: tells what is about to happen to a plaintext file.
class PurgeWarningWindow : public QDialog {
  public:
    /// Tells `warning` how it was closed. Stands a little below the top of `report`.
    PurgeWarningWindow(PurgeWarning& warning, const std::string& path, QWidget* report);
};

} // namespace zr5
