#include "ui/message_boxes.h"

#include "ui/labels.h"

#include <algorithm>
#include <QApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>

namespace zr5 {
namespace {

/// The window's buttons and its icon, beside the title.
constexpr int TitleSurroundings = 160;
/// The toolkit makes no box wider than this and a margin.
constexpr int WidestTitle = 900;

/// Texts of more than this width wrap.
constexpr int WidestText = 500;
/// Texts of more than this part of the screen's height scroll.
constexpr double TallestText = 0.66;

int LongestLine(const QString& text, const QFontMetrics& metrics) {
    int width = 0;
    for (const QString& line : text.split(QLatin1Char('\n')))
        width = std::max(width, metrics.horizontalAdvance(line));
    return width + 1; // what the rounding of widths takes
}

int TitleWidth(const QMessageBox& box) {
    QFont font = QApplication::font("QMdiSubWindowTitleBar");
    font.setBold(true);
    const int wanted = QFontMetrics(font).horizontalAdvance(box.windowTitle()) + TitleSurroundings;
    return std::min({wanted, WidestTitle, box.screen()->availableGeometry().width() / 2});
}

/// The box fixes its own size, so that only what stands in it can make it wider; and its own label
/// cuts a word that is wider than the box.
void Dress(QMessageBox& box) {
    auto* cutting = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    box.setTextFormat(Qt::PlainText);
    if (cutting == nullptr || grid == nullptr) return;
    auto* wrapping = new WrappingLabel(box.text(), &box);
    wrapping->setObjectName(QStringLiteral("lblText"));
    wrapping->setMinimumWidth(
        std::min(LongestLine(box.text(), wrapping->fontMetrics()), WidestText));
    delete grid->replaceWidget(cutting, FitToScreen(wrapping, TallestText));
    cutting->hide();
    const int lastRow = grid->rowCount() - 1;
    grid->addItem(new QSpacerItem(TitleWidth(box), 0), lastRow, 0, 1, grid->columnCount());
}

} // namespace

MessageBoxDresser::MessageBoxDresser() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool MessageBoxDresser::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Polish) {
        if (auto* box = qobject_cast<QMessageBox*>(watched)) Dress(*box);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zr5
