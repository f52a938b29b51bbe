// SPDX-License-Identifier: Apache-2.0
#include <support/filesizelimit.h>
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>

#include <kora/core/files_p.h>
#include <kora/loader/pluginloader.h>

#include <cerrno>
#include <sys/stat.h>

using KORA::INTERNAL::PluginLoader;
using Index = QMap<QString, PluginLoader::ExtraResourceData>;

namespace {

constexpr int mostBytes = 1024;
const QString idA = QStringLiteral("11111111-2222-4333-8444-555555555555");
const QString idB = QStringLiteral("a1111111-2222-4333-8444-555555555555");

PluginLoader::ExtraResourceData record(const QString &language)
{
    return {QDateTime(QDate(2024, 5, 17), QTime(9, 3, 11, 123)), language, QStringLiteral("1.1.0")};
}

QByteArray element(const QByteArray &id, const QByteArray &modification = "2024-05-17T09:03:11.123",
                   const QByteArray &version = "1.1.0")
{
    return R"({"id":")" + id + R"(","modification":")" + modification
           + R"(","languageId":"en-US","libraryVersion":")" + version + R"("})";
}

QByteArray indexOf(const QByteArray &elements)
{
    return R"({"extraResourceInfo":[)" + elements + "]}";
}

QString textOf(const Index &index)
{
    QStringList lines;
    for (auto entry = index.constBegin(); entry != index.constEnd(); ++entry) {
        lines.append(QStringList{entry.key(), entry->modification.toString(Qt::ISODateWithMs),
                                 entry->languageId, entry->libraryVersion}
                         .join(QLatin1Char(' ')));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

class ResourceIndexTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void writtenIndexReadsBack();
    void missingFileLeavesTheMap();
    void acceptedContents_data();
    void acceptedContents();
    void refusedContents_data();
    void refusedContents();
    void whatIsNoFileIsNeverOpened_data();
    void whatIsNoFileIsNeverOpened();
    void unwritableIndex_data();
    void unwritableIndex();
    void fullDiskKeepsTheOldIndex_data();
    void fullDiskKeepsTheOldIndex();
    void fullDiskIsTheReason_data();
    void fullDiskIsTheReason();

private:
    void write(const QByteArray &bytes) const;
    QByteArray read() const;

    QScopedPointer<QTemporaryDir> m_dir;
    QString m_path;
};

void ResourceIndexTest::init()
{
    m_dir.reset(new QTemporaryDir);
    m_path = m_dir->filePath(QStringLiteral("index.json"));
}

void ResourceIndexTest::write(const QByteArray &bytes) const
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QByteArray ResourceIndexTest::read() const
{
    QFile file(m_path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void ResourceIndexTest::writtenIndexReadsBack()
{
    const Index index{{idB, record(QStringLiteral("it-IT"))}, {idA, record(QStringLiteral("en-US"))}};
    QVERIFY(PluginLoader::writeExtraResourcesIndexFile(m_path, index));
    const QByteArray bytes = read();
    QVERIFY(bytes.indexOf(idA.toUtf8()) < bytes.indexOf(idB.toUtf8()));
    QVERIFY(bytes.contains("\"modification\": \"2024-05-17T09:03:11.123\""));
    QCOMPARE(bytes, QJsonDocument::fromJson(bytes).toJson());
    Index again;
    QVERIFY(PluginLoader::readExtraResourcesIndexFile(m_path, again));
    QCOMPARE(textOf(again), textOf(index));
    QVERIFY(PluginLoader::writeExtraResourcesIndexFile(m_path, again));
    QCOMPARE(read(), bytes);
    QVERIFY(PluginLoader::writeExtraResourcesIndexFile(m_path, {}));
    QCOMPARE(read(), QJsonDocument::fromJson(read()).toJson());
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{QStringLiteral("index.json")});
}

void ResourceIndexTest::missingFileLeavesTheMap()
{
    Index index{{idA, record(QStringLiteral("en-US"))}};
    QVERIFY(PluginLoader::readExtraResourcesIndexFile(m_path, index));
    QVERIFY(PluginLoader::readExtraResourcesIndexFile(QString(), index));
    QCOMPARE(index.keys(), QStringList{idA});
}

void ResourceIndexTest::acceptedContents_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("index");

    QTest::newRow("no member") << QByteArray("{}") << QString();
    QTest::newRow("empty array") << indexOf("") << QString();
    QTest::newRow("other members are ignored; the version is normalised")
        << QByteArray(R"({"other":1,)")
               + indexOf(element(idA.toUtf8(), "2024-05-17T09:03:11.123", "01.1.0")).mid(1)
        << idA + QStringLiteral(" 2024-05-17T09:03:11.123 en-US 1.1.0");
}

void ResourceIndexTest::acceptedContents()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, index);
    write(content);
    Index actual{{idB, record(QStringLiteral("en-US"))}};
    QVERIFY(PluginLoader::readExtraResourcesIndexFile(m_path, actual));
    QCOMPARE(textOf(actual), index);
}

