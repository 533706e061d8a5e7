#pragma once

// `frmGraphic`: the picture of a file's byte pairs beside that of random bytes.

#include "operation/byte_pair_picture.h"

#include <cstddef>
#include <functional>
#include <QDialog>
#include <span>

class QAction;
class QFrame;
class QLabel;
class QPushButton;

namespace zr5 {

class PairPicture;

class GraphicWindow : public QDialog {
  public:
    using SaveFunction = std::function<void(std::span<const std::byte> png)>;

    /// `rules` outlives the window.
    GraphicWindow(BytePairPicture& rules, SaveFunction save, QWidget* parent = nullptr);
    ~GraphicWindow() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void reject() override;

  private:
    void OfferSaving();
    void LayOut();
    QLayout* Pictures();
    QLayout* Foot();
    void Show();
    void ShowProgress();
    void Save();

    BytePairPicture& rules_;
    SaveFunction save_;
    PairPicture* picture_;
    PairPicture* random_;
    QFrame* track_;
    QLabel* progress_;
    QPushButton* display_;
    QAction* saving_;
};

} // namespace zr5
