#pragma once

// `frmHelp`: how to begin, in a window that may stay open beside the main window.

#include <QDialog>
#include <string>

namespace zr5 {

[[nodiscard]] std::string HelpText();

class HelpWindow : public QDialog {
  public:
    explicit HelpWindow(QWidget* parent = nullptr);
};

} // namespace zr5
