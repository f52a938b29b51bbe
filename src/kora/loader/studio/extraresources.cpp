// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/pluginloader.h>
#include <kora/loader/pluginloader_p.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSet>
#include <QtCore/QXmlStreamWriter>

#include <functional>

#include <kora/core/files_p.h>
#include <kora/core/versiontype.h>
#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/loader/studio/gallerygroups_p.h>
#include <kora/loader/studio/resourcefiles_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

using Index = QMap<QString, PluginLoader::ExtraResourceData>;
using Plugins = QMap<QString, PluginData *>;
using Action = PluginLoader::ExtraResourceAction;

const QLatin1String indexName("index.json");
const QLatin1String propertiesName("studio_properties.xml");
const QLatin1String defaultsName("studio_defaults.krx");
const QLatin1String pageNameFormat("gallery_page_%1.krx");
const QLatin1String projectPageNameFormat("project_gallery_page_%1.krx");

// A folder that is being filled. The name is no plugin id, so the next run removes what a killed one leaves.
const QLatin1String unfinishedSuffix(".part");

const QString &documentsVersion()
{
    static const QString version = VersionType(1, 1, 0).version();
    return version;
}

QString join(const QString &dirPath, const QString &name)
{
    return dirPath + QLatin1Char('/') + name;
}

// The file's time as the index holds it. Qt knows no time for the very first second of 1970, which libraries of
// read-only images and reproducible archives have; no time would make the index unreadable.
QDateTime modificationOf(const QString &libraryPath)
{
    const QDateTime time = QFileInfo(libraryPath).lastModified();
    return time.isValid() ? time : QDateTime::fromMSecsSinceEpoch(0);
}

// Times are compared as the index writes them: in the hour that the end of summer time repeats, the same text
// reads back as either of two instants.
bool areSameInIndex(const QDateTime &left, const QDateTime &right)
{
    const auto text = [](const QDateTime &time) { return time.toLocalTime().toString(Qt::ISODateWithMs); };
    return left == right || text(left) == text(right);
}

QStringList foldersIn(const QString &dirPath)
{
    return QDir(dirPath).entryList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
}

/// Writes the documents of one plugin into a folder.
class DocumentsWriter
{
public:
    /// The documents go to @p folder; messages name @p finalFolder, where they will stand.
    DocumentsWriter(const WidgetLibraryPluginData &plugin, const QString &languageId, const QString &folder,
                    const QString &finalFolder)
        : m_plugin(plugin)
        , m_meta(*plugin.metaInformation())
        , m_languageId(languageId)
        , m_folder(folder)
        , m_finalFolder(finalFolder)
    {}

    /// An empty text, or what failed.
    QString write();

private:
    using Generator = std::function<int(QXmlStreamWriter &writer)>;

    struct ErrorTexts
    {
        QString opening;
        QString generating;
    };

    QString writeProperties();
    QString writeDefaults();
    QString writeGalleries(const QString &nameFormat, WidgetLibraryPluginUtils::GalleryType type);
    QString writeDocument(const QString &name, const ErrorTexts &errors, const Generator &generator);

    const WidgetLibraryPluginData &m_plugin;
    const WidgetLibraryPluginMetaInformation &m_meta;
    const QString &m_languageId;
    const QString &m_folder;
    const QString &m_finalFolder;
};

QString DocumentsWriter::write()
{
    if (!QDir().mkpath(m_folder)) {
        return QStringLiteral("Error creating directory %1").arg(m_finalFolder);
    }
    QString error = writeProperties();
    if (error.isEmpty()) {
        error = writeDefaults();
    }
    if (error.isEmpty()) {
        error = writeGalleries(pageNameFormat, WidgetLibraryPluginUtils::PageGallery);
    }
    if (error.isEmpty()) {
        error = writeGalleries(projectPageNameFormat, WidgetLibraryPluginUtils::ProjectGallery);
    }
    return error;
}

