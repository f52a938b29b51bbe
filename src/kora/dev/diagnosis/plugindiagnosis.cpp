// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/diagnosis/plugindiagnosis.h>

#include <QtCore/QCborValue>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <iterator>

#include <kora/core/uuid_p.h>
#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/loader/elffile_p.h>
#include <kora/loader/libraryfile_p.h>

namespace KORA {
namespace DEV {

namespace {

using INTERNAL::ElfFile;

const QLatin1String widgetLibraryIid("org.Vako.KORA.WidgetLibrary");
const QLatin1String iidKey("IID");
const QLatin1String metaDataKey("MetaData");
const QLatin1String idKey("id");

struct PlatformTraits
{
    QLatin1String name;
    int machine; ///< 0 where libraries are no ELF files
    int bits;
    QLatin1String prefix;
    QLatin1String suffix;
};

const PlatformTraits platformTable[] = {
    {QLatin1String("win32/x86"), 0, 32, QLatin1String(""), QLatin1String(".dll")},
    {QLatin1String("win32/x64"), 0, 64, QLatin1String(""), QLatin1String(".dll")},
    {QLatin1String("linux/arm32"), ElfFile::MachineArm, 32, QLatin1String("lib"), QLatin1String(".so")},
    {QLatin1String("linux/arm64"), ElfFile::MachineAArch64, 64, QLatin1String("lib"), QLatin1String(".so")},
    {QLatin1String("linux/x64"), ElfFile::MachineX86_64, 64, QLatin1String("lib"), QLatin1String(".so")},
    {QLatin1String("linux/x86"), ElfFile::MachineX86, 32, QLatin1String("lib"), QLatin1String(".so")},
};

const PlatformTraits *traitsOf(const QString &platform)
{
    const auto found =
        std::find_if(std::begin(platformTable), std::end(platformTable),
                     [&platform](const PlatformTraits &traits) { return traits.name == platform; });
    return found == std::end(platformTable) ? nullptr : found;
}

Finding error(const char *rule, const QString &file, const QString &message, const QString &hint)
{
    Finding finding;
    finding.rule = QLatin1String(rule);
    finding.file = file;
    finding.message = message;
    finding.hint = hint;
    return finding;
}

// The libraries in a plugin folder, as "linux/arm64".
QStringList platformsIn(const QString &folder)
{
    QStringList platforms;
    const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
    const QStringList systems = QDir(folder).entryList(folders);
    for (const QString &system : systems) {
        const QStringList archs = QDir(folder + QLatin1Char('/') + system).entryList(folders);
        for (const QString &arch : archs) {
            const QString platform = system + QLatin1Char('/') + arch;
            if (QFileInfo(libraryPathInFolder(folder, platform)).isFile()) {
                platforms.append(platform);
            }
        }
    }
    return platforms;
}

// What stands where the library should, under another name.
QStringList strangersBeside(const QString &libraryPath)
{
    return QFileInfo(libraryPath).dir().entryList(QDir::Files);
}

Finding missingLibrary(const QString &folder, const QString &platform)
{
    const QString path = libraryPathInFolder(folder, platform);
    const QStringList platforms = platformsIn(folder);
    const QStringList strangers = strangersBeside(path);
    QString message = QStringLiteral("there is no library for %1").arg(platform);
    QString hint = QStringLiteral("build the library for %1 and put it at %2").arg(platform, path);
    if (!platforms.isEmpty()) {
        message += QStringLiteral("; the folder has one for %1").arg(platforms.join(QLatin1String(", ")));
    } else if (!strangers.isEmpty()) {
        message += QStringLiteral("; its place holds %1").arg(strangers.join(QLatin1String(", ")));
        hint = QStringLiteral("the library is named after the folder: %1").arg(QFileInfo(path).fileName());
    }
    return error("library-missing", path, message, hint);
}

// Files of people's making, such as the pointer of Git LFS or an error page that was downloaded.
bool isText(const QByteArray &content)
{
    const QByteArray start = content.left(512);
    return std::none_of(start.cbegin(), start.cend(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 && c != '\n' && c != '\r' && c != '\t' && c != '\f';
    });
}

Finding notElf(const QString &path, const QByteArray &content)
{
    if (content.isEmpty()) {
        return error("library-truncated", path, QStringLiteral("the file is empty"),
                     QStringLiteral("build or copy the library again"));
    }
    if (isText(content)) {
        const QString line = QString::fromUtf8(content.left(60)).section(QLatin1Char('\n'), 0, 0);
        return error("library-text", path,
                     QStringLiteral("the file is text, not a library; it begins \"%1\"").arg(line),
                     QStringLiteral("put the built library in its place"));
    }
    if (content.startsWith("MZ")) {
        return error("library-not-elf", path, QStringLiteral("the file is a library for Windows"),
                     QStringLiteral("put it under win32 and build one for Linux"));
    }
    return error("library-not-elf", path, QStringLiteral("the file is no Linux library"),
                 QStringLiteral("put the built library in its place"));
}

Findings checkTarget(const QString &path, const ElfFile &elf, const PlatformTraits *expected)
{
    const QString hint =
        QStringLiteral("build with the toolchain of the target, or move the file to the folder "
                       "of its own platform");
    const bool isThere = expected && expected->machine != 0;
    if (elf.isBigEndian()) {
        return {
            error("library-big-endian", path,
                  QStringLiteral("the library is for a processor with the other byte order (%1, big-endian)")
                      .arg(ElfFile::machineName(elf.machine())),
                  hint)};
    }
    if (isThere && elf.bits() != expected->bits) {
        return {error(elf.bits() == 32 ? "library-32-bit" : "library-64-bit", path,
                      QStringLiteral("the library is of %1 bits (%2); %3 takes %4 bits")
                          .arg(QString::number(elf.bits()), ElfFile::machineName(elf.machine()),
                               QString(expected->name), QString::number(expected->bits)),
                      hint)};
    }
    if (isThere && elf.machine() != expected->machine) {
        return {error("library-wrong-cpu", path,
                      QStringLiteral("the library is for %1; %2 takes %3")
                          .arg(ElfFile::machineName(elf.machine()), QString(expected->name),
                               ElfFile::machineName(expected->machine)),
                      hint)};
    }
    if (!elf.isSharedObject()) {
        return {
            error("library-not-shared", path,
                  QStringLiteral("the file is a program or an object file, not a shared library"),
                  QStringLiteral("make it with kora_add_widget_library() or add_library(... MODULE ...)"))};
    }
    return {};
}

// Qt's keys in the section are numbers; others are texts.
QString nameOfKey(const QCborValue &key)
{
    if (!key.isInteger()) {
        return key.toString();
    }
    switch (key.toInteger()) {
    case 1:
        return QStringLiteral("archreq");
    case 2:
        return iidKey;
    case 3:
        return QStringLiteral("className");
    case 4:
        return metaDataKey;
    case 5:
        return QStringLiteral("URI");
    default:
        return {};
    }
}

LibraryMetaData readSection(const QByteArray &section)
{
    const INTERNAL::MetaDataSection read = INTERNAL::readMetaDataSection(section);
    LibraryMetaData result;
    result.isValid = read.isValid;
    result.qtMajor = read.qtMajor;
    result.qtMinor = read.qtMinor;
    result.isDebug = read.isDebug;
    // Of a key that is there twice the last value counts, as with Qt.
    for (auto entry = read.map.begin(); entry != read.map.end(); ++entry) {
        const QString name = nameOfKey(entry.key());
        if (!name.isEmpty()) {
            result.object.insert(name, entry.value().toJsonValue());
        }
    }
    return result;
}

bool isNewerThanThisQt(const LibraryMetaData &metaData)
{
    return metaData.qtMajor != QT_VERSION_MAJOR || metaData.qtMinor > QT_VERSION_MINOR;
}

Findings checkInterface(const QString &path, const QJsonObject &object)
{
    const QString iid = object.value(iidKey).toString();
    const QString hint =
        QStringLiteral("write Q_PLUGIN_METADATA(IID \"%1\" FILE \"<metadata>.json\") in the plugin's class")
            .arg(widgetLibraryIid);
    if (iid.isEmpty()) {
        return {error("library-no-iid", path, QStringLiteral("the plugin names no interface (IID)"), hint)};
    }
    if (iid != widgetLibraryIid) {
        return {error("library-wrong-iid", path,
                      QStringLiteral("the plugin's interface (IID) is \"%1\", not \"%2\"")
                          .arg(iid, QString(widgetLibraryIid)),
                      hint)};
    }
    if (object.value(metaDataKey).toObject().isEmpty()) {
        return {
            error("library-no-metadata", path, QStringLiteral("the plugin carries no metadata"),
                  QStringLiteral("name the JSON file in Q_PLUGIN_METADATA; when the file is broken, Qt's moc "
                                 "warns and leaves it out: kora check <metadata>.json tells where"))};
    }
    return {};
}

Findings checkId(const QString &path, const QJsonObject &object, const QString &expectedId)
{
    const QString id = object.value(metaDataKey).toObject().value(idKey).toString();
    if (expectedId.isEmpty() || id.isEmpty() || id == expectedId) {
        return {};
    }
    const bool isCaseOnly = id.compare(expectedId, Qt::CaseInsensitive) == 0;
    return {
        error("library-id-differs", path,
              QStringLiteral("the plugin's id %1 is not the folder's name %2%3")
                  .arg(id, expectedId,
                       isCaseOnly ? QStringLiteral(" (capital and small letters differ)") : QString()),
              QStringLiteral("name the folder %1 and the library lib%1.so, or change \"id\" in the metadata "
                             "and build again")
                  .arg(id))};
}

Findings checkSection(const QString &path, const ElfFile &elf, const QString &expectedId)
{
    const QByteArray section = elf.section(".qtmetadata");
    if (section.isNull()) {
        return {
            error("library-no-plugin", path, QStringLiteral("the library is no Qt plugin"),
                  QStringLiteral("a class with Q_OBJECT and Q_PLUGIN_METADATA must be in it, and its header "
                                 "among the sources that moc sees"))};
    }
    const LibraryMetaData metaData = readSection(section);
    if (!metaData.isValid) {
        return {error("library-metadata-broken", path,
                      QStringLiteral("the library's section with Qt's metadata is broken"),
                      QStringLiteral("build or copy the library again"))};
    }
    if (isNewerThanThisQt(metaData)) {
        return {
            error("library-newer-qt", path,
                  QStringLiteral("the library was built with Qt %1.%2; Qt %3 does not load it")
                      .arg(QString::number(metaData.qtMajor), QString::number(metaData.qtMinor),
                           QStringLiteral(QT_VERSION_STR)),
                  QStringLiteral("build it with the Qt of the target, or an older one of the same number"))};
    }
    const Findings findings = checkInterface(path, metaData.object);
    return findings.isEmpty() ? checkId(path, metaData.object, expectedId) : findings;
}

// False, with what is wrong, for all that cannot be opened as a file.
bool readFile(const QString &path, QByteArray &content, Findings &findings)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        findings.append(error("library-missing", path,
                              info.isSymLink()
                                  ? QStringLiteral("the link leads nowhere (%1)").arg(info.symLinkTarget())
                                  : QStringLiteral("there is no such file"),
                              QStringLiteral("build the library and put it there")));
        return false;
    }
    if (!info.isFile()) {
        findings.append(error("library-not-file", path,
                              info.isDir() ? QStringLiteral("a folder stands in the library's place")
                                           : QStringLiteral("the library is not a regular file"),
                              QStringLiteral("put the built library in its place")));
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        findings.append(error("library-unreadable", path,
                              QStringLiteral("the file cannot be read: %1").arg(file.errorString()),
                              QStringLiteral("give the user of the program the right to read it")));
        return false;
    }
    content = file.readAll();
    return true;
}

Findings checkFolder(const QString &path)
{
    const QFileInfo info(path);
    const QString hint = QStringLiteral("give the folder that is named by the plugin's id");
    if (!info.exists()) {
        return {error("folder-missing", path, QStringLiteral("there is no such folder"), hint)};
    }
    if (!info.isDir()) {
        return {error("folder-missing", path, QStringLiteral("this is a file, not a plugin folder"), hint)};
    }
    if (!INTERNAL::isUuidFolderName(QDir(path).dirName())) {
        return {error("folder-name", path,
                      QStringLiteral("the folder's name \"%1\" is no UUID").arg(QDir(path).dirName()),
                      QStringLiteral("name the folder after \"id\" in the plugin's metadata, such as "
                                     "6f1d7f1e-1c7c-4c39-9d0e-0c8a1d2b3e4f"))};
    }
    if (QDir(path).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        return {
            error("folder-empty", path, QStringLiteral("the folder is empty"),
                  QStringLiteral("put the library at %1").arg(libraryPathInFolder(path, thisPlatform())))};
    }
    return {};
}

Findings checkMetaData(const QString &path)
{
    INTERNAL::WidgetLibraryPluginMetaInformation info;
    using Utils = INTERNAL::WidgetLibraryPluginUtils;
    const int code = Utils::metaInformationFromMetaData(readLibraryMetaData(path).object, info);
    if (code == 0) {
        return {};
    }
    Finding finding =
        error("metadata", path, Utils::errorToString(code),
              QStringLiteral("run kora check <metadata>.json: it tells every fault and its line"));
    finding.code = code;
    return {finding};
}

} // namespace

