// SPDX-License-Identifier: Apache-2.0
//
// Libraries that cannot be loaded, each wrong in the one way that its row names. They are made here, of good ones.
#include <QtCore/QCborArray>
#include <QtCore/QJsonDocument>

#include <functional>

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <kora/loader/pluginloader.h>
#include <support/logrecorder.h>
#include <support/testmain.h>

#include "libraryimage.h"
#include "pluginfolders.h"

using KORA::INTERNAL::PluginLoader;

namespace {

using Damage = std::function<void(LibraryImage &)>;
using Placement = std::function<bool(const QString &path)>;

const QString id = pluginId(1);

// What refuses: $ stands for the library's path, which holds "%1%2%3".
const char noIid[] = "the IID is not specified";
const char cutOff[] = "the file is cut off: its headers announce more than it holds";
const char wrongIid[] = "org.Vako.KORA.%1%2%3Library";

QByteArray library(const char *fixture)
{
    const QByteArray file = PluginFolders::readFile(fixture);
    return file.contains(builtId()) ? patched(file, builtId(), id.toLatin1()) : file;
}

QByteArray goodLibrary()
{
    static const QByteArray good = library(KORA_TEST_LIBRARY_fixture_good);
    return good;
}

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray goodIid()
{
    return QByteArrayLiteral("org.Vako.KORA.WidgetLibrary");
}

/// A row of this damage to a good library.
void damaged(const char *name, const char *reason, const Damage &damage)
{
    LibraryImage image(goodLibrary());
    damage(image);
    QTest::newRow(name) << image.bytes << QString::fromLatin1(reason);
}

QJsonObject description(const char *changes)
{
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("name"), QStringLiteral("Good")},
                       {QStringLiteral("author"), QStringLiteral("Plant Builders")},
                       {QStringLiteral("version"), QStringLiteral("1.0.0")}};
    const QJsonObject changed = QJsonDocument::fromJson(changes).object();
    for (auto member = changed.begin(); member != changed.end(); ++member) {
        object.insert(member.key(), member.value());
    }
    return object;
}

/// A row of a library whose metadata differs in these members.
void described(const char *name, const char *reason, const char *changes)
{
    damaged(name, reason, [changes](LibraryImage &image) {
        image.replaceDescription(QCborValue::fromJsonValue(description(changes)));
    });
}

bool makeSocket(const QString &path)
{
    // Its own path may be too long for an address.
    const QByteArray name = QFile::encodeName(QDir::temp().filePath(QStringLiteral("kora-test-socket")));
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, name.constData(), sizeof address.sun_path);
    ::unlink(name.constData());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const bool isMade =
        ::bind(socket, reinterpret_cast<const struct sockaddr *>(&address), sizeof address) == 0;
    ::close(socket);
    return isMade && QFile::rename(QFile::decodeName(name), path);
}

/// Takes root's rights away while it lives.
class AsUser
{
public:
    AsUser()
        : m_user(::geteuid())
        , m_isUser(m_user != 0 || ::seteuid(nobody) == 0)
    {}
    ~AsUser() { m_isUser = ::seteuid(m_user) == 0; }
    Q_DISABLE_COPY_MOVE(AsUser)

    bool isUser() const { return m_isUser; }

private:
    static const uid_t nobody = 65534;
    uid_t m_user;
    bool m_isUser;
};

} // namespace

Q_DECLARE_METATYPE(Placement)

class TestDamagedLibraries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { qApp->setProperty("pluginCalls", QVariant()); }

    void noLibrary_data();
    void noLibrary();
    void unreadableFile();
    void refused_data();
    void refused();
    void wholeImageLoads();
    void emptySegmentMayLieBehindTheEnd();

private:
    void noLibraryFiles();
    void cutOffFiles();
    void wrongHeaders();
    void wrongSections();
    void wrongSegments();
    void wrongMetaDataSections();
    void wrongDescriptions();
    void wrongCode();
    void refuses(const PluginFolders &folders, const QString &reason);
};

