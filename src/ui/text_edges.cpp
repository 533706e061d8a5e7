#include "ui/text_edges.h"

#include "libs/system/secret.h"

#include <cstddef>
#include <span>

namespace zr5 {

QString ToQt(std::string_view text) {
    QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return result;
}

std::string FromQt(const QString& text) {
    QString result = text;
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    result.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return result.toStdString();
}

void OverwriteInPlace(const QString& text) {
    if (text.capacity() == 0) return;
    auto* characters = const_cast<QChar*>(text.constData());
    Wipe(std::as_writable_bytes(std::span(characters, static_cast<std::size_t>(text.size()))));
}

} // namespace zr5
