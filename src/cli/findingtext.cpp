// SPDX-License-Identifier: Apache-2.0
#include "findingtext.h"

#include "output.h"

using KORA::DEV::Finding;

namespace {

QString placeOf(const Finding &finding)
{
    if (finding.file.isEmpty() || finding.line == 0) {
        return finding.file;
    }
    return QStringLiteral("%1:%2:%3")
        .arg(finding.file, QString::number(finding.line), QString::number(finding.column));
}

QLatin1String wordOf(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Error:
        return QLatin1String("error");
    case Finding::Warning:
        return QLatin1String("warning");
    case Finding::Note:
        break;
    }
    return QLatin1String("note");
}

} // namespace

QString textOfFindings(const KORA::DEV::Findings &findings)
{
    QString text;
    for (const Finding &finding : findings) {
        const QString place = placeOf(finding);
        text += printable(QStringLiteral("%1%2: %3 [%4]")
                              .arg(place.isEmpty() ? place : place + QLatin1String(": "),
                                   wordOf(finding.severity), finding.message, finding.rule))
                + QLatin1Char('\n');
        if (!finding.hint.isEmpty()) {
            text += QLatin1String("    ") + printable(finding.hint) + QLatin1Char('\n');
        }
    }
    return text;
}
