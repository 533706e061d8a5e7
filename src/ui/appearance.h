#pragma once

// The looks that windows share: the program's icon, the key, colours and typefaces.

#include "operation/report/run_outcome.h"

#include <QColor>
#include <QIcon>
#include <QLabel>
#include <QPalette>
#include <QPixmap>
#include <QWidget>

namespace zr5 {

[[nodiscard]] QIcon ProgramIcon();

/// A key, in the colour of text when one is held and pale when not.
[[nodiscard]] QPixmap KeyPicture(const QPalette& palette, bool held, qreal pixelRatio);

/// The ground, in a light or a dark palette, of what is said with such a verdict.
[[nodiscard]] QColor Tint(Verdict verdict, const QPalette& palette);

/// Gives the caption of a value less weight than the value, in a light or a dark palette.
/// To be called again when the palette changes.
void Soften(QLabel& label, const QPalette& windowPalette);

/// Each writes a widget, what is in it included, in its typeface or the nearest that the machine
/// has: of one width for keys ("Courier New") and for progress ("Terminal").
void UseArial(QWidget& dialog);
void UseCourier(QWidget& widget);
void UseTerminal(QWidget& widget);

} // namespace zr5