// The loader says so, in its log alone: Qt's messages and further lines fail the test. No code of the plugin stays.
void TestDamagedLibraries::refuses(const PluginFolders &folders, const QString &reason)
{
    const QString path = folders.libraryPath(id);
    const QString expected =
        QStringLiteral("critical PLUGIN_LOADING <%1>: Error loading the plugin %1: %2").arg(path, reason);
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(!loader.loadFromPluginPath(path, id));
    QVERIFY(!loader.loadFromDir(folders.path(), {})); // again, as Qt remembers the file
    // The parser of the metadata writes lines of its own.
    QCOMPARE(log.takeTexts().filter(QStringLiteral(" PLUGIN_LOADING ")), (QStringList{expected, expected}));
    QVERIFY(loader.pluginData().isEmpty());
    const QStringList calls = qApp->property("pluginCalls").toStringList();
    QCOMPARE(calls.filter(QStringLiteral("made")).size(), calls.filter(QStringLiteral("deleted")).size());
}

void TestDamagedLibraries::noLibrary_data()
{
    QTest::addColumn<Placement>("place");
    const auto row = [](const char *name, const Placement &place) { QTest::newRow(name) << place; };
    row("nothing", [](const QString &) { return true; });
    row("a folder", [](const QString &path) { return QDir().mkdir(path); });
    row("a pipe", [](const QString &path) { return mkfifo(QFile::encodeName(path).constData(), 0600) == 0; });
    row("a socket", makeSocket);
    row("a link to nothing", [](const QString &path) { return QFile::link(path + QLatin1Char('x'), path); });
    row("a link to itself", [](const QString &path) { return QFile::link(path, path); });
    row("a loop of two links", [](const QString &path) {
        const QString other = path + QLatin1Char('x');
        return QFile::link(other, path) && QFile::link(path, other);
    });
    row("a link to a folder", [](const QString &path) { return QFile::link(QFileInfo(path).path(), path); });
    row("a link to an endless device",
        [](const QString &path) { return QFile::link(QStringLiteral("/dev/zero"), path); });
}

void TestDamagedLibraries::noLibrary()
{
    QFETCH(const Placement, place);
    const PluginFolders folders;
    const QString path = folders.makeFolder(id);
    // Names that Qt would try too.
    for (const char *decoy : {"/liblib%1.so", "/lib%1.so.so", "/liblib%1.so.so", "/%1.so", "/lib%1"}) {
        const QString name = QFileInfo(path).path() + QString::fromLatin1(decoy).arg(id);
        QVERIFY(PluginFolders::writeFile(name, goodLibrary()));
    }
    QVERIFY(place(path));
    refuses(folders, QString::fromLatin1(noIid));
}

void TestDamagedLibraries::unreadableFile()
{
    const PluginFolders folders;
    const QString path = folders.put(id, goodLibrary());
    QVERIFY(QFile::setPermissions(path, QFileDevice::Permissions()));
    QVERIFY(QFile::setPermissions(folders.path(), QFileDevice::Permissions(0x7755)));
    const AsUser user;
    if (!user.isUser()) {
        QSKIP("root may read everything");
    }
    refuses(folders, QString::fromLatin1(noIid));
}

void TestDamagedLibraries::refused_data()
{
    QTest::addColumn<QByteArray>("library");
    QTest::addColumn<QString>("reason");
    noLibraryFiles();
    cutOffFiles();
    wrongHeaders();
    wrongSections();
    wrongSegments();
    wrongMetaDataSections();
    wrongDescriptions();
    wrongCode();
}

