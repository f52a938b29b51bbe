// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <kora/dev/diagnosis/finding.h>

#include <string>

/// What a run of checks found, in the order in which it is shown.
struct CheckReport
{
    QString command = QStringLiteral("check");
    QStringList checked; ///< the files and folders that were looked at
    KORA::DEV::Findings findings;
    /// Warnings count as errors.
    bool isStrict = false;

    int count(KORA::DEV::Finding::Severity severity) const;
    bool isFine() const;
};

/// The places a person opens, a line each: "file:line:column: error: text [code or rule]", with the hint below; at the
/// end a line that sums up.
QString findingsAsText(const CheckReport &report);
/// One object; docs/command.md tells its keys.
QString findingsAsJson(const CheckReport &report);
/// The findings of such an object, as a program reads them; none if it is another text.
KORA::DEV::Findings findingsFromJson(const QByteArray &text);
/// SARIF 2.1.0, which code review tools show in the margin.
QString findingsAsSarif(const CheckReport &report);
/// JUnit's XML, which build servers show as tests: one per file or folder.
QString findingsAsJUnit(const CheckReport &report);

/// The report in a format of the command line: text, json, sarif or junit.
QString findingsIn(const std::string &format, const CheckReport &report);
