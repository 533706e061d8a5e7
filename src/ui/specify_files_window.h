#pragma once

// The window of both dialogs that specify files: three options, and a box for an extension.

#include "files/specify_files.h"

#include <array>
#include <cstddef>
#include <QDialog>

class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace zr5 {

/// The object names in which the two dialogs differ.
struct SpecifyFilesNames {
    const char* window;
    std::array<const char*, SpecifyFiles::Options> options;
};
inline constexpr SpecifyFilesNames SpecifyInputNames{
    "frmSpecifyInputFiles", {"optAllFiles", "optAllFilesAndSubfolders", "optSuchFiles"}};
inline constexpr SpecifyFilesNames SpecifyOutputNames{
    "frmSpecifyOutputFiles", {"optExistingFile", "optNewFile", "optSameName"}};

class SpecifyFilesWindow final : public QDialog {
  public:
    SpecifyFilesWindow(SpecifyFiles& rules, const SpecifyFilesNames& names,
                       QWidget* parent = nullptr);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QRadioButton* AddOption(const char* name, std::size_t option);
    void LayOut();
    QLayout* OptionsColumn();
    void ShowSelection();
    void TakeAnswer();

    SpecifyFiles& rules_;
    std::array<QRadioButton*, SpecifyFiles::Options> options_{};
    QLabel* example_;
    QLineEdit* extension_;
    QPushButton* accept_;
    QPushButton* cancel_;
};

} // namespace zr5
