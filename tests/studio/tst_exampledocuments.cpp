// SPDX-License-Identifier: Apache-2.0
#include <studio/golden.h>
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>

#include <kora/loader/pluginloader.h>

using KORA::INTERNAL::PluginLoader;

/// The example library's documents, from its library file to the files that the design tool reads.
class ExampleDocumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentsEqualTheReferences_data();
    void documentsEqualTheReferences();
};

void ExampleDocumentsTest::documentsEqualTheReferences_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"en-US", "it-IT", "de-DE"}) {
        QTest::newRow(language) << QString::fromLatin1(language);
    }
}

void ExampleDocumentsTest::documentsEqualTheReferences()
{
    QFETCH(const QString, language);
    const QTemporaryDir dir;
    LogRecorder log;
    PluginLoader loader;
    QVERIFY(loader.loadFromPluginPath(QStringLiteral(KORA_TEST_LIBRARY_plant), {}));
    QVERIFY(loader.init());
    log.takeLines();
    QVERIFY(loader.generateStudioExtraResources(dir.path(), language));

    const QDir documents(dir.filePath(loader.pluginData().firstKey()));
    const QString golden = QStringLiteral("plant/%1/").arg(language);
    const QStringList names = documents.entryList(QDir::Files);
    QVERIFY(names.contains(QStringLiteral("gallery_page_0.krx")));
    QString differences;
    for (const QString &name : names) {
        QFile file(documents.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray document = file.readAll();
        differences += differenceFromGolden(golden + name, document);
        QXmlStreamReader reader(document);
        while (!reader.atEnd()) {
            reader.readNext();
        }
        QVERIFY2(!reader.hasError(), qPrintable(name + QLatin1String(": ") + reader.errorString()));
    }
    QVERIFY2(differences.isEmpty(), qPrintable(differences));
    QCOMPARE(namesOfGolden(golden), names);
}

KORA_TEST_MAIN(ExampleDocumentsTest)

#include "tst_exampledocuments.moc"
