// SPDX-License-Identifier: Apache-2.0
#include "support/generator.h"
#include "support/program.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/loader/plugindata.h>
#include <kora/loader/pluginloader.h>
#include <kora/runtime/widgetlibraryplugin.h>

#include <libxml/xmlwriter.h>

#include <vector>

using namespace KORA::INTERNAL;

namespace {

const QString language = QStringLiteral("en-US");

const WidgetLibraryPluginMetaInformation &library()
{
    static const WidgetLibraryPluginMetaInformation info = [] {
        WidgetLibraryPluginMetaInformation result;
        WidgetLibraryPluginUtils::metaInformationFromMetaData(pluginMetaData({untranslatedId, 100, 10}),
                                                              result);
        return result;
    }();
    return info;
}

int writeProperties(QXmlStreamWriter &writer)
{
    writer.writeStartElement(QStringLiteral("defs"));
    const int code =
        WidgetLibraryPluginUtils::studioPropertiesFromMetaInformation(library(), writer, language);
    writer.writeEndElement();
    return code;
}

int writeDefaults(QXmlStreamWriter &writer)
{
    return WidgetLibraryPluginUtils::studioDefaultsFromMetaInformation(
        library(), writer, language, QStringLiteral("gallery_page_%1.krx"),
        QStringLiteral("project_gallery_page_%1.krx"));
}

int writeGallery(QXmlStreamWriter &writer)
{
    return WidgetLibraryPluginUtils::studioGalleryFromMetaInformation(
        library(), writer, language, library().pageWidgetsGalleryGroups().first(),
        WidgetLibraryPluginUtils::PageGallery);
}

template<int (*generate)(QXmlStreamWriter &)>
QByteArray documentOf()
{
    QByteArray document;
    QXmlStreamWriter writer(&document);
    writer.setAutoFormatting(true);
    return generate(writer) == 0 && !writer.hasError() ? document : QByteArray();
}

/// The elements of a document, ready to be written again as they are.
class Recording
{
public:
    explicit Recording(const QByteArray &document)
    {
        QXmlStreamReader reader(document);
        while (!reader.atEnd()) {
            const auto token = reader.readNext();
            if (token == QXmlStreamReader::StartElement) {
                m_steps.push_back({token, reader.name().toString(), attributesOf(reader)});
            } else if (token == QXmlStreamReader::EndElement) {
                m_steps.push_back({token, {}, {}});
            } else if (token == QXmlStreamReader::Characters && !reader.isWhitespace()) {
                m_steps.push_back({token, reader.text().toString(), {}});
            }
        }
    }

    void writeTo(QXmlStreamWriter &writer) const
    {
        for (const Step &step : m_steps) {
            if (step.token == QXmlStreamReader::StartElement) {
                writer.writeStartElement(step.text);
                for (const auto &attribute : step.attributes) {
                    writer.writeAttribute(attribute.first, attribute.second);
                }
            } else if (step.token == QXmlStreamReader::EndElement) {
                writer.writeEndElement();
            } else {
                writer.writeCharacters(step.text);
            }
        }
    }

    void writeTo(xmlTextWriterPtr writer) const
    {
        for (const Step &step : m_steps) {
            if (step.token == QXmlStreamReader::StartElement) {
                xmlTextWriterStartElement(writer, utf8(step.text));
                for (const auto &attribute : step.attributes) {
                    xmlTextWriterWriteAttribute(writer, utf8(attribute.first), utf8(attribute.second));
                }
            } else if (step.token == QXmlStreamReader::EndElement) {
                xmlTextWriterEndElement(writer);
            } else {
                xmlTextWriterWriteString(writer, utf8(step.text));
            }
        }
    }

private:
    using Attributes = std::vector<std::pair<QString, QString>>;

    struct Step
    {
        QXmlStreamReader::TokenType token;
        QString text;
        Attributes attributes;
    };

    static Attributes attributesOf(const QXmlStreamReader &reader)
    {
        Attributes result;
        for (const QXmlStreamAttribute &attribute : reader.attributes()) {
            result.emplace_back(attribute.name().toString(), attribute.value().toString());
        }
        return result;
    }

    // libxml2's own form of text: what a program that uses it has anyway.
    const xmlChar *utf8(const QString &text) const
    {
        QByteArray &known = m_utf8[text];
        if (known.isNull()) {
            known = text.toUtf8();
        }
        return reinterpret_cast<const xmlChar *>(known.constData());
    }