QString DocumentsWriter::writeProperties()
{
    const ErrorTexts errors{
        // Deliberately the text of a folder: hosts know the message like this.
        QStringLiteral("Error creating directory %1").arg(join(m_finalFolder, propertiesName)),
        QStringLiteral("Error generating studio_properties of %1").arg(m_plugin.libraryPath()),
    };
    return writeDocument(propertiesName, errors, [this](QXmlStreamWriter &writer) {
        writer.writeStartElement(QStringLiteral("defs"));
        const int error =
            WidgetLibraryPluginUtils::studioPropertiesFromMetaInformation(m_meta, writer, m_languageId);
        writer.writeEndElement();
        return error;
    });
}

QString DocumentsWriter::writeDefaults()
{
    const QString path = join(m_finalFolder, defaultsName);
    const ErrorTexts errors{
        QStringLiteral("Error creating file %1").arg(path),
        QStringLiteral("Error generating file %1").arg(path),
    };
    return writeDocument(defaultsName, errors, [this](QXmlStreamWriter &writer) {
        return WidgetLibraryPluginUtils::studioDefaultsFromMetaInformation(
            m_meta, writer, m_languageId, pageNameFormat, projectPageNameFormat);
    });
}

QString DocumentsWriter::writeGalleries(const QString &nameFormat, WidgetLibraryPluginUtils::GalleryType type)
{
    const QList<TranslationStringType> groups = galleryFileGroups(m_meta, type);
    for (int number = 0; number < groups.size(); ++number) {
        const QString name = nameFormat.arg(number);
        const QString path = join(m_finalFolder, name);
        const ErrorTexts errors{
            QStringLiteral("Error opening file %1").arg(path),
            QStringLiteral("Error generating file %1").arg(path),
        };
        const TranslationStringType &group = groups.at(number);
        QString error = writeDocument(name, errors, [&](QXmlStreamWriter &writer) {
            return WidgetLibraryPluginUtils::studioGalleryFromMetaInformation(m_meta, writer, m_languageId,
                                                                              group, type);
        });
        if (!error.isEmpty()) {
            return error;
        }
    }
    return {};
}

QString DocumentsWriter::writeDocument(const QString &name, const ErrorTexts &errors,
                                       const Generator &generator)
{
    QFile file(join(m_folder, name));
    if (!file.open(QIODevice::WriteOnly)) {
        return errors.opening;
    }
    // Written in one go: only the count of a single write() and flush() together show that all is on the disk.
    QByteArray document;
    QXmlStreamWriter writer(&document);
    writer.setAutoFormatting(true);
    const bool isGenerated = generator(writer) == 0 && !writer.hasError();
    const bool isWritten = isGenerated && writeThrough(file, document);
    file.close();
    return isWritten && file.error() == QFileDevice::NoError ? QString() : errors.generating;
}

/// Brings a resource folder up to date with the loaded plugins.
class GenerationRun
{
public:
    GenerationRun(const QString &dirPath, const QString &languageId, const Plugins &plugins, Index &index)
        : m_dirPath(dirPath)
        , m_languageId(languageId)
        , m_plugins(plugins)
        , m_index(index)
    {
        for (auto entry = index.constBegin(); entry != index.constEnd(); ++entry) {
            if (!staleReason(entry.key()).isEmpty()) {
                m_staleIds.append(entry.key());
            }
        }
    }

    /// What the steps below would do, by folder name.
    QVector<Action> plan() const;

    void unlinkStale() const;
    void forgetStaleInFile() const;
    void removeStale();
    void removeOrphans();
    void generate(const PluginLoader::ExtraResourceProgress &progress);

    /// The names of the folders that could not be removed or generated.
    const QSet<QString> &failed() const { return m_failed; }

private:
    bool isRealFolder(const QString &id) const;
    QString staleReason(const QString &id) const;
    QString generationReason(const QString &id) const;
    bool hasFolder(const QString &id) const;
    QStringList idsToGenerate() const;
    QString generateDocuments(const WidgetLibraryPluginData &plugin, const QString &id) const;
    void fail(const QString &id, const QString &message);

    QString m_dirPath;
    QString m_languageId;
    const Plugins &m_plugins;
    Index &m_index;
    QStringList m_staleIds; // in the index's order
    QSet<QString> m_failed;
};