void TestDamagedLibraries::noLibraryFiles()
{
    const auto row = [](const char *name, const QByteArray &content) {
        QTest::newRow(name) << content << QString::fromLatin1(noIid);
    };
    row("an empty file", "");
    row("a single byte", "\x7f");
    row("the mark of a library alone", QByteArray(ELFMAG, SELFMAG));
    row("the mark, class and byte order", QByteArray(ELFMAG "\2\1", 6));
    row("a text", "Not a library.\n");
    row("a script", "#!/bin/sh\nexit 1\n");
    row("its metadata file", QJsonDocument(description("{}")).toJson());
    row("an archive of objects", QByteArray("!<arch>\n") + goodLibrary());
    row("a compressed archive", QByteArray("PK\3\4\x14\0\0\0\x08\0", 10) + goodLibrary());
    row("a library for Windows", QByteArray("MZ\x90\0\3\0\0\0", 8) + goodLibrary());
    row("a good library behind a blank", ' ' + goodLibrary());
    row("zeros", QByteArray(goodLibrary().size(), '\0'));
    row("Qt's section alone", LibraryImage(goodLibrary()).metaData());
}

void TestDamagedLibraries::cutOffFiles()
{
    const auto row = [](const char *name, const std::function<quint64(LibraryImage &)> &size) {
        damaged(name, noIid, [&size](LibraryImage &image) { image.truncateAt(size(image)); });
    };
    row("cut off in the identification", [](LibraryImage &) { return EI_NIDENT / 2; });
    row("cut off behind the identification", [](LibraryImage &) { return EI_NIDENT; });
    row("cut off in the header", [](LibraryImage &) { return sizeof(Elf64_Ehdr) - 1; });
    row("cut off behind the header", [](LibraryImage &) { return sizeof(Elf64_Ehdr); });
    row("cut off in the program headers",
        [](LibraryImage &image) { return image.header().e_phoff + sizeof(Elf64_Phdr) + 4; });
    row("cut off in the code", [](LibraryImage &image) { return image.section(".text").sh_offset + 1; });
    row("cut off before the metadata",
        [](LibraryImage &image) { return image.section(".qtmetadata").sh_offset; });
    row("cut off in the metadata", [](LibraryImage &image) {
        return image.section(".qtmetadata").sh_offset + image.section(".qtmetadata").sh_size / 2;
    });
    row("cut off in the dynamic section",
        [](LibraryImage &image) { return image.section(".dynamic").sh_offset + sizeof(Elf64_Dyn) + 1; });
    row("cut off before the section headers", [](LibraryImage &image) { return image.header().e_shoff; });
    row("cut off in the section headers",
        [](LibraryImage &image) { return image.header().e_shoff + 2 * sizeof(Elf64_Shdr) + 1; });
    row("without its last byte",
        [](LibraryImage &image) { return static_cast<quint64>(image.bytes.size()) - 1; });
}

