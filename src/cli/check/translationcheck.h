// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <kora/dev/diagnosis/finding.h>

/// A finding about the languages of a library: at a line of a translation file, or at a text of the metadata.
struct TranslationFinding
{
    KORA::DEV::Finding finding; ///< file and line are set for the translation files
    QString pointer;            ///< within the object "MetaData", for the others
};

/// Checks the translation files that @p metaData lists, which the library's parser must accept, and that all texts
/// are translated. The files are looked for in @p folder, and in "translations" and "translation" there; @p files, if
/// any are named, stand for that search.
QVector<TranslationFinding> checkTranslations(const QJsonObject &metaData, const QString &folder,
                                              const QStringList &files);