void ResourceIndexTest::refusedContents_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message"); // %1 is the path

    const QByteArray a = idA.toUtf8();
    const auto row = [](const char *name, const QByteArray &content, const char *message) {
        QTest::newRow(name) << content << QString::fromUtf8(message);
    };
    row("empty", "", "%1:0: error 5 -> illegal value");
    row("cut off", "{\"extraResourceInfo\":[", "%1:22: error 3 -> unterminated array");
    row("array", "[]", "%1 must contains a json object");
    row("member is an object", R"({"extraResourceInfo":{}})", "extraResourceInfo is not an array");
    row("member is null", R"({"extraResourceInfo":null})", "extraResourceInfo is not an array");
    row("element is a text", indexOf("\"x\""), "extraResourceInfo is not an array of objects");
    row("key missing", indexOf(R"({"id":")" + a + R"("})"),
        "One or more extraResourceInfo elements are invalid");
    row("key is a number", indexOf(element(a).replace("\"en-US\"", "5")),
        "One or more extraResourceInfo elements are invalid");
    row("id with a way out of the folder", indexOf(element(a + "/../../x")),
        "extraResourceInfo element with id 11111111-2222-4333-8444-555555555555/../../x is invalid");
    row("id in braces", indexOf(element("{" + a + "}")),
        "extraResourceInfo element with id {11111111-2222-4333-8444-555555555555} is invalid");
    row("id twice", indexOf(element(a) + "," + element(a)),
        "extraResourceInfo element with id 11111111-2222-4333-8444-555555555555 is duplicated");
    row("no time", indexOf(element(a, "yesterday")),
        "extraResourceInfo element with id 11111111-2222-4333-8444-555555555555 has an invalid "
        "\"modification\" time");
    row("no version; the message names it", indexOf(element(a, "2024-05-17T09:03:11.123", "1.1")),
        "extraResourceInfo element with id 1.1 has an invalid \"libraryVersion\"");
}

void ResourceIndexTest::refusedContents()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, message);
    write(content);
    LogRecorder log;
    Index index{{idB, record(QStringLiteral("en-US"))}};
    QVERIFY(!PluginLoader::readExtraResourcesIndexFile(m_path, index));
    const QString expected = message.startsWith(QLatin1String("%1")) ? message.arg(m_path) : message;
    QCOMPARE(log.takeTexts(), QStringList{QStringLiteral("critical RESOURCES_GENERATION <>: ") + expected});
    QCOMPARE(index.keys(), QStringList{idB});
}

void ResourceIndexTest::whatIsNoFileIsNeverOpened_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("folder") << QStringLiteral("folder");
    QTest::newRow("pipe") << QStringLiteral("pipe");
    QTest::newRow("link to an endless device") << QStringLiteral("/dev/zero");
}

void ResourceIndexTest::whatIsNoFileIsNeverOpened()
{
    QFETCH(const QString, kind);
    if (kind == QLatin1String("folder")) {
        QVERIFY(QDir().mkpath(m_path + QStringLiteral("/with/content")));
    } else if (kind == QLatin1String("pipe")) {
        QCOMPARE(mkfifo(qPrintable(m_path), 0600), 0);
    } else {
        QVERIFY(QFile::link(kind, m_path));
    }
    LogRecorder log;
    Index index;
    QVERIFY(!PluginLoader::readExtraResourcesIndexFile(m_path, index));
    QCOMPARE(log.takeMessages(), (QStringList{QStringLiteral("Index %1 is not a file").arg(m_path),
                                              QStringLiteral("%1 opening error").arg(m_path)}));
    QVERIFY(PluginLoader::writeExtraResourcesIndexFile(m_path, index));
    QCOMPARE(log.takeMessages(),
             QStringList{QStringLiteral("Index %1 is not a file. Will be deleted").arg(m_path)});
    QVERIFY(PluginLoader::readExtraResourcesIndexFile(m_path, index));
    QVERIFY(!QFileInfo(m_path).isSymLink());
}

void ResourceIndexTest::unwritableIndex_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no path") << QString();
    QTest::newRow("no such folder") << QStringLiteral("/nonexistent/%1/index.json");
    QTest::newRow("NUL in the path") << QString(QChar::Null);
}

void ResourceIndexTest::unwritableIndex()
{
    QFETCH(const QString, path);
    LogRecorder log;
    QVERIFY(!PluginLoader::writeExtraResourcesIndexFile(path, {}));
    QCOMPARE(log.takeMessages(), QStringList{path + QStringLiteral(" opening error")});
}

void ResourceIndexTest::fullDiskKeepsTheOldIndex_data()
{
    QTest::addColumn<int>("entries");
    QTest::newRow("in one write") << 20;
    QTest::newRow("beyond the buffer") << 400;
}

void ResourceIndexTest::fullDiskKeepsTheOldIndex()
{
    QFETCH(const int, entries);
    const QByteArray old = indexOf(element(idA.toUtf8()));
    write(old);
    Index index;
    for (int i = 0; i < entries; ++i) {
        index.insert(QString::number(i), record(QStringLiteral("en-US")));
    }
    bool written = true;
    QStringList messages;
    {
        LogRecorder log;
        const FileSizeLimit limit(mostBytes);
        written = PluginLoader::writeExtraResourcesIndexFile(m_path, index);
        messages = log.takeMessages();
    }
    QVERIFY(!written);
    QCOMPARE(messages, QStringList{QStringLiteral("%1 writing error").arg(m_path)});
    QCOMPARE(read(), old);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{QStringLiteral("index.json")});
}

void ResourceIndexTest::fullDiskIsTheReason_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("a byte too much") << mostBytes + 1;
    QTest::newRow("in the buffer") << 8000;
    QTest::newRow("beyond the buffer") << 40000;
}

void ResourceIndexTest::fullDiskIsTheReason()
{
    QFETCH(const int, size);
    write("old");
    QString reason;
    bool isReplaced = true;
    {
        const FileSizeLimit limit(mostBytes);
        isReplaced = KORA::INTERNAL::replaceFile(m_path, QByteArray(size, 'x'), reason);
    }
    QVERIFY(!isReplaced);
    QCOMPARE(reason, qt_error_string(EFBIG));
    QCOMPARE(read(), QByteArray("old"));
}

KORA_TEST_MAIN(ResourceIndexTest)

#include "tst_resourceindex.moc"