// Empty when the entry of the index is up to date.
QString GenerationRun::staleReason(const QString &id) const
{
    const PluginData *plugin = m_plugins.value(id);
    if (!plugin) {
        return QStringLiteral("no such plugin is loaded");
    }
    const PluginLoader::ExtraResourceData entry = m_index.value(id);
    if (!areSameInIndex(entry.modification, modificationOf(plugin->libraryPath()))) {
        return QStringLiteral("its library has changed");
    }
    if (entry.languageId != m_languageId) {
        return QStringLiteral("it was in %1").arg(entry.languageId);
    }
    return entry.libraryVersion == documentsVersion()
               ? QString()
               : QStringLiteral("it was of version %1").arg(entry.libraryVersion);
}

bool GenerationRun::hasFolder(const QString &id) const
{
    return QFileInfo(join(m_dirPath, id)).isDir();
}

bool GenerationRun::isRealFolder(const QString &id) const
{
    const QFileInfo info(join(m_dirPath, id));
    return info.isDir() && !info.isSymLink();
}

// Empty when the documents stay as they are.
QString GenerationRun::generationReason(const QString &id) const
{
    if (!m_index.contains(id)) {
        return QStringLiteral("it is new");
    }
    const QString reason = staleReason(id);
    return reason.isEmpty() && !hasFolder(id) ? QStringLiteral("its folder is missing") : reason;
}

QVector<Action> GenerationRun::plan() const
{
    QMap<QString, Action> actions;
    const QStringList folders = foldersIn(m_dirPath);
    for (const QString &name : folders) {
        const QString reason =
            m_index.contains(name) ? staleReason(name) : QStringLiteral("the index does not name it");
        actions.insert(name, {name, Action::Remove, reason});
    }
    for (auto plugin = m_plugins.constBegin(); plugin != m_plugins.constEnd(); ++plugin) {
        const QString &id = plugin.key();
        const QString reason = generationReason(id);
        actions.insert(id, {id, reason.isEmpty() ? Action::Keep : Action::Generate, reason});
    }
    QVector<Action> result;
    for (const Action &action : qAsConst(actions)) {
        result.append(action);
    }
    return result;
}

void GenerationRun::fail(const QString &id, const QString &message)
{
    logResourceError(id, message);
    m_failed.insert(id);
}

// Before they are forgotten: only the index tells that a link or a file in the place of a folder is ours to remove.
// What fails here is tried again, and told, with the folders.
void GenerationRun::unlinkStale() const
{
    for (const QString &id : m_staleIds) {
        if (!isRealFolder(id)) {
            removeEntry(m_dirPath, id);
        }
    }
}

// An entry on the disk must not speak for a folder that this run begins to remove or fills from another source:
// were the run killed there, a later one that the entry suits would take what it finds for up to date.
void GenerationRun::forgetStaleInFile() const
{
    Index index = m_index;
    for (const QString &id : m_staleIds) {
        if (m_plugins.contains(id) || entryExists(QFileInfo(join(m_dirPath, id)))) {
            index.remove(id);
        }
    }
    if (index.size() != m_index.size()
        && !PluginLoader::writeExtraResourcesIndexFile(join(m_dirPath, indexName), index)) {
        removeEntry(m_dirPath, indexName);
    }
}

void GenerationRun::removeStale()
{
    for (const QString &id : qAsConst(m_staleIds)) {
        const QString path = join(m_dirPath, id);
        const bool isDirectory = isRealFolder(id);
        if (!removeEntry(m_dirPath, id)) {
            fail(id, isDirectory ? QStringLiteral("Error removing directory %1").arg(path)
                                 : QStringLiteral("Error removing file %1").arg(path));
        }
    }
}

void GenerationRun::removeOrphans()
{
    const QStringList folders = foldersIn(m_dirPath);
    for (const QString &name : folders) {
        if (!m_index.contains(name) && !removeEntry(m_dirPath, name)) {
            fail(name, QStringLiteral("Error removing directory %1").arg(join(m_dirPath, name)));
        }
    }
}

QStringList GenerationRun::idsToGenerate() const
{
    QStringList ids;
    for (auto plugin = m_plugins.constBegin(); plugin != m_plugins.constEnd(); ++plugin) {
        const QString &id = plugin.key();
        const bool isKept = m_index.contains(id) && !m_staleIds.contains(id) && hasFolder(id);
        if (plugin.value()->type() == PluginData::WidgetLibrary && !isKept && !m_failed.contains(id)) {
            ids.append(id);
        }
    }
    return ids;
}