QString thisPlatform()
{
    return QStringLiteral(KORA_PLATFORM_OS "/" KORA_PLATFORM_ARCH).toLower();
}

QString platformOfLibrary(const QString &path)
{
    const QDir folder = QFileInfo(QFileInfo(path).absoluteFilePath()).dir();
    const QString platform = QFileInfo(folder.path()).dir().dirName() + QLatin1Char('/') + folder.dirName();
    return platform == thisPlatform() || traitsOf(platform) ? platform : QString();
}

QString libraryPathInFolder(const QString &folder, const QString &platform)
{
    const QDir dir(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()));
    const PlatformTraits *traits = traitsOf(platform);
    const QString prefix = traits ? QString(traits->prefix) : QStringLiteral("lib");
    const QString suffix = traits ? QString(traits->suffix) : QStringLiteral(".so");
    return QStringLiteral("%1/%2/%3%4%5").arg(dir.path(), platform, prefix, dir.dirName(), suffix);
}

Findings diagnosePluginFolder(const QString &folder)
{
    Findings findings = checkFolder(folder);
    if (!findings.isEmpty()) {
        return findings;
    }
    const QString path = libraryPathInFolder(folder, thisPlatform());
    if (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink()) {
        return {missingLibrary(folder, thisPlatform())};
    }
    findings = diagnoseLibrary(path, QDir(folder).dirName());
    return findings.isEmpty() ? checkMetaData(path) : findings;
}

Findings diagnoseLibrary(const QString &path, const QString &expectedId, const QString &platform)
{
    Findings findings;
    QByteArray content;
    if (!readFile(path, content, findings)) {
        return findings;
    }
    const ElfFile elf(content);
    if (elf.state() == ElfFile::State::NotElf) {
        return {notElf(path, content)};
    }
    if (elf.hasTarget()) { // even of a file that is cut off, or of a form that only its own platform reads
        findings = checkTarget(path, elf, traitsOf(platform));
    }
    if (findings.isEmpty() && elf.state() == ElfFile::State::Truncated) {
        return {error("library-truncated", path,
                      QStringLiteral("the library is cut off: it has %1 bytes and its headers tell of more")
                          .arg(content.size()),
                      QStringLiteral("copy it again; a full disk or a broken transfer does this"))};
    }
    return findings.isEmpty() ? checkSection(path, elf, expectedId) : findings;
}

LibraryMetaData readLibraryMetaData(const QString &path)
{
    Findings findings;
    QByteArray content;
    return readFile(path, content, findings) ? readSection(ElfFile(content).section(".qtmetadata"))
                                             : LibraryMetaData();
}

} // namespace DEV
} // namespace KORA
