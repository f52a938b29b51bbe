// SPDX-License-Identifier: Apache-2.0
#include "pluginarchive.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QVector>

#include <kora/core/uuid_p.h>
#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/diagnosis/plugindiagnosis.h>

#include "logcollector.h"
#include "pluginfolder.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <memory>

using KORA::DEV::Finding;
using KORA::DEV::Findings;
using namespace KORA::INTERNAL;

namespace {

const QLatin1String manifestName("SHA256SUMS");
const time_t fixedTime = 315532800; // 1980, the first year that every archive format knows

struct Entry
{
    QString path; // "<id>/linux/arm64/lib<id>.so"
    QByteArray content;
};

struct ArchiveDeleter
{
    void operator()(archive *object) const
    {
        archive_free(object); // of readers and writers alike; what there is to tell was told before
    }
};

struct EntryDeleter
{
    void operator()(archive_entry *entry) const { archive_entry_free(entry); }
};

using Archive = std::unique_ptr<archive, ArchiveDeleter>;
using ArchiveEntry = std::unique_ptr<archive_entry, EntryDeleter>;

QByteArray hashOf(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
}

la_ssize_t appendBytes(archive *, void *target, const void *bytes, size_t size)
{
    static_cast<QByteArray *>(target)->append(static_cast<const char *>(bytes), static_cast<int>(size));
    return static_cast<la_ssize_t>(size);
}

QString errorOf(archive *object)
{
    const char *const text = archive_error_string(object);
    return text ? QString::fromUtf8(text) : QStringLiteral("unknown error");
}

bool writeEntry(archive *writer, const Entry &entry)
{
    const ArchiveEntry header(archive_entry_new());
    archive_entry_set_pathname(header.get(), entry.path.toUtf8().constData());
    archive_entry_set_filetype(header.get(), AE_IFREG);
    archive_entry_set_perm(header.get(), 0644);
    archive_entry_set_mtime(header.get(), fixedTime, 0);
    archive_entry_set_size(header.get(), entry.content.size());
    return archive_write_header(writer, header.get()) == ARCHIVE_OK
           && archive_write_data(writer, entry.content.constData(), static_cast<size_t>(entry.content.size()))
                  == entry.content.size();
}

// Empty, with the reason in problem, if a path is too long for the format.
QByteArray archiveOf(const QVector<Entry> &entries, QString &problem)
{
    QByteArray bytes;
    const Archive writer(archive_write_new());
    bool ok = archive_write_set_format_ustar(writer.get()) == ARCHIVE_OK
              && archive_write_open(writer.get(), &bytes, nullptr, &appendBytes, nullptr) == ARCHIVE_OK;
    for (const Entry &entry : entries) {
        ok = ok && writeEntry(writer.get(), entry);
    }
    if (!ok || archive_write_close(writer.get()) != ARCHIVE_OK) {
        problem = errorOf(writer.get());
        return {};
    }
    return bytes;
}

bool readEntries(const QByteArray &bytes, QVector<Entry> &entries, QString &problem)
{
    const Archive reader(archive_read_new());
    archive_entry *header = nullptr;
    int result = archive_read_support_format_tar(reader.get());
    if (result == ARCHIVE_OK) {
        result = archive_read_open_memory(reader.get(), bytes.constData(), static_cast<size_t>(bytes.size()));
    }
    while (result == ARCHIVE_OK && (result = archive_read_next_header(reader.get(), &header)) == ARCHIVE_OK) {
        const qint64 size = archive_entry_size(header);
        if (archive_entry_filetype(header) != AE_IFREG || size < 0 || size > bytes.size()) {
            problem =
                QStringLiteral("%1 is no plain file").arg(QString::fromUtf8(archive_entry_pathname(header)));
            return false;
        }
        Entry entry{QString::fromUtf8(archive_entry_pathname(header)),
                    QByteArray(static_cast<int>(size), '\0')};
        if (archive_read_data(reader.get(), entry.content.data(), static_cast<size_t>(size)) != size) {
            result = ARCHIVE_FATAL;
            break;
        }
        entries.append(entry);
    }
    problem = result == ARCHIVE_EOF ? QString() : errorOf(reader.get());
    return result == ARCHIVE_EOF;
}

QByteArray manifestOf(const QVector<Entry> &files, const QString &id)
{
    QByteArray manifest;
    for (const Entry &file : files) {
        manifest += hashOf(file.content) + "  " + file.path.mid(id.size() + 1).toUtf8() + '\n';
    }
    return manifest;
}

// Relative path to hash; false for a line that sha256sum would not have written.
bool readManifest(const QByteArray &manifest, QMap<QString, QByteArray> &hashes)
{
    const int hashSize = 64;
    const QList<QByteArray> lines = manifest.split('\n');
    for (const QByteArray &line : lines) {
        if (line.isEmpty()) {
            continue;
        }
        if (line.size() < hashSize + 3 || line.mid(hashSize, 2) != "  ") {
            return false;
        }
        hashes.insert(QString::fromUtf8(line.mid(hashSize + 2)), line.left(hashSize));
    }
    return true;
}

// As the loader of the library's own platform would see it.
QString problemOfLibrary(const QString &libraryPath, const QString &id)
{
    using namespace KORA::DEV;
    const Findings found = diagnoseLibrary(libraryPath, id, platformOfLibrary(libraryPath));
    if (!found.isEmpty()) {
        return QStringLiteral("%1: %2").arg(libraryPath, found.first().message);
    }
    LogCollector log;
    WidgetLibraryPluginMetaInformation info;
    const int code =
        WidgetLibraryPluginUtils::metaInformationFromMetaData(readLibraryMetaData(libraryPath).object, info);
    return code == 0
               ? QString()
               : QStringLiteral("%1: %2").arg(libraryPath, WidgetLibraryPluginUtils::errorToString(code));
}

QString problemOfFolder(const PluginFolder &folder)
{
    if (!isUuidFolderName(folder.name())) {
        return QStringLiteral("%1 is no plugin folder: its name is not a UUID").arg(folder.path());
    }
    const QStringList libraries = folder.libraries();
    if (libraries.isEmpty()) {
        return folder.libraryProblem();
    }
    for (const QString &library : libraries) {
        const QString problem = problemOfLibrary(library, folder.name());
        if (!problem.isEmpty()) {
            return problem;
        }
    }
    return {};
}

// All files but the manifest, by name.
bool readFolder(const PluginFolder &folder, QVector<Entry> &files, QString &problem)
{
    const QDir dir(folder.path());
    QDirIterator i(folder.path(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDirIterator::Subdirectories);
    while (i.hasNext()) {
        const QString path = i.next();
        const QFileInfo info = i.fileInfo();
        const QString name = dir.relativeFilePath(path);
        if (info.isDir() && !info.isSymLink()) {
            continue;
        }
        QFile file(path);
        if (!info.isFile() || info.isSymLink() || name.contains(QLatin1Char('\n'))) {
            problem = QStringLiteral("%1 is no plain file").arg(path);
            return false;
        }
        if (!file.open(QIODevice::ReadOnly)) {
            problem = QStringLiteral("%1: %2").arg(path, file.errorString());
            return false;
        }
        const QByteArray content = file.readAll();
        if (content.size() != info.size()) {
            problem = file.error() == QFileDevice::NoError
                          ? QStringLiteral("%1 changes while it is read").arg(path)
                          : QStringLiteral("%1 cannot be read whole: %2").arg(path, file.errorString());
            return false;
        }
        if (name != manifestName) {
            files.append({folder.name() + QLatin1Char('/') + name, content});
        }
    }
    return true;
}

// What is packed: the list of files, then they by name.
QVector<Entry> withManifest(QVector<Entry> files, const QString &id)
{
    std::sort(files.begin(), files.end(), [](const Entry &a, const Entry &b) { return a.path < b.path; });
    files.prepend({id + QLatin1Char('/') + manifestName, manifestOf(files, id)});
    return files;
}

/// Compares the entries of an archive with its manifest.
class Verification
{
public:
    explicit Verification(const QString &path)
        : m_path(path)
    {}

    Findings run()
    {
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly)) {
            add("archive-unreadable", file.errorString());
            return m_found;
        }
        const QByteArray bytes = file.readAll();
        QString problem;
        if (!readEntries(bytes, m_entries, problem)) {
            add("archive-unreadable", QStringLiteral("the archive cannot be read: %1").arg(problem));
            return m_found;
        }
        if (checkNames() && checkManifest()) {
            checkFiles();
        }
        if (m_found.isEmpty() && archiveOf(withManifest(m_entries.mid(1), m_id), problem) != bytes) {
            add("archive-form",
                QStringLiteral("beside its files the archive has bytes that kora pack does not write"));
        }
        return m_found;
    }

private:
    void add(const char *rule, const QString &message)
    {
        Finding finding;
        finding.rule = QLatin1String(rule);
        finding.file = m_path;
        finding.message = message;
        finding.hint = QStringLiteral("get the archive once more, or pack the plugin anew");
        m_found.append(finding);
    }

