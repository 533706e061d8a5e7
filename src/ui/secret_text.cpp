#include "ui/secret_text.h"

#include "libs/system/secret.h"

#include <QFont>

namespace zr5 {

void OverwriteInPlace(const QString& text) {
    if (text.capacity() == 0) return;
    auto* characters = const_cast<QChar*>(text.constData());
    Wipe(std::as_writable_bytes(std::span(characters, static_cast<std::size_t>(text.size()))));
}

void UseCourier(QWidget& widget) {
    QFont font = widget.font();
    font.setFamilies({QStringLiteral("Courier New")});
    font.setStyleHint(QFont::Monospace);
    widget.setFont(font);
}

} // namespace zr5
