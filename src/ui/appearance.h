#pragma once

// The looks that windows share: distances, the program's icon, softer text for captions.

#include <QIcon>
#include <QLabel>
#include <QPalette>
#include <QPixmap>
#include <QPushButton>

namespace zr5 {

/// Distances in device-independent pixels.
inline constexpr int WindowMargin = 16;
inline constexpr int FrameMargin = 12;
inline constexpr int GroupSpacing = 12;
inline constexpr int RowSpacing = 8;
inline constexpr int ButtonHeight = 32;
inline constexpr int PrimaryButtonHeight = 44;

[[nodiscard]] QIcon ProgramIcon();

/// A key, in the colour of text when one is held and pale when not.
[[nodiscard]] QPixmap KeyPicture(const QPalette& palette, bool held, qreal pixelRatio);

/// Gives the caption of a value less weight than the value, in a light or a dark palette.
/// To be called again when the palette changes.
void Soften(QLabel& label, const QPalette& windowPalette);

/// Each writes a widget, what is in it included, in its typeface or the nearest that the machine
/// has: of one width for keys ("Courier New") and for progress ("Terminal").
void UseArial(QWidget& dialog);
void UseCourier(QWidget& widget);
void UseTerminal(QWidget& widget);

/// The look of the button that does what the window is for.
void MakePrimary(QPushButton& button);

} // namespace zr5