void TestDamagedLibraries::wrongHeaders()
{
    damaged("of 32 bits", noIid, [](LibraryImage &image) { image.header().e_ident[EI_CLASS] = ELFCLASS32; });
    damaged("of no known number of bits", noIid,
            [](LibraryImage &image) { image.header().e_ident[EI_CLASS] = 9; });
    damaged("of the other byte order", noIid,
            [](LibraryImage &image) { image.header().e_ident[EI_DATA] = ELFDATA2MSB; });
    damaged("of no byte order", noIid,
            [](LibraryImage &image) { image.header().e_ident[EI_DATA] = ELFDATANONE; });
    damaged("of a later version of the identification",
            "Cannot load library $: ($: ELF file version ident does not match current one)",
            [](LibraryImage &image) { image.header().e_ident[EI_VERSION] = 9; });
    damaged("of a later version", "Cannot load library $: ($: ELF file version does not match current one)",
            [](LibraryImage &image) { image.header().e_version = 9; });
    damaged("for another system", "Cannot load library $: ($: ELF file OS ABI invalid)",
            [](LibraryImage &image) { image.header().e_ident[EI_OSABI] = ELFOSABI_AIX; });
    damaged("for another processor",
            "Cannot load library $: ($: cannot open shared object file: No such file or directory)",
            [](LibraryImage &image) { image.header().e_machine = EM_S390; });
    damaged("an object file", "Cannot load library $: ($: only ET_DYN and ET_EXEC can be loaded)",
            [](LibraryImage &image) { image.header().e_type = ET_REL; });
    damaged("a memory image", "Cannot load library $: ($: only ET_DYN and ET_EXEC can be loaded)",
            [](LibraryImage &image) { image.header().e_type = ET_CORE; });
    damaged("a program", "Cannot load library $: ($: cannot dynamically load executable)",
            [](LibraryImage &image) { image.header().e_type = ET_EXEC; });
    damaged("program headers of another size",
            "Cannot load library $: ($: ELF file's phentsize not the expected size)",
            [](LibraryImage &image) { image.header().e_phentsize = sizeof(Elf64_Phdr) + 8; });
    damaged("program headers of no size",
            "Cannot load library $: ($: ELF file's phentsize not the expected size)",
            [](LibraryImage &image) { image.header().e_phentsize = 0; });
    damaged("no program headers", "Cannot load library $: ($: object file has no loadable segments)",
            [](LibraryImage &image) { image.header().e_phnum = 0; });
    damaged(
        "program headers behind the end", "Cannot load library $: ($: cannot read file data)",
        [](LibraryImage &image) { image.header().e_phoff = static_cast<quint64>(image.bytes.size()) - 8; });
    damaged("program headers at the end of all addresses",
            "Cannot load library $: ($: object file has no loadable segments)",
            [](LibraryImage &image) { image.header().e_phoff = ~quint64(7); });
    damaged("more program headers than the file holds", "Cannot load library $: ($: cannot read file data)",
            [](LibraryImage &image) { image.header().e_phnum = 0xffff; });
}

// Qt would follow most of these out of the file.
void TestDamagedLibraries::wrongSections()
{
    const auto row = [](const char *name, const Damage &damage) { damaged(name, noIid, damage); };
    row("no section headers", [](LibraryImage &image) { image.header().e_shnum = 0; });
    row("section headers at the start", [](LibraryImage &image) { image.header().e_shoff = 0; });
    row("section headers at an odd place", [](LibraryImage &image) { image.header().e_shoff += 1; });
    row("section headers of which only the first is in the file", [](LibraryImage &image) {
        image.bytes.append(QByteArray(-image.bytes.size() & 7, '\0'));
        image.bytes.append(QByteArray(
            reinterpret_cast<const char *>(&image.section(image.header().e_shstrndx)), sizeof(Elf64_Shdr)));
        image.header().e_shoff = static_cast<quint64>(image.bytes.size()) - sizeof(Elf64_Shdr);
        image.header().e_shstrndx = 0;
    });
    row("section headers at the end of all addresses",
        [](LibraryImage &image) { image.header().e_shoff = ~quint64(63); });
    row("section headers that end at the first address", [](LibraryImage &image) {
        image.header().e_shoff = ~quint64(0) - image.header().e_shstrndx * sizeof(Elf64_Shdr) + 1;
    });
    row("more section headers than the file holds",
        [](LibraryImage &image) { image.header().e_shnum = 0xffff; });
    row("section headers of no size", [](LibraryImage &image) { image.header().e_shentsize = 0; });
    row("section headers that overlap", [](LibraryImage &image) { image.header().e_shentsize = 4; });
    row("section headers of a huge size", [](LibraryImage &image) { image.header().e_shentsize = 0xfffc; });
    row("section names in no section", [](LibraryImage &image) { image.header().e_shstrndx = 0xfffe; });
    row("section names in the code",
        [](LibraryImage &image) { image.header().e_shstrndx = image.header().e_shnum / 2; });
    row("section names behind the end", [](LibraryImage &image) {
        image.section(image.header().e_shstrndx).sh_offset = static_cast<quint64>(image.bytes.size());
    });
    row("section names before the file",
        [](LibraryImage &image) { image.section(image.header().e_shstrndx).sh_offset = ~quint64(0xffff); });
    row("section names that do not end", [](LibraryImage &image) {
        Elf64_Shdr &names = image.section(image.header().e_shstrndx);
        names.sh_size -= 1;
    });
    row("a section name behind the names",
        [](LibraryImage &image) { image.section(".text").sh_name = 0x7fffffff; });
    row("a section name before the file",
        [](LibraryImage &image) { image.section(".text").sh_name = 0xfffffff0; });
    row("no section of Qt", [](LibraryImage &image) { image.replaceText(".qtmetadata", ".qtmetadatA"); });
    row("a section of Qt that takes no room",
        [](LibraryImage &image) { image.section(".qtmetadata").sh_type = SHT_NOBITS; });
    row("an empty section of Qt", [](LibraryImage &image) { image.section(".qtmetadata").sh_size = 0; });
    row("a section of Qt that runs out of the file", [](LibraryImage &image) {
        image.section(".qtmetadata").sh_size = static_cast<quint64>(image.bytes.size());
    });
    row("a section of Qt of all addresses",
        [](LibraryImage &image) { image.section(".qtmetadata").sh_size = ~quint64(0); });
    row("a section of Qt behind the end", [](LibraryImage &image) {
        image.section(".qtmetadata").sh_offset = static_cast<quint64>(image.bytes.size()) + 0x1000;
    });
    row("a section of Qt before the file", [](LibraryImage &image) {
        Elf64_Shdr &section = image.section(".qtmetadata");
        section.sh_offset = ~quint64(0xfff);
        section.sh_size = 0x1000 + 64; // the sum is small
    });
    row("a section of Qt over the code", [](LibraryImage &image) {
        image.section(".qtmetadata").sh_offset = image.section(".text").sh_offset;
    });
    row("a section of Qt that ends within its content",
        [](LibraryImage &image) { image.section(".qtmetadata").sh_size -= 20; });
    row("a section of Qt that begins behind its mark", [](LibraryImage &image) {
        image.section(".qtmetadata").sh_offset += 4;
        image.section(".qtmetadata").sh_size -= 4;
    });
}

