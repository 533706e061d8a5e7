#pragma once

// Text of keys that the toolkit has to hold while it is shown: wiped where it is, and shown in
// the typeface of keys.

#include <QString>
#include <QWidget>

namespace zr5 {

/// Overwrites the characters where they are, also those that other strings share: that is the
/// purpose. Text without a buffer of its own (capacity 0) is constant and not overwritten.
void OverwriteInPlace(const QString& text);

/// Writes a widget in "Courier New" or the nearest typeface of one width that the machine has.
void UseCourier(QWidget& widget);

} // namespace zr5
