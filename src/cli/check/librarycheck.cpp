// SPDX-License-Identifier: Apache-2.0
#include "librarycheck.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <kora/core/uuid_p.h>
#include <kora/dev/diagnosis/plugindiagnosis.h>

#include "metadatacheck.h"
#include "rules.h"

using KORA::DEV::Finding;
using KORA::DEV::Findings;
using KORA::DEV::LibraryMetaData;
using KORA::DEV::libraryPathInFolder;
using KORA::DEV::platformOfLibrary;
using KORA::INTERNAL::isUuidFolderName;

namespace {

const QLatin1String deliveredPlatforms[] = {QLatin1String("win32/x86"), QLatin1String("win32/x64"),
                                            QLatin1String("linux/arm32"), QLatin1String("linux/arm64")};
constexpr int mostFoldersUp = 10;
constexpr int mostSourceFiles = 5000;
constexpr qint64 largestSource = 8'000'000;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.size() <= largestSource && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Finding findingOf(const char *rule, const QString &file, const QString &message, const QString &hint)
{
    Finding finding;
    finding.rule = QLatin1String(rule);
    finding.severity = findRule(finding.rule)->severity;
    finding.file = file;
    finding.message = message;
    finding.hint = hint;
    return finding;
}

// The folder's name of <id>/<os>/<arch>/lib<id>.so; empty for a library that lies elsewhere.
QString folderIdOf(const QString &libraryPath)
{
    QDir dir = QFileInfo(QFileInfo(libraryPath).absoluteFilePath()).dir();
    if (platformOfLibrary(libraryPath).isEmpty() || !dir.cdUp() || !dir.cdUp()) {
        return {};
    }
    return isUuidFolderName(dir.dirName()) ? dir.dirName() : QString();
}

void checkMetaDataOf(const QString &path, const QJsonObject &metaData, const QString &sourceFile,
                     CheckReport &report)
{
    const QString source = sourceFile.isEmpty() ? findSourceFile(path, metaData) : sourceFile;
    if (source.isEmpty()) {
        report.findings += checkLibraryMetadata(metaData, path);
        return;
    }
    const QByteArray json = contentOf(source);
    if (QJsonDocument::fromJson(json).object() == metaData) {
        report.findings += checkMetadata(json, source);
        return;
    }
    report.findings.append(
        findingOf("source-differs", path,
                  QStringLiteral("the library was built from other metadata than %1 holds now").arg(source),
                  QStringLiteral("build again; what follows is about the library")));
    report.findings += checkLibraryMetadata(metaData, path);
}

QStringList platformFoldersIn(const QString &folder)
{
    QStringList platforms;
    const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
    const QStringList systems = QDir(folder).entryList(folders);
    for (const QString &system : systems) {
        const QStringList archs = QDir(folder + QLatin1Char('/') + system).entryList(folders);
        for (const QString &arch : archs) {
            platforms.append(system + QLatin1Char('/') + arch);
        }
    }
    return platforms;
}

void checkCompleteness(const QString &folder, CheckReport &report)
{
    for (const QString platform : deliveredPlatforms) {
        const QString path = libraryPathInFolder(folder, platform);
        if (!QFileInfo(path).isFile()) {
            report.findings.append(findingOf(
                "platform-missing", path, QStringLiteral("there is no library for %1").arg(platform),
                QStringLiteral("build it for %1 and put it there").arg(platform)));
        } else if (KORA::DEV::readLibraryMetaData(path).isDebug) {
            report.findings.append(findingOf("debug-build", path,
                                             QStringLiteral("the library was built for debugging"),
                                             QStringLiteral("build with -DCMAKE_BUILD_TYPE=Release")));
        }
    }
}

QString sourceTreeOf(const QString &libraryPath)
{
    QDir dir = QFileInfo(QFileInfo(libraryPath).absoluteFilePath()).dir();
    for (int i = 0; i < mostFoldersUp; ++i) {
        const QList<QByteArray> lines = contentOf(dir.filePath(QStringLiteral("CMakeCache.txt"))).split('\n');
        for (const QByteArray &line : lines) {
            const QByteArray key = "CMAKE_HOME_DIRECTORY:INTERNAL=";
            if (line.startsWith(key)) {
                return QString::fromUtf8(line.mid(key.size()));
            }
        }
        if (!dir.cdUp()) {
            break;
        }
    }
    return {};
}

} // namespace

QString findSourceFile(const QString &libraryPath, const QJsonObject &metaData)
{
    const QString tree = sourceTreeOf(libraryPath);
    if (tree.isEmpty()) {
        return {};
    }
    QDirIterator files(tree, {QStringLiteral("*.json")}, QDir::Files | QDir::NoSymLinks,
                       QDirIterator::Subdirectories);
    for (int i = 0; i < mostSourceFiles && files.hasNext(); ++i) {
        const QByteArray json = contentOf(files.next());
        const bool isSource = !json.isEmpty() && QJsonDocument::fromJson(json).object() == metaData;
        if (isSource) {
            return files.filePath();
        }
    }
    return {};
}

void checkLibrary(const QString &path, const LibraryCheckOptions &options, CheckReport &report)
{
    const QString expectedId = options.expectedId.isEmpty() ? folderIdOf(path) : options.expectedId;
    const Findings findings = KORA::DEV::diagnoseLibrary(path, expectedId, platformOfLibrary(path));
    report.findings += findings;
    const LibraryMetaData read = KORA::DEV::readLibraryMetaData(path);
    const QJsonObject metaData = read.object.value(QLatin1String("MetaData")).toObject();
    if (!metaData.isEmpty()) {
        checkMetaDataOf(path, metaData, options.sourceFile, report);
    }
}

bool isPluginFolder(const QString &folder)
{
    const QDir dir(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()));
    return isUuidFolderName(dir.dirName()) || dir.exists(QStringLiteral("linux"))
           || dir.exists(QStringLiteral("win32"));
}

void checkPluginFolder(const QString &folder, const LibraryCheckOptions &options, bool complete,
                       CheckReport &report)
{
    const int before = report.findings.size();
    QStringList paths;
    const QStringList platforms = platformFoldersIn(folder);
    for (const QString &platform : platforms) {
        const QString path = libraryPathInFolder(folder, platform);
        const bool isForLinux = path.endsWith(QLatin1String(".so"));
        if (QFileInfo::exists(path) && (isForLinux || !QFileInfo(path).isFile())) {
            paths.append(path);
        }
    }
    // What the folder itself lacks, the diagnosis for this platform tells.
    const bool isNamedRight =
        isUuidFolderName(QDir(QDir::cleanPath(QFileInfo(folder).absoluteFilePath())).dirName());
    if (!isNamedRight || paths.isEmpty()) {
        report.findings += KORA::DEV::diagnosePluginFolder(folder);
    }
    for (const QString &path : qAsConst(paths)) {
        if (isNamedRight) {
            checkLibrary(path, options, report);
        }
    }
    if (complete) {
        checkCompleteness(folder, report);
    }
    // As the user named the folder: a relative path stays one, on every machine the same.
    const QString absolute = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    for (int i = before; i < report.findings.size(); ++i) {
        QString &file = report.findings[i].file;
        if (file.startsWith(absolute + QLatin1Char('/'))) {
            file = QDir::cleanPath(folder) + file.midRef(absolute.size());
        }
    }
}