void TestDamagedLibraries::wrongSegments()
{
    damaged("a segment behind the end", cutOff, [](LibraryImage &image) {
        image.segment(PT_LOAD, 1).p_offset =
            static_cast<quint64>(image.bytes.size() + 0xfff) & ~quint64(0xfff);
    });
    damaged("a segment that runs out of the file", cutOff, [](LibraryImage &image) {
        image.segment(PT_LOAD, 1).p_filesz = static_cast<quint64>(image.bytes.size()) + 0x10000;
    });
    damaged("a segment of all addresses", cutOff,
            [](LibraryImage &image) { image.segment(PT_LOAD, 1).p_filesz = ~quint64(0); });
    damaged("a segment that needs more memory than there is",
            "Cannot load library $: ($: failed to map segment from shared object)",
            [](LibraryImage &image) { image.segment(PT_LOAD, 3).p_memsz = quint64(1) << 50; });
    damaged("a segment at an address that does not fit its place",
            "Cannot load library $: ($: ELF load command address/offset not page-aligned)",
            [](LibraryImage &image) { image.segment(PT_LOAD, 1).p_vaddr += 8; });
    damaged("no segment that is loaded", "Cannot load library $: ($: object file has no loadable segments)",
            [](LibraryImage &image) {
                for (int i = 0; i < 4; ++i) {
                    image.segment(PT_LOAD).p_type = PT_NULL;
                }
            });
    damaged("no segment for the dynamic loader",
            "Cannot load library $: ($: object file has no dynamic section)",
            [](LibraryImage &image) { image.segment(PT_DYNAMIC).p_type = PT_NULL; });
}

