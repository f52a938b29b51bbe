// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <kora/dev/diagnosis/finding.h>

#include "translationsheet.h"

/// The metadata of a widget library with its translation files, on disk as the author has them.
class TranslationProject
{
public:
    /// What update() did with a file.
    struct Update
    {
        QString path;
        bool isWritten = false; ///< false if it was up to date, or failed
        int added = 0;
        int stale = 0;
        KORA::DEV::Findings faults; ///< why it was left as it was
    };

    /// @p path is the metadata file or the project's folder. @p dir is the folder of the translation files; empty to
    /// look where projects have them. False, with the reason in @p problem, if the metadata cannot be used.
    bool open(const QString &path, const QString &dir, QString &problem);

    QStringList languages() const { return m_languages; }
    /// All that is not in order: errors for which a host refuses the library, warnings, and notes.
    KORA::DEV::Findings check() const;
    /// Brings the file of a language up to date. Rows with translations are never lost: those of texts that are gone
    /// stay at the end, unless @p prune is set.
    Update update(const QString &language, bool prune) const;

private:
    QString pathOf(const QString &language) const;
    KORA::DEV::Findings checkLanguage(const QString &language) const;
    void addTextFindings(const TranslationSheet &sheet, const QString &language,
                         KORA::DEV::Findings &found) const;
    QVector<TranslationRow> updatedRows(const TranslationSheet &sheet, bool prune, Update &update) const;

    QString m_metaDataPath;
    QString m_dir;
    QString m_defaultLanguage;
    QStringList m_languages;
    QVector<TranslationKey> m_texts;
};