    std::vector<Step> m_steps;
    mutable QHash<QString, QByteArray> m_utf8;
};

// A document to memory --------------------------------------------------------------------------------------

template<int (*generate)(QXmlStreamWriter &)>
void documentOurs(benchmark::State &state)
{
    if (require(state, documentOf<generate>().size() > 500, "no document")) {
        measure(state, [] { benchmark::DoNotOptimize(documentOf<generate>()); });
    }
}

template<int (*generate)(QXmlStreamWriter &)>
void documentQt(benchmark::State &state)
{
    const QByteArray expected = documentOf<generate>();
    const Recording recording(expected);
    const auto write = [&] {
        QByteArray document;
        QXmlStreamWriter writer(&document);
        writer.setAutoFormatting(true);
        recording.writeTo(writer);
        return document;
    };
    if (require(state, write() == expected, "another document")) {
        measure(state, [&] { benchmark::DoNotOptimize(write()); });
    }
}

// The files of a library ------------------------------------------------------------------------------------

/// A loader with one library, and a folder for its documents.
struct OneLibrary
{
    OneLibrary()
    {
        isLoaded = loader.loadFromPluginPath(QStringLiteral(KORA_BENCHMARK_LARGE_PLUGIN), QString())
                   && loader.init();
        folder = isLoaded ? dir.filePath(loader.pluginData().firstKey()) : QString();
    }

    bool generate()
    {
        return QDir(folder).removeRecursively() && loader.generateStudioExtraResources(dir.path(), language);
    }

    PluginLoader loader;
    QTemporaryDir dir;
    QString folder;
    bool isLoaded;
};

/// The files of a folder as they were generated, written again.
class Files
{
public:
    explicit Files(const QString &folder)
        : m_folder(folder)
    {
        for (const QString &name : QDir(folder).entryList(QDir::Files)) {
            const QByteArray content = contentOf(name);
            m_files.push_back({name, content, Recording(content)});
        }
    }

    bool isEmpty() const { return m_files.empty(); }

    bool areOnDisk() const
    {
        return std::all_of(m_files.begin(), m_files.end(),
                           [this](const OneFile &file) { return contentOf(file.name) == file.content; });
    }

    template<typename Write>
    void writeAll(Write write) const
    {
        QDir(m_folder).removeRecursively();
        QDir().mkpath(m_folder);
        for (const OneFile &file : m_files) {
            write(m_folder + QLatin1Char('/') + file.name, file.recording);
        }
    }

private:
    struct OneFile
    {
        QString name;
        QByteArray content;
        Recording recording;
    };

    QByteArray contentOf(const QString &name) const
    {
        QFile file(m_folder + QLatin1Char('/') + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString m_folder;
    std::vector<OneFile> m_files;
};

void filesOurs(benchmark::State &state)
{
    OneLibrary library;
    if (require(state, library.isLoaded && library.generate() && !Files(library.folder).isEmpty(),
                "no files")) {
        measure(state, [&] { benchmark::DoNotOptimize(library.generate()); });
    }
}

void writeWithQt(const QString &path, const Recording &recording)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    QXmlStreamWriter writer(&file);
    writer.setAutoFormatting(true);
    recording.writeTo(writer);
}

void filesQt(benchmark::State &state)
{
    OneLibrary library;
    const bool isGenerated = library.isLoaded && library.generate();
    const Files files(library.folder);
    files.writeAll(writeWithQt);
    if (require(state, isGenerated && !files.isEmpty() && files.areOnDisk(), "other files")) {
        measure(state, [&] { files.writeAll(writeWithQt); });
    }
}

void writeWithLibxml(const QString &path, const Recording &recording)
{
    xmlTextWriterPtr writer = xmlNewTextWriterFilename(path.toUtf8().constData(), 0);
    xmlTextWriterSetIndent(writer, 1);
    xmlTextWriterSetIndentString(writer, reinterpret_cast<const xmlChar *>("    "));
    recording.writeTo(writer);
    xmlTextWriterEndDocument(writer);
    xmlFreeTextWriter(writer);
}

// Quotes differ in how they are escaped, so the files are compared by their sizes: within a tenth.
void filesLibxml(benchmark::State &state)
{
    OneLibrary library;
    const bool isGenerated = library.isLoaded && library.generate();
    const Files files(library.folder);
    const QString properties = library.folder + QStringLiteral("/studio_properties.xml");
    const qint64 size = QFileInfo(properties).size();
    files.writeAll(writeWithLibxml);
    const qint64 written = QFileInfo(properties).size();
    if (require(state, isGenerated && written > size * 9 / 10 && written < size * 11 / 10, "other files")) {
        measure(state, [&] { files.writeAll(writeWithLibxml); });
    }
}

} // namespace

int main(int argc, char **argv)
{
    Program program(argc, argv);
    program.add("properties/ours", documentOurs<writeProperties>);
    program.add("properties/qt", documentQt<writeProperties>);
    program.add("defaults/ours", documentOurs<writeDefaults>);
    program.add("defaults/qt", documentQt<writeDefaults>);
    program.add("gallery/ours", documentOurs<writeGallery>);
    program.add("gallery/qt", documentQt<writeGallery>);
    program.add("files/ours", filesOurs);
    program.add("files/qt", filesQt);
    program.add("files/libxml2", filesLibxml);
    return program.run();
}