void TestDamagedLibraries::wrongMetaDataSections()
{
    const auto row = [](const char *name, const Damage &damage) { damaged(name, noIid, damage); };
    const auto ofQt = [](const char *name, const char *version, char major, char minor) {
        const QByteArray reason =
            QByteArray("The plugin '$' uses incompatible Qt library. (") + version + ") [release]";
        damaged(name, reason.constData(), [major, minor](LibraryImage &image) {
            image.metaData()[15] = 0; // no debug build
            image.metaData()[13] = major;
            image.metaData()[14] = minor;
        });
    };
    ofQt("for Qt 4", "4.8.0", 4, 8);
    ofQt("for a later Qt 5", "5.99.0", 5, 99);
    ofQt("for Qt 6", "6.0.0", 6, 0);
    row("metadata of another form", [](LibraryImage &image) { image.metaData()[11] = '?'; });
    row("metadata of the form before Qt 5.12", [](LibraryImage &image) { image.metaData()[11] = ' '; });
    row("metadata of a later version of the form", [](LibraryImage &image) { image.metaData()[12] = 1; });
    row("metadata of its mark alone", [](LibraryImage &image) { image.replaceSection("QTMETADATA !"); });
    row("metadata of its header alone", [](LibraryImage &image) { image.replaceCbor({}); });
    row("metadata that ends in its first text",
        [](LibraryImage &image) { image.replaceCbor(hex("a102781b6f7267")); });
    row("metadata with a text whose parts do not end",
        [](LibraryImage &image) { image.replaceCbor(hex("a1027f61616162")); });
    row("metadata with a text in parts that are none",
        [](LibraryImage &image) { image.replaceCbor(hex("a1027f61614162ff")); });
    row("metadata with a tag of nothing", [](LibraryImage &image) { image.replaceCbor(hex("a102c1")); });
    row("metadata with a number that is cut off",
        [](LibraryImage &image) { image.replaceCbor(hex("a1021b0102")); });
    row("metadata with a short value in the long form",
        [](LibraryImage &image) { image.replaceCbor(hex("a102f801")); });
    row("metadata that is no map", [](LibraryImage &image) { image.replaceCbor(hex("83010203")); });
    row("metadata of a reserved kind", [](LibraryImage &image) { image.replaceCbor(hex("ff")); });
    row("metadata with a text that is no text", [](LibraryImage &image) {
        image.replaceCbor(QCborValue(QCborMap{{2, QString::fromLatin1(goodIid())}})
                              .toCbor()
                              .replace("Vako", hex("fffefdfc")));
    });
    row("metadata with a text longer than the file",
        [](LibraryImage &image) { image.replaceCbor(hex("a1027a7fffffff")); });
    row("metadata with a text longer than the memory",
        [](LibraryImage &image) { image.replaceCbor(hex("a1027b00ffffffffffffff")); });
    row("metadata of more members than bytes",
        [](LibraryImage &image) { image.replaceCbor(hex("bb0fffffffffffffff")); });
    row("metadata that nests without end",
        [](LibraryImage &image) { image.replaceCbor(hex("a104") + QByteArray(100000, '\x81')); });
    row("metadata without interface identifier", [](LibraryImage &image) {
        image.replaceMap({{3, QStringLiteral("Good")}});
    });
    row("an empty interface identifier", [](LibraryImage &image) { image.replaceMap({{2, QString()}}); });
    row("a number for interface identifier", [](LibraryImage &image) { image.replaceMap({{2, 5}}); });
    row("empty metadata", [](LibraryImage &image) { image.replaceMap({}); });
    damaged("an interface identifier of the same length", "the IID org.Vako.KORA.%1%2%3Library is not valid",
            [](LibraryImage &image) { image.replaceText(goodIid(), wrongIid); });
    damaged("an interface identifier with a version",
            "the IID org.Vako.KORA.WidgetLibrary/1.0.0 is not valid", [](LibraryImage &image) {
                image.replaceMap({{2, QStringLiteral("org.Vako.KORA.WidgetLibrary/1.0.0")}});
            });
    QTest::newRow("an interface identifier in other case")
        << library(KORA_TEST_LIBRARY_fixture_wrongiid)
        << QStringLiteral("the IID org.vako.kora.widgetlibrary is not valid");
    QTest::newRow("a library that is no Qt plugin")
        << library(KORA_TEST_LIBRARY_fixture_noiid) << QString::fromLatin1(noIid);
}

