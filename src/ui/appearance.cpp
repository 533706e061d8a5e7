#include "ui/appearance.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace zr5 {
namespace {

const QColor IconTop(0x2f, 0x7f, 0x86);
const QColor IconBottom(0x1d, 0x4e, 0x63);

QColor Mixed(const QColor& a, const QColor& b, qreal partOfA) {
    const auto mix = [&](int x, int y) { return qRound(x * partOfA + y * (1 - partOfA)); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

/// The padlock of packaging/com.velmora.zr5e.svg, on its grid of 64 by 64.
QPixmap IconPixmap(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 64.0, size / 64.0);
    QLinearGradient ground(0, 4, 0, 60);
    ground.setColorAt(0, IconTop);
    ground.setColorAt(1, IconBottom);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(4, 4, 56, 56), 13, 13);

    QPainterPath shackle;
    shackle.moveTo(23, 32);
    shackle.lineTo(23, 24);
    shackle.arcTo(QRectF(23, 15, 18, 18), 180, -180);
    shackle.lineTo(41, 32);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 4.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(shackle);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(17, 29, 30, 21), 4, 4);
    painter.setBrush(IconBottom);
    painter.drawEllipse(QPointF(32, 37.5), 3.2, 3.2);
    painter.drawRoundedRect(QRectF(30.4, 38, 3.2, 7.5), 1.4, 1.4);
    return pixmap;
}

void UseTypeface(QWidget& widget, const QString& family, QFont::StyleHint hint) {
    QFont font = widget.font();
    font.setFamilies({family});
    font.setStyleHint(hint);
    widget.setFont(font);
}

} // namespace

QIcon ProgramIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(IconPixmap(size));
    return icon;
}

QColor Tint(Verdict verdict, const QPalette& palette) {
    constexpr qreal Strength = 0.22;
    const QColor ground = palette.color(QPalette::Active, QPalette::Base);
    switch (verdict) {
    case Verdict::None:
        return palette.color(QPalette::Active, QPalette::Window);
    case Verdict::Good:
        return Mixed(QColor(0x2e, 0xa0, 0x4f), ground, Strength);
    case Verdict::Attention:
        return Mixed(QColor(0xe0, 0xa0, 0x10), ground, Strength);
    case Verdict::Bad:
        return Mixed(QColor(0xd8, 0x30, 0x30), ground, Strength);
    }
    return ground;
}

QPixmap KeyPicture(const QPalette& palette, bool held, qreal pixelRatio) {
    constexpr int Size = 32;
    QPixmap pixmap(qRound(Size * pixelRatio), qRound(Size * pixelRatio));
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const QColor colour = Mixed(text, window, held ? 0.85 : 0.3);
    painter.setPen(QPen(colour, 3, Qt::SolidLine, Qt::RoundCap));
    painter.drawEllipse(QPointF(10, 16), 6, 6);
    painter.drawLine(QPointF(16, 16), QPointF(29, 16));
    painter.drawLine(QPointF(23, 16), QPointF(23, 21));
    painter.drawLine(QPointF(28, 16), QPointF(28, 22));
    return pixmap;
}

void Soften(QLabel& label, const QPalette& windowPalette) {
    QPalette palette = windowPalette;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::WindowText,
                         Mixed(windowPalette.color(group, QPalette::WindowText),
                               windowPalette.color(group, QPalette::Window), 0.72));
    }
    label.setPalette(palette);
}

void UseArial(QWidget& dialog) {
    UseTypeface(dialog, QStringLiteral("Arial"), QFont::SansSerif);
}

void UseCourier(QWidget& widget) {
    UseTypeface(widget, QStringLiteral("Courier New"), QFont::Monospace);
}

void UseTerminal(QWidget& widget) {
    UseTypeface(widget, QStringLiteral("Terminal"), QFont::Monospace);
}

} // namespace zr5