QString GenerationRun::generateDocuments(const WidgetLibraryPluginData &plugin, const QString &id) const
{
    const QString path = join(m_dirPath, id);
    const QString unfinishedName = id + unfinishedSuffix;
    const QString unfinishedPath = join(m_dirPath, unfinishedName);
    QString creatingError = QStringLiteral("Error creating directory %1").arg(path);
    // A file or link may stand in the way: removing the stale and the orphans looks for folders.
    if (!removeEntry(m_dirPath, unfinishedName) || !removeEntry(m_dirPath, id)) {
        return creatingError;
    }
    QString error = DocumentsWriter(plugin, m_languageId, unfinishedPath, path).write();
    if (error.isEmpty() && !QDir().rename(unfinishedPath, path)) {
        error = creatingError;
    }
    if (!error.isEmpty()) {
        removeEntry(m_dirPath, unfinishedName);
    }
    return error;
}

void GenerationRun::generate(const PluginLoader::ExtraResourceProgress &progress)
{
    const QStringList ids = idsToGenerate();
    int done = 0;
    for (const QString &id : ids) {
        const WidgetLibraryPluginData &plugin = *m_plugins.value(id)->toWidgetLibraryPluginData();
        const QDateTime modification = modificationOf(plugin.libraryPath());
        const QString error = generateDocuments(plugin, id);
        if (error.isEmpty()) {
            m_index.insert(id, {modification, m_languageId, documentsVersion()});
        } else {
            fail(id, error);
        }
        ++done;
        if (progress) {
            progress(done, ids.size());
        }
    }
}

// An empty text, or why the path cannot be a resource folder.
QString makeResourceFolder(const QString &dirPath)
{
    if (dirPath.isEmpty()) {
        return QStringLiteral("dirPath must be not empty");
    }
    // Hosts know the message with the second place open.
    const QString creatingError = QStringLiteral("Error creating %1: %2");
    if (!isUsablePath(dirPath)) {
        return creatingError.arg(dirPath);
    }
    const QString path = QDir(dirPath).absolutePath();
    if (!QFileInfo::exists(path)) {
        return QDir().mkpath(path) ? QString() : creatingError.arg(path);
    }
    return QFileInfo(path).isDir() ? QString() : QStringLiteral("dirPath must be a directory");
}

} // namespace

bool PluginLoader::generateStudioExtraResources(const QString &dirPath, const QString &languageId)
{
    return generateStudioExtraResources(dirPath, languageId, nullptr);
}

bool PluginLoader::generateStudioExtraResources(const QString &dirPath, const QString &languageId,
                                                const ExtraResourceProgress &progress)
{
    const QString error =
        d->isInit ? makeResourceFolder(dirPath)
                  : QStringLiteral("generateStudioExtraResources must be called after init function");
    if (!error.isEmpty()) {
        logResourceError(QString(), error);
        unload();
        return false;
    }
    const QString path = QDir(dirPath).absolutePath();
    const QString indexPath = join(path, indexName);
    Index index;
    const bool isRead = readExtraResourcesIndexFile(indexPath, index);

    GenerationRun run(path, languageId, d->pluginData, index);
    run.unlinkStale();
    run.forgetStaleInFile();
    run.removeStale();
    run.removeOrphans();
    run.generate(progress);

    for (const QString &id : run.failed()) {
        delete d->pluginData.take(id);
        index.remove(id);
        removeEntry(path, id);
    }
    const bool isWritten = writeExtraResourcesIndexFile(indexPath, index);
    return isRead && isWritten && run.failed().isEmpty();
}

QVector<PluginLoader::ExtraResourceAction>
PluginLoader::checkStudioExtraResources(const QString &dirPath, const QString &languageId) const
{
    if (!isUsablePath(dirPath)) {
        return {};
    }
    const QString path = QDir(dirPath).absolutePath();
    Index index;
    readExtraResourcesIndexFile(join(path, indexName), index);
    return GenerationRun(path, languageId, d->pluginData, index).plan();
}

} // namespace INTERNAL
} // namespace KORA
