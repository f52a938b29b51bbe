// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

namespace KORA {
namespace DEV {

/// One thing that is wrong with a widget library, or that its author should know, with the place where it is to be
/// put right. A value; what does not apply is empty or 0.
struct Finding
{
    enum Severity : int {
        Error,   ///< a host refuses the library, or a widget does not work
        Warning, ///< accepted, but hardly what the author meant
        Note
    };

    Severity severity = Error;
    QString rule;    ///< stable name of the check, such as "metadata", "unknown-key", "load-crash"
    int code = 0;    ///< what the library's parser returned
    QString message; ///< what is wrong, in one sentence without full stop
    QString hint;    ///< what to do about it
    QString file;    ///< the file to open
    int line = 0;    ///< from 1
    int column = 0;  ///< from 1, in characters
    QString pointer; ///< JSON pointer into the metadata, such as "/MetaData/widgets/0/id"
    QString widgetId;
    QString widgetVersion;
    QString fieldId;
    QString value; ///< the offending value as it stands in the file
};

using Findings = QVector<Finding>;

} // namespace DEV
} // namespace KORA
