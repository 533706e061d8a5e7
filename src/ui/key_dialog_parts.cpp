#include "ui/key_dialog_parts.h"

#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <algorithm>
#include <QFontMetrics>
#include <QScreen>

namespace zr5 {
QLabel* MakeKeyLabel(const QString& name, const QString& text) {
    auto* label = MakeLabel(name, FromQt(text), nullptr);
    label->setWordWrap(true);
    KeepRoomWhenHidden(*label);
    return label;
}

QPushButton* MakeKeyButton(const QString& name, const QString& text) {
    auto* button = Named(new QPushButton(text), name);
    KeepRoomWhenHidden(*button);
    return button;
}

QVBoxLayout* MakeKeyColumn(QWidget& window) {
    const int line = window.fontMetrics().height();
    auto* column = new QVBoxLayout(&window);
    column->setContentsMargins(line * 3 / 2, line * 5 / 4, line * 3 / 2, line * 5 / 4);
    column->setSpacing(line / 2);
    return column;
}

void FitToPrompt(QDialog& window, const QLabel& prompt) {
    const QLayout& layout = *window.layout();
    const QMargins margins = layout.contentsMargins();
    const QFontMetrics metrics = prompt.fontMetrics();
    const int oneLine = metrics.horizontalAdvance(prompt.text()) + metrics.averageCharWidth() +
                        margins.left() + margins.right();
    const int mostWidth = window.screen()->availableGeometry().width() * 9 / 10;
    const int width = std::min(std::max(oneLine, layout.totalSizeHint().width()), mostWidth);
    window.resize(width, layout.totalHeightForWidth(width));
}

void AddGap(QVBoxLayout& column, const QWidget& window) {
    column.addSpacing(window.fontMetrics().height() / 2);
}

} // namespace zr5
