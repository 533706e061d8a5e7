#include "ui/text_edges.h"

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

} // namespace zr5