void TestDamagedLibraries::wrongDescriptions()
{
    damaged("no description", "MetaData attribute not present", [](LibraryImage &image) {
        image.replaceMap({{2, QString::fromLatin1(goodIid())}});
    });
    damaged("a description that is no object", "MetaData attribute not valid", [](LibraryImage &image) {
        image.replaceDescription(QCborArray{1, 2});
    });
    damaged("a description of infinite numbers", "MetaData/version attribute not valid",
            [](LibraryImage &image) {
                QCborMap map = QCborValue::fromJsonValue(description("{}")).toMap();
                map[QStringLiteral("version")] = qInf();
                image.replaceDescription(map);
            });
    described("nothing for author", "MetaData/author attribute not valid", R"({"author": null})");
    described("a number for id", "MetaData/id attribute not valid", R"({"id": 5})");
    described("an id that is a path", "MetaData/id attribute not valid",
              R"({"id": "0a5e9c10-0000-4000-8000-000000000001/../../x"})");
    described("an id that is no UUID", "MetaData/id attribute not valid", R"({"id": "Good"})");
    described("another id than the folder's",
              "the id 0a5e9c10-0000-4000-8000-000000000002 is not equal to the folder name "
              "0a5e9c10-0000-4000-8000-000000000001",
              R"({"id": "0a5e9c10-0000-4000-8000-000000000002"})");
    described("an id in other case",
              "the id 0A5E9C10-0000-4000-8000-000000000001 is not equal to the folder name "
              "0a5e9c10-0000-4000-8000-000000000001",
              R"({"id": "0A5E9C10-0000-4000-8000-000000000001"})");
    described("an array of one text for name", "MetaData/name attribute not valid", R"({"name": ["Good"]})");
    described("a version of two numbers", "MetaData/version attribute not valid", R"({"version": "1.0"})");
    described("a language that is no code", "MetaData/translation attribute is not valid",
              R"({"translation": ["italiano"]})");
    described("an object of widgets", "MetaData/widgets attribute is not valid", R"({"widgets": {}})");
    described("a widget without version", "MetaData/widgets/version attribute is not present",
              R"({"widgets": [{"id": "gauge"}]})");
    described("a widget of no size", "MetaData/widgets/defaultSize attribute is not valid",
              R"({"widgets": [{"id": "gauge", "version": "1.0.0", "defaultSize": "wide"}]})");
    described(
        "a field of no known type", "MetaData/widgets/fields/type attribute is not valid",
        R"({"widgets": [{"id": "gauge", "version": "1.0.0", "fields": [{"id": "a", "type": "int", "display": "A"}]}]})");
    described(
        "a requirement of a field that is not there",
        "MetaData/widgets/fields/requirements attribute is not valid",
        R"({"widgets": [{"id": "gauge", "version": "1.0.0", "fields": [{"id": "a", "type": "bool", "display": "A",
                  "requirements": "b==1"}]}]})");
    QTest::newRow("a description as moc wrote it")
        << library(KORA_TEST_LIBRARY_fixture_badmetadata)
        << QStringLiteral("MetaData/widgets/version attribute is not present");
}