    // One plugin folder, and nothing that would be unpacked outside it or over another file.
    bool checkNames()
    {
        m_id = m_entries.value(0).path.section(QLatin1Char('/'), 0, 0);
        if (!isUuidFolderName(m_id)) {
            add("archive-content", QStringLiteral("it does not hold a plugin folder"));
            return false;
        }
        QSet<QString> seen;
        for (const Entry &entry : qAsConst(m_entries)) {
            const bool isInside = entry.path.startsWith(m_id + QLatin1Char('/'));
            if (!isInside || QDir::cleanPath(entry.path) != entry.path || seen.contains(entry.path)) {
                add("archive-extra-file", QStringLiteral("%1 does not belong into it").arg(entry.path));
            }
            seen.insert(entry.path);
        }
        return m_found.isEmpty();
    }

    bool checkManifest()
    {
        const Entry first = m_entries.value(0);
        if (first.path == m_id + QLatin1Char('/') + manifestName && readManifest(first.content, m_hashes)) {
            return true;
        }
        add("archive-manifest",
            QStringLiteral("it does not begin with its list of files, %1").arg(manifestName));
        return false;
    }

    void checkFiles()
    {
        QMap<QString, QByteArray> missing = m_hashes;
        const QVector<Entry> files = m_entries.mid(1);
        for (const Entry &entry : files) {
            const QString name = entry.path.mid(m_id.size() + 1);
            if (!m_hashes.contains(name)) {
                add("archive-extra-file", QStringLiteral("%1 is not in its list of files").arg(name));
            } else if (m_hashes.value(name) != hashOf(entry.content)) {
                add("archive-changed-file", QStringLiteral("%1 was changed after it was packed").arg(name));
            }
            missing.remove(name);
        }
        for (auto i = missing.cbegin(); i != missing.cend(); ++i) {
            add("archive-missing-file", QStringLiteral("%1 is missing").arg(i.key()));
        }
    }

    QString m_path;
    QVector<Entry> m_entries;
    QString m_id;
    QMap<QString, QByteArray> m_hashes;
    Findings m_found;
};

} // namespace

QByteArray packPluginFolder(const QString &path, QString &problem)
{
    const PluginFolder folder(path);
    problem = problemOfFolder(folder);
    QVector<Entry> files;
    if (!problem.isEmpty() || !readFolder(folder, files, problem)) {
        return {};
    }
    return archiveOf(withManifest(files, folder.name()), problem);
}

Findings verifyArchive(const QString &path)
{
    return Verification(path).run();
}

bool isArchive(const QString &path)
{
    const int magicPosition = 257;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(magicPosition + 5).mid(magicPosition) == "ustar";
}
