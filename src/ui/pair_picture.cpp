#include "ui/pair_picture.h"

#include <algorithm>
#include <cmath>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace zr5 {
namespace {

constexpr int Side = static_cast<int>(PairSide);
constexpr int LeastSide = 176;
constexpr int PreferredSide = 360;
constexpr int SavedScale = 4;

/// Every pair keeps sharp edges when the picture grows, and none is lost when it shrinks.
QImage ScaledTo(const QImage& image, int side) {
    const int times = (side + Side - 1) / Side;
    const QImage grown = times > 1 ? image.scaled(times * Side, times * Side) : image;
    return grown.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// "0", the name and "255" along an axis of this length, which begins at the origin.
void DrawAxis(QPainter& painter, int length, int room, const QString& name) {
    const QRect line(0, -room, length, room);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("0"));
    painter.drawText(line, Qt::AlignCenter, name);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, QString::number(Side - 1));
}

} // namespace

PairPicture::PairPicture(QWidget* parent)
    : QWidget(parent), image_(Side, Side, QImage::Format_Grayscale8) {
    image_.fill(0);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setSizePolicy(policy);
}

void PairPicture::ShowCounts(const PairCounts& counts) {
    const std::vector<std::uint8_t> brightness = counts.Brightness();
    auto pixels = brightness.begin();
    for (int row = 0; row < Side; ++row, pixels += Side)
        std::copy_n(pixels, Side, image_.scanLine(row));
    update();
}

QImage PairPicture::Page() const {
    PairPicture drawn;
    drawn.image_ = image_;
    drawn.setPalette(QPalette(Qt::white));
    const int side = Side * SavedScale + AxisRoom() + 1;
    drawn.resize(side, side);
    QImage page(drawn.size(), QImage::Format_RGB32);
    drawn.render(&page);
    return page;
}

QSize PairPicture::sizeHint() const {
    return {PreferredSide + AxisRoom(), PreferredSide + AxisRoom()};
}

QSize PairPicture::minimumSizeHint() const {
    return {LeastSide + AxisRoom(), LeastSide + AxisRoom()};
}

void PairPicture::paintEvent(QPaintEvent* /*event*/) {
    const int room = AxisRoom();
    const int side = std::max(std::min(width(), height()) - room - 1, 1);
    QPainter painter(this);
    const int left = (width() - side - room) / 2;
    painter.translate(left + room, room);
    const qreal ratio = devicePixelRatioF();
    painter.drawImage(QRect(0, 0, side, side),
                      ScaledTo(image_, static_cast<int>(std::lround(side * ratio))));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(-1, -1, side + 1, side + 1);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = QRect(-3, -3, side + 6, side + 6);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.translate(0, -2);
    DrawAxis(painter, side, room - 2, tr("first byte"));
    painter.translate(-2, side + 2);
    painter.rotate(-90);
    // Read from below: the far end of the axis is at its top.
    const QRect line(0, -(room - 2), side, room - 2);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, QString::number(Side - 1));
    painter.drawText(line, Qt::AlignCenter, tr("second byte"));
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("0"));
}

} // namespace zr5