// These are refused before, or at the end of, the little code that runs.
void TestDamagedLibraries::wrongCode()
{
    QTest::newRow("a function that no library has")
        << library(KORA_TEST_LIBRARY_fixture_unresolvedsymbol)
        << QStringLiteral("Cannot load library $: ($: undefined symbol: koraFixtureMissingFunction)");
    Dl_info qt = {}; // its path differs between processors
    QVERIFY(::dladdr(reinterpret_cast<const void *>(&qVersion), &qt));
    const QByteArray noSuchQt = QByteArray("Cannot load library $: (") + qt.dli_fname
                                + ": version `Qt_5.99' not found (required by $))";
    if (goodLibrary().contains("qt_version_tag")) { // Qt ties its version to what GCC compiles
        damaged("a function that this Qt lacks",
                "Cannot load library $: ($: undefined symbol: qt_version_taG, version Qt_5.15)",
                [](LibraryImage &image) { image.replaceText("qt_version_tag", "qt_version_taG"); });
        damaged("a Qt that is not there", noSuchQt.constData(),
                [](LibraryImage &image) { image.replaceText("Qt_5.15", "Qt_5.99"); });
    }
    damaged("a library that is not there",
            "Cannot load library $: (libQt5Cure.so.5: cannot open shared object file: No such file or "
            "directory)",
            [](LibraryImage &image) { image.replaceText("libQt5Core.so.5", "libQt5Cure.so.5"); });
    QTest::newRow("a class that does not name its interface")
        << library(KORA_TEST_LIBRARY_fixture_nointerface) << QStringLiteral("invalid interface");
    const auto hostile = [](const char *name, const char *fault, const char *reason) {
        LibraryImage image(library(KORA_TEST_LIBRARY_fixture_hostile));
        image.setFault(fault);
        QTest::newRow(name) << image.bytes << QString::fromLatin1(reason);
    };
    hostile("a root object that is no plugin", "root stranger", "invalid interface");
    hostile("no root object", "root null", "Unknown error");
    damaged("an interface of another version", "invalid interface", [](LibraryImage &image) {
        image.replaceText("org.Vako.KORA.WidgetLibrary/1.0.0", "org.Vako.KORA.WidgetLibrary/2.0.0");
    });
    damaged("no function for the root object", "Unknown error",
            [](LibraryImage &image) { image.replaceText("qt_plugin_instance", "qt_plugin_instancE"); });
}

void TestDamagedLibraries::refused()
{
    QFETCH(const QByteArray, library);
    QFETCH(QString, reason);
    // Qt puts this text together by a chain of QString::arg() itself.
    const bool isChain = reason.contains(QLatin1String("uses incompatible Qt library"));
    const PluginFolders folders(isChain ? QStringLiteral("kora") : QStringLiteral("kora %1%2%3"));
    const QString path = folders.put(id, library);
    QVERIFY(!path.isEmpty());
    refuses(folders, reason.replace(QLatin1Char('$'), path));
}

// So that the rows above fail for what they change.
void TestDamagedLibraries::wholeImageLoads()
{
    LibraryImage image(goodLibrary());
    image.replaceDescription(QCborValue::fromJsonValue(description("{}")));
    const PluginFolders folders;
    const QString path = folders.put(id, image.bytes);
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromPluginPath(path, id));
    QCOMPARE(log.takeMessages(),
             QStringList{QStringLiteral("Plugin %1 (v1.0.0) loaded, author Plant Builders").arg(id)});
}

// As linkers leave the segment of data that begins as zeros when the file is stripped.
void TestDamagedLibraries::emptySegmentMayLieBehindTheEnd()
{
    LibraryImage image(goodLibrary());
    constexpr quint64 page = 0x10000;
    const quint64 behind = (static_cast<quint64>(image.bytes.size()) / page + 2) * page;
    Elf64_Phdr &segment = image.segment(PT_GNU_EH_FRAME);
    segment = {PT_LOAD, PF_R | PF_W, behind, 64 * page, 64 * page, 0, 0, page};
    const PluginFolders folders;
    const QString path = folders.put(id, image.bytes);
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromPluginPath(path, id));
    QCOMPARE(log.takeMessages().size(), 1);
}

KORA_TEST_MAIN(TestDamagedLibraries)

#include "tst_damagedlibraries.moc"
