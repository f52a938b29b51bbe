// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/pluginloader.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>

#include <iterator>

#include <kora/core/files_p.h>
#include <kora/core/jsonreading_p.h>
#include <kora/core/jsontext_p.h>
#include <kora/core/uuid_p.h>
#include <kora/core/versiontype.h>
#include <kora/loader/studio/resourcefiles_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

using Index = QMap<QString, PluginLoader::ExtraResourceData>;

const QLatin1String rootKey("extraResourceInfo");

enum Key { Id, LanguageId, LibraryVersion, Modification, KeyCount };
const QLatin1String keyNames[KeyCount] = {QLatin1String("id"), QLatin1String("languageId"),
                                          QLatin1String("libraryVersion"), QLatin1String("modification")};

// The readers return an empty text, or why the index is not valid.

QString readFile(const QString &path, QByteArray &bytes)
{
    QString error = QStringLiteral("%1 opening error").arg(path);
    // A pipe or a device would block or never end.
    if (!QFileInfo(path).isFile()) {
        logResourceError(QString(), QStringLiteral("Index %1 is not a file").arg(path));
        return error;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return error;
    }
    bytes = file.readAll();
    return {};
}

QString readElement(const QJsonValue &value, Index &index)
{
    if (!value.isObject()) {
        return QStringLiteral("extraResourceInfo is not an array of objects");
    }
    const JsonMembers<KeyCount> members(value.toObject(), keyNames);
    for (size_t key = 0; key < KeyCount; ++key) {
        if (!members.value(key).isString()) {
            return QStringLiteral("One or more extraResourceInfo elements are invalid");
        }
    }
    const QString id = members.value(Id).toString();
    if (!isUuid(id)) {
        return QStringLiteral("extraResourceInfo element with id %1 is invalid").arg(id);
    }
    if (index.contains(id)) {
        return QStringLiteral("extraResourceInfo element with id %1 is duplicated").arg(id);
    }
    const auto modification =
        QDateTime::fromString(members.value(Modification).toString(), Qt::ISODateWithMs);
    if (!modification.isValid()) {
        return QStringLiteral("extraResourceInfo element with id %1 has an invalid \"modification\" time")
            .arg(id);
    }
    const QString versionText = members.value(LibraryVersion).toString();
    const VersionType version(versionText);
    if (!version.isValid()) {
        // Deliberately the version where the id belongs: hosts know the message like this.
        return QStringLiteral("extraResourceInfo element with id %1 has an invalid \"libraryVersion\"")
            .arg(versionText);
    }
    index.insert(id, {modification, members.value(LanguageId).toString(), version.version()});
    return {};
}

QString readDocument(const QString &path, const QByteArray &bytes, Index &index)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (document.isNull()) {
        return QStringLiteral("%1:%2: error %3 -> %4")
            .arg(path, QString::number(parseError.offset), QString::number(parseError.error),
                 parseError.errorString());
    }
    if (!document.isObject()) {
        return QStringLiteral("%1 must contains a json object").arg(path);
    }
    const QJsonValue root = document.object().value(rootKey);
    if (!root.isUndefined() && !root.isArray()) {
        return QStringLiteral("extraResourceInfo is not an array");
    }
    const QJsonArray array = root.toArray();
    for (const QJsonValue &element : array) {
        QString error = readElement(element, index);
        if (!error.isEmpty()) {
            return error;
        }
    }
    return {};
}

void appendMember(QString &json, Key key, const QString &value, QLatin1String end)
{
    json += QLatin1String("            \"") + keyNames[key] + QLatin1String("\": ");
    appendJsonString(json, value);
    json += end;
}

// The text that QJsonDocument::toJson() gives.
QByteArray toJson(const Index &index)
{
    const QLatin1String nextMember(",\n");
    QString json = QLatin1String("{\n    \"") + rootKey + QLatin1String("\": [\n");
    for (auto entry = index.constBegin(); entry != index.constEnd(); ++entry) {
        json += QLatin1String("        {\n");
        appendMember(json, Id, entry.key(), nextMember);
        appendMember(json, LanguageId, entry->languageId, nextMember);
        appendMember(json, LibraryVersion, entry->libraryVersion, nextMember);
        appendMember(json, Modification, entry->modification.toString(Qt::ISODateWithMs),
                     QLatin1String("\n"));
        json += std::next(entry) == index.constEnd() ? QLatin1String("        }\n")
                                                     : QLatin1String("        },\n");
    }
    json += QLatin1String("    ]\n}\n");
    return json.toUtf8();
}

// An empty text, or why nothing was written. QSaveFile::commit() alone returns true for a file that a full disk
// cut off.
QString replaceFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!isUsablePath(path) || !file.open(QIODevice::WriteOnly)) {
        return QStringLiteral("%1 opening error").arg(path);
    }
    if (!writeThrough(file, bytes)) {
        file.cancelWriting();
    }
    return file.commit() ? QString() : QStringLiteral("%1 writing error").arg(path);
}

bool reportError(const QString &error)
{
    if (!error.isEmpty()) {
        logResourceError(QString(), error);
    }
    return error.isEmpty();
}

} // namespace

bool PluginLoader::readExtraResourcesIndexFile(const QString &indexPath,
                                               QMap<QString, ExtraResourceData> &index)
{
    if (!isUsablePath(indexPath) || !QFileInfo::exists(indexPath)) {
        return true;
    }
    const QString path = QFileInfo(indexPath).absoluteFilePath();
    QByteArray bytes;
    Index entries;
    QString error = readFile(path, bytes);
    if (error.isEmpty()) {
        error = readDocument(path, bytes, entries);
    }
    if (!reportError(error)) {
        return false;
    }
    index = entries;
    return true;
}

bool PluginLoader::writeExtraResourcesIndexFile(const QString &indexPath,
                                                const QMap<QString, ExtraResourceData> &index)
{
    if (!isUsablePath(indexPath)) {
        return reportError(QStringLiteral("%1 opening error").arg(indexPath));
    }
    const QFileInfo file(indexPath);
    const QString path = file.absoluteFilePath();
    // What a link leads to is not ours to write, be it a file.
    if (entryExists(file) && (!file.isFile() || file.isSymLink())) {
        logResourceError(QString(), QStringLiteral("Index %1 is not a file. Will be deleted").arg(path));
        if (!removeEntry(file.absolutePath(), file.fileName())) {
            return reportError(QStringLiteral("%1 removing error").arg(path));
        }
    }
    return reportError(replaceFile(path, toJson(index)));
}

} // namespace INTERNAL
} // namespace KORA
