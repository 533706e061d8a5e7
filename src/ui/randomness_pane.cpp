#include "ui/randomness_pane.h"

#include "ui/labels.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <initializer_list>

namespace zr5 {

RandomnessPane::RandomnessPane(QWidget* parent)
    : QFrame(parent),
      files_{MakeReleaseButton("cmdRandomnessFile(0)", "Input file", this),
             MakeReleaseButton("cmdRandomnessFile(1)", "Output file", this)},
      checking_(MakeLabel("lblCheckingFile", "Checking file ...", this)),
      progress_(MakeProgressBar("prgRandomness", this)),
      file_(Named(new WrappingLabel({}, this), "lblRandomnessFile")),
      size_(MakeLabel("lblFilesize", {}, this)),
      randomness_(MakeLabel("lblRandomness", {}, this)),
      meaning_(Named(new WrappingLabel({}, this), "lblRandomnessMeaning")),
      display_(MakeReleaseButton("cmdDisplayGraphic", "Display", this)),
      close_(MakeReleaseButton("cmdNoRandomnessReport", "Not now", this)) {
    setObjectName(QStringLiteral("fraRandomnessFiles"));
    setFrameShape(QFrame::StyledPanel);
    SetBold(*randomness_, true);
    auto* column = MakeLayout<QVBoxLayout>(*this);
    for (QPushButton* button : files_)
        column->addWidget(button);
    column->addSpacing(RowSpacing);
    for (QWidget* widget : std::initializer_list<QWidget*>{checking_, progress_, file_, size_,
                                                           randomness_, meaning_, display_})
        column->addWidget(widget);
    column->addStretch(1);
    column->addWidget(close_);
}

void RandomnessPane::Show(const RandomnessReport& rules) {
    const RandomnessReport::State state = rules.state();
    for (QPushButton* button : files_) {
        button->setVisible(rules.OffersChoice());
        button->setEnabled(state != RandomnessReport::State::Checking);
    }
    ShowProgress(rules);
    ShowResult(rules);
    if (state == shown_) return;
    shown_ = state;
    if (state == RandomnessReport::State::Choosing) files_[InputSide]->setFocus();
    if (state == RandomnessReport::State::Checking) close_->setFocus();
    if (state == RandomnessReport::State::Shown) display_->setFocus();
}

void RandomnessPane::ShowProgress(const RandomnessReport& rules) {
    const bool checks = rules.state() == RandomnessReport::State::Checking;
    checking_->setVisible(checks);
    progress_->setVisible(checks);
    progress_->setValue(static_cast<int>(rules.Fraction() * ProgressSteps));
}

void RandomnessPane::ShowResult(const RandomnessReport& rules) {
    const bool hasResult = rules.state() == RandomnessReport::State::Shown;
    for (QWidget* widget :
         std::initializer_list<QWidget*>{file_, size_, randomness_, meaning_, display_})
        widget->setVisible(hasResult);
    if (!hasResult) return;
    file_->setText(ToQt(FileLine(rules.Shown())));
    size_->setText(ToQt(SizeLine(rules.Shown())));
    randomness_->setText(ToQt(RandomnessLine(rules.Shown())));
    meaning_->setText(ToQt(Meaning(rules.Shown())));
}

} // namespace zr5
