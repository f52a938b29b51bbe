// SPDX-License-Identifier: Apache-2.0
//
// index.json, with a whole generation run between folders that must not change.
#include "../fuzztarget.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>

#include <kora/host.h>

using namespace KORA::INTERNAL;

namespace {

const QString pluginId = QStringLiteral("5b0c6c2e-7f0f-4a53-8f07-3a6f3e5f0c01");
const QString language = QStringLiteral("en-US");

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    expect(QFileInfo(path).dir().mkpath(QStringLiteral(".")) && file.open(QIODevice::WriteOnly)
               && file.write(content) == content.size(),
           "cannot write");
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

// Paths, and the content of files, below a folder.
QMap<QString, QByteArray> treeOf(const QString &path)
{
    QMap<QString, QByteArray> tree;
    QDirIterator entries(path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString entry = entries.next();
        tree.insert(entry.mid(path.size()), entries.fileInfo().isFile() ? contentOf(entry) : QByteArray());
    }
    return tree;
}

class Area
{
public:
    Area()
        : m_path(fuzzFolder() + QStringLiteral("/area"))
    {
        const bool isLoaded = m_loader.loadFromPluginPath(QStringLiteral(KORA_FUZZ_PLUGIN), pluginId);
        expect(isLoaded && m_loader.init(), "the plugin cannot be loaded");
        writeFile(m_path + QStringLiteral("/canary/file"), "untouched");
        writeFile(m_path + QStringLiteral("/%1/file").arg(pluginId), "untouched");
        expect(generate(), "the first run failed");
        m_documents = treeOf(documentsPath());
        m_surroundings = surroundings();
    }

    void run(const QByteArray &index)
    {
        writeFile(indexPath(), index);
        QDir(resourcesPath()).mkpath(QStringLiteral("11111111-7f0f-4a53-8f07-3a6f3e5f0c01"));
        QFile::link(m_path + QStringLiteral("/canary"), resourcesPath() + QStringLiteral("/link"));
        QMap<QString, PluginLoader::ExtraResourceData> entries;
        const bool isReadable = PluginLoader::readExtraResourcesIndexFile(indexPath(), entries);
        expect(isReadable || entries.isEmpty(), "a refused index left entries");

        expect(generate() == isReadable, "the run and the index decide otherwise");
        expect(m_loader.pluginData().size() == 1, "the plugin is gone");
        expect(surroundings() == m_surroundings, "something beside the folder has changed");
        // An entry that the library's time and the language suit speaks for the folder as it stands.
        expect(treeOf(documentsPath()) == m_documents, "other documents");
        expect(PluginLoader::readExtraResourcesIndexFile(indexPath(), entries),
               "the index written is refused");
        expect(generate() && contentOf(indexPath()) == writtenAgain(entries),
               "the second run is not the same");
    }

private:
    QString resourcesPath() const { return m_path + QStringLiteral("/resources"); }
    QString indexPath() const { return resourcesPath() + QStringLiteral("/index.json"); }
    QString documentsPath() const { return resourcesPath() + QLatin1Char('/') + pluginId; }
    bool generate() { return m_loader.generateStudioExtraResources(resourcesPath(), language); }

    QByteArray writtenAgain(const QMap<QString, PluginLoader::ExtraResourceData> &entries) const
    {
        const QString path = m_path + QStringLiteral("/written.json");
        expect(PluginLoader::writeExtraResourcesIndexFile(path, entries), "cannot write an index");
        const QByteArray content = contentOf(path);
        QFile::remove(path);
        return content;
    }

    QMap<QString, QByteArray> surroundings() const
    {
        QMap<QString, QByteArray> tree = treeOf(m_path);
        for (auto entry = tree.begin(); entry != tree.end();) {
            entry =
                entry.key().startsWith(QLatin1String("/resources")) ? tree.erase(entry) : std::next(entry);
        }
        return tree;
    }

    const QString m_path;
    PluginLoader m_loader;
    QMap<QString, QByteArray> m_documents;
    QMap<QString, QByteArray> m_surroundings;
};

} // namespace

KORA_FUZZ_TARGET(index)
{
    static Area area;
    area.run(input);
}
