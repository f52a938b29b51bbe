// SPDX-License-Identifier: Apache-2.0
//
// The design tool's four documents of whatever metadata passes: what is written without an error reads back equal.
#include "../fuzztarget.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <functional>

#include <kora/core/widgetlibrarypluginutils.h>

using namespace KORA::INTERNAL;

namespace {

using Utils = WidgetLibraryPluginUtils;

// Reads a document token by token and writes each again.
QByteArray writtenAgain(const QByteArray &document)
{
    QByteArray copy;
    QXmlStreamWriter writer(&copy);
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token != QXmlStreamReader::StartDocument && token != QXmlStreamReader::EndDocument
            && token != QXmlStreamReader::Invalid) {
            writer.writeCurrentToken(reader);
        }
    }
    expect(!reader.hasError(), qPrintable(QStringLiteral("unreadable: ") + reader.errorString()));
    return copy;
}

// The same document as a reader sees it: line ends are line feeds, and an empty text is none.
QByteArray asRead(const QByteArray &document)
{
    static const QRegularExpression empty(QStringLiteral("<(\\w+)((?: [^<>]*[^/<>])?)></\\1>"));
    QString text = QString::fromUtf8(document).replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text.replace(empty, QStringLiteral("<\\1\\2/>")).toUtf8();
}

void checkDocument(const std::function<int(QXmlStreamWriter &)> &write)
{
    for (const bool isFormatted : {false, true}) {
        QByteArray document;
        QXmlStreamWriter writer(&document);
        writer.setAutoFormatting(isFormatted);
        writer.writeStartElement(QStringLiteral("root"));
        const int code = write(writer);
        writer.writeEndElement();
        expect(code == 0, "valid metadata without documents");
        if (writer.hasError()) {
            return; // the text holds what XML cannot; a run writes no file then
        }
        const QByteArray copy = writtenAgain(document);
        expect(isFormatted || copy == asRead(document), "a document reads back as another");
    }
}

} // namespace

KORA_FUZZ_TARGET(documents)
{
    WidgetLibraryPluginMetaInformation info;
    if (Utils::metaInformationFromMetaData(jsonObject(input), info) != 0) {
        return;
    }
    const QString language = info.defaultLanguage();
    checkDocument([&](QXmlStreamWriter &writer) {
        return Utils::studioPropertiesFromMetaInformation(info, writer, language);
    });
    checkDocument([&](QXmlStreamWriter &writer) {
        return Utils::studioDefaultsFromMetaInformation(info, writer, language, QStringLiteral("page_%1.krx"),
                                                        QStringLiteral("project_%1.krx"));
    });
    for (const auto type : {Utils::PageGallery, Utils::ProjectGallery}) {
        auto groups =
            type == Utils::PageGallery ? info.pageWidgetsGalleryGroups() : info.projectWidgetsGalleryGroups();
        groups.prepend({});
        for (const auto &group : qAsConst(groups)) {
            checkDocument([&](QXmlStreamWriter &writer) {
                return Utils::studioGalleryFromMetaInformation(info, writer, language, group, type);
            });
        }
    }
}
