#include "ui/randomness_pane.h"

#include "ui/appearance.h"
#include "ui/bold_options.h"
#include "ui/labels.h"
#include "ui/release_button.h"
#include "ui/text_edges.h"

#include <QProgressBar>
#include <QVBoxLayout>

namespace zr5 {
namespace {

constexpr int ProgressSteps = 1000;

template <typename Widget>
Widget* Named(Widget* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

QPushButton* Button(const char* name, const char* caption, QWidget* parent) {
    auto* button = Named(new ReleaseButton(QString::fromLatin1(caption), parent), name);
    button->setMinimumHeight(ButtonHeight);
    button->setAutoDefault(true); // Enter acts where the focus is
    return button;
}

} // namespace

RandomnessPane::RandomnessPane(QWidget* parent)
    : QFrame(parent),
      files_{Button("cmdRandomnessFile(0)", "Input file", this),
             Button("cmdRandomnessFile(1)", "Output file", this)},
      checking_(Named(new QLabel(QStringLiteral("Checking file ..."), this), "lblCheckingFile")),
      progress_(Named(new QProgressBar(this), "prgRandomness")),
      file_(Named(new WrappingLabel({}, this), "lblRandomnessFile")),
      size_(Named(new QLabel(this), "lblFilesize")),
      randomness_(Named(new QLabel(this), "lblRandomness")),
      meaning_(Named(new WrappingLabel({}, this), "lblRandomnessMeaning")),
      display_(Button("cmdDisplayGraphic", "Display", this)),
      close_(Button("cmdNoRandomnessReport", "Not now", this)) {
    setObjectName(QStringLiteral("fraRandomnessFiles"));
    setFrameShape(QFrame::StyledPanel);
    progress_->setRange(0, ProgressSteps);
    progress_->setTextVisible(false);
    SetBold(*randomness_, true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(FrameMargin, FrameMargin, FrameMargin, FrameMargin);
    column->setSpacing(RowSpacing);
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
    using State = RandomnessReport::State;
    const State state = rules.state();
    const bool checks = state == State::Checking;
    const bool hasResult = state == State::Shown;
    for (QPushButton* button : files_) {
        button->setVisible(rules.OffersChoice());
        button->setEnabled(!checks);
    }
    checking_->setVisible(checks);
    progress_->setVisible(checks);
    progress_->setValue(static_cast<int>(rules.Fraction() * ProgressSteps));
    for (QWidget* widget :
         std::initializer_list<QWidget*>{file_, size_, randomness_, meaning_, display_})
        widget->setVisible(hasResult);
    if (hasResult) {
        file_->setText(ToQt(FileLine(rules.Shown())));
        size_->setText(ToQt(SizeLine(rules.Shown())));
        randomness_->setText(ToQt(RandomnessLine(rules.Shown())));
        meaning_->setText(ToQt(Meaning(rules.Shown())));
    }
    if (state == shown_) return;
    shown_ = state;
    if (state == State::Choosing) files_[Input]->setFocus();
    if (checks) close_->setFocus();
    if (hasResult) display_->setFocus();
}

} // namespace zr5
