#include "ui/outcome_strip.h"

#include "ui/appearance.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QEvent>
#include <QStyle>

namespace zr5 {
namespace {

constexpr int PictureSize = 18;
constexpr int Padding = 6;

QStyle::StandardPixmap PictureOf(Verdict verdict) {
    if (verdict == Verdict::Bad) return QStyle::SP_MessageBoxCritical;
    return verdict == Verdict::Attention ? QStyle::SP_MessageBoxWarning
                                         : QStyle::SP_DialogApplyButton;
}

} // namespace

OutcomeStrip::OutcomeStrip(Wrapping wrapping, QWidget* parent)
    : QFrame(parent),
      picture_(Named(new QLabel(this), "picOutcome")),
      words_(MakeLabel("lblOutcome", {}, this)) {
    setAutoFillBackground(true);
    auto* row = MakeLayout<QHBoxLayout>(*this);
    row->setContentsMargins(Padding, Padding, Padding, Padding);
    row->addWidget(picture_, 0, Qt::AlignTop);
    row->addWidget(words_, 1, Qt::AlignVCenter);
    picture_->setFixedSize(PictureSize, PictureSize);
    if (wrapping == Wrapping::OneLine) return;
    words_->setWordWrap(true);
    words_->setMinimumHeight(2 * words_->fontMetrics().lineSpacing());
    KeepRoomWhenHidden(*this);
}

void OutcomeStrip::ShowOutcome(const RunOutcome& outcome) {
    words_->setText(ToQt(outcome.Text()));
    if (outcome.GetVerdict() == verdict_) return;
    verdict_ = outcome.GetVerdict();
    picture_->setPixmap(verdict_ == Verdict::None
                            ? QPixmap()
                            : style()->standardIcon(PictureOf(verdict_)).pixmap(PictureSize));
    Colour();
}

void OutcomeStrip::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange) Colour();
}

void OutcomeStrip::Colour() {
    QPalette coloured = parentWidget()->palette();
    coloured.setColor(QPalette::Window, Tint(verdict_, coloured));
    setPalette(coloured);
}

} // namespace zr5
