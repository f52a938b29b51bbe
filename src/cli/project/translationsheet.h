// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <kora/dev/diagnosis/finding.h>

/// What a text is translated under: the text in the library's own language, and the comment for translators.
using TranslationKey = QPair<QString, QString>;

struct TranslationRow
{
    TranslationKey key;
    QString translation;
    int line = 0; ///< in the file, from 1; 0 for a new row
};

/// A translation file: a header line, then a row per text, in the form that the library reads.
struct TranslationSheet
{
    QString header;
    QVector<TranslationRow> rows;
    int emptyLines = 0;         ///< the library refuses files with any
    KORA::DEV::Findings faults; ///< why the library refuses the file
};

/// Reads the file @p path. Rows that are faulty are left out and stand among the faults.
TranslationSheet readTranslationSheet(const QString &path);

/// The file's content for these rows. Texts that the form cannot hold, such as two lines, are told in @p faults.
QString translationSheetText(const QString &header, const QVector<TranslationRow> &rows, const QString &path,
                             KORA::DEV::Findings &faults);

/// Writes a text as a field of such a file; false if there is no way to.
bool writeTranslationField(const QString &text, QString &field);
