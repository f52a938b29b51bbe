// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/findingtext.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>

namespace KORA {
namespace DEV {

QString asSentence(const QString &text)
{
    static const QRegularExpression plainWord(QStringLiteral("\\A[a-z]+ "));
    return plainWord.match(text).hasMatch() ? text.at(0).toUpper() + text.mid(1) : text;
}

QString placeOf(const Finding &finding)
{
    QStringList parts;
    if (!finding.file.isEmpty()) {
        QString place = finding.file;
        for (const int number : {finding.line, finding.column}) {
            place += number > 0 ? QStringLiteral(":") + QString::number(number) : QString();
        }
        parts.append(place);
    }
    if (!finding.pointer.isEmpty()) {
        parts.append(finding.pointer);
    }
    if (finding.code != 0) {
        parts.append(QCoreApplication::translate("KORA::DEV::ErrorCard", "code %1").arg(finding.code));
    }
    return parts.join(QStringLiteral("  ·  "));
}

QStringList linesOf(const Finding &finding)
{
    QStringList lines{asSentence(finding.message), placeOf(finding), asSentence(finding.hint)};
    lines.removeAll(QString());
    return lines;
}

} // namespace DEV
} // namespace KORA
