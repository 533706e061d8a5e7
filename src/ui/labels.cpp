#include "ui/labels.h"

#include <algorithm>
#include <cmath>
#include <QHelpEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>

namespace zr5 {
namespace {

constexpr int PreferredWidth = 480;

QTextOption Wrapping() {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QString ElidedLabel::FittingText() const {
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(),
                          static_cast<int>(Qt::AlignVCenter | Qt::AlignLeading), palette(),
                          isEnabled(), FittingText(), foregroundRole());
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && FittingText() != text()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
        return true;
    }
    return QLabel::event(event);
}

WrappingLabel::WrappingLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QString WrappingLabel::LayoutText() const {
    QString shown = text();
    return shown.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

qreal WrappingLabel::BreakLines(QTextLayout& layout, qreal width) {
    qreal height = 0;
    layout.setTextOption(Wrapping());
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return height;
}

int WrappingLabel::heightForWidth(int width) const {
    QTextLayout layout(LayoutText(), font());
    return static_cast<int>(std::ceil(BreakLines(layout, width)));
}

QSize WrappingLabel::sizeHint() const {
    return {PreferredWidth, heightForWidth(PreferredWidth)};
}

QSize WrappingLabel::minimumSizeHint() const {
    const int width = std::max(minimumWidth(), fontMetrics().averageCharWidth() * 20);
    return {width, heightForWidth(std::max(width, this->width()))};
}

void WrappingLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    QTextLayout layout(LayoutText(), font());
    static_cast<void>(BreakLines(layout, width()));
    layout.draw(&painter, {0, 0});
}

QWidget* FitToScreen(WrappingLabel* text, double partOfScreen) {
    const int tallest =
        static_cast<int>(text->screen()->availableGeometry().height() * partOfScreen);
    const int width = text->minimumWidth();
    if (text->heightForWidth(width) <= tallest) return text;
    auto* scroller = new QScrollArea(text->parentWidget());
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setWidgetResizable(true);
    scroller->setWidget(text);
    scroller->setMinimumSize(width + scroller->verticalScrollBar()->sizeHint().width(), tallest);
    return scroller;
}

} // namespace zr5
