// SPDX-License-Identifier: Apache-2.0
#include <kora/core/widgetlibrarypluginutils.h>

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <kora/core/metadataerror_p.h>
#include <kora/loader/studio/gallerygroups_p.h>
#include <kora/loader/studio/xmlelement_p.h>

namespace KORA {
namespace INTERNAL {

namespace {

QString panelFont()
{
    return QStringLiteral("Roboto");
}

/// The link from a text of the page's text table to the place that shows it. The name is the design tool's.
struct _MLLinkInfo
{
    _MLLinkInfo() = default;
    _MLLinkInfo(const QString &widgetId, const QString &attribute, int textId, int second,
                const TranslationStringType &text, QString label, QString tooltip, int idx, bool isItemText)
        : widgetId(widgetId)
        , attribute(attribute)
        , textId(textId)
        , second(second)
        , text(text)
        , label(std::move(label))
        , tooltip(std::move(tooltip))
        , idx(idx)
        , isItemText(isItemText)
    {}

    QString widgetId;
    QString attribute; // the field id; for an item "text" or "tooltip"
    int textId = 0;    // the number in the text table
    int second = 0;    // position in a string list or index in a string map, else 0
    TranslationStringType text;
    QString label;   // of the gallery item
    QString tooltip; // of the gallery item
    int idx = 0;     // of the gallery item
    bool isItemText = false;
};

using Links = QVector<_MLLinkInfo>;

/// The widgets of one gallery page and the links of their texts. Items count from 1 and have two texts each,
/// numbered 2 * item - 1 and 2 * item; the fields' texts follow.
class GalleryTexts
{
public:
    GalleryTexts(const QVector<WidgetMetaInformation> &widgets, const QString &languageId);

    const Links &itemLinks() const { return m_itemLinks; }
    /// The links of all texts, by text number.
    Links allLinks() const { return m_itemLinks + m_fieldLinks; }
    /// The links of the fields of one widget; those of a field stand together.
    Links fieldLinks(int widget) const;

private:
    void addItem(const WidgetMetaInformation &widget, int item, const QString &languageId);
    void addFields(const WidgetMetaInformation &widget, int item);

    Links m_itemLinks;
    Links m_fieldLinks;
    QVector<int> m_firstFieldLink; // of each widget, and the end
};

GalleryTexts::GalleryTexts(const QVector<WidgetMetaInformation> &widgets, const QString &languageId)
{
    for (int i = 0; i < widgets.size(); ++i) {
        addItem(widgets.at(i), i + 1, languageId);
        m_firstFieldLink.append(m_fieldLinks.size());
        addFields(widgets.at(i), i + 1);
    }
    m_firstFieldLink.append(m_fieldLinks.size());
    const int firstFieldText = 2 * widgets.size() + 1;
    for (_MLLinkInfo &link : m_fieldLinks) {
        link.textId += firstFieldText;
    }
}

void GalleryTexts::addItem(const WidgetMetaInformation &widget, int item, const QString &languageId)
{
    const QString label = widget.display().get(languageId, true);
    const QString tooltip = widget.description().get(languageId, true);
    m_itemLinks.append(_MLLinkInfo(widget.id(), QStringLiteral("text"), 2 * item - 1, 0, widget.display(),
                                   label, tooltip, item, true));
    m_itemLinks.append(_MLLinkInfo(widget.id(), QStringLiteral("tooltip"), 2 * item, 0, widget.description(),
                                   label, tooltip, item, false));
}

void GalleryTexts::addFields(const WidgetMetaInformation &widget, int item)
{
    const auto fields = widget.fields();
    for (const FieldMetaInformation &field : fields) {
        if (!field.isMultiLanguageText()) {
            continue;
        }
        const auto texts = field.defaultTexts();
        for (auto text = texts.constBegin(); text != texts.constEnd(); ++text) {
            m_fieldLinks.append(_MLLinkInfo(widget.id(), field.id(), m_fieldLinks.size(), text.key(),
                                            text.value(), QString(), QString(), item, false));
        }
    }
}

Links GalleryTexts::fieldLinks(int widget) const
{
    const int first = m_firstFieldLink.at(widget);
    return m_fieldLinks.mid(first, m_firstFieldLink.at(widget + 1) - first);
}

// Each language of the links' texts once, in the order in which they are met.
QStringList languagesOf(const Links &links)
{
    QStringList languages;
    for (const _MLLinkInfo &link : links) {
        const QMap<QString, QString> &texts = link.text.translations();
        for (auto text = texts.constBegin(); text != texts.constEnd(); ++text) {
            if (!languages.contains(text.key())) {
                languages.append(text.key());
            }
        }
    }
    return languages;
}

// "L1", "L2", ... as the document names its languages.
QStringList languageIds(int count)
{
    QStringList ids;
    for (int i = 1; i <= count; ++i) {
        ids.append(QLatin1Char('L') + QString::number(i));
    }
    return ids;
}

/// Writes a gallery page, one function per element of the document.
class GalleryWriter
{
public:
    GalleryWriter(const WidgetLibraryPluginMetaInformation &meta, QXmlStreamWriter &writer,
                  const QString &languageId, bool isProjectGallery,
                  const QVector<WidgetMetaInformation> &widgets)
        : m_meta(meta)
        , m_writer(writer)
        , m_isProjectGallery(isProjectGallery)
        , m_widgets(widgets)
        , m_texts(widgets, languageId)
    {}

    void write();

private:
    void writeEmptyStyle();
    void writeTextManager();
    void writeLanguages(const QStringList &languages);
    void writeTextTable(const Links &links, const QStringList &languages);
    void writeItemsManager();
    void writeItems();
    void writeItemLinks();
    void writeWidget(const WidgetMetaInformation &widget, const Links &links);
    void writeWidgetStyle(const WidgetMetaInformation &widget);
    void writeUserFields(const WidgetMetaInformation &widget);
    void writeFieldLinks(const Links &links);
    void writeFieldLink(const Links &links);

    void writeFontFamilies(const Links &links);
    void writeTextId(int textId, int idx);
    QString objectId(const QString &widgetId) const;

    const WidgetLibraryPluginMetaInformation &m_meta;
    QXmlStreamWriter &m_writer;
    bool m_isProjectGallery;
    const QVector<WidgetMetaInformation> &m_widgets;
    GalleryTexts m_texts;
};

void GalleryWriter::write()
{
    const XmlElement wgtPage(m_writer, QStringLiteral("wgtPage"),
                             {{QStringLiteral("projectType"), QStringLiteral("HMI Project")},
                              {QStringLiteral("rev"), QStringLiteral("1")}});
    const XmlElement page(m_writer, QStringLiteral("object"),
                          {
                              {QStringLiteral("id"), QStringLiteral("Page")},
                              {QStringLiteral("class"), QStringLiteral("PageWgt")},
                              {QStringLiteral("pageType"), QStringLiteral("gallery")},
                              {QStringLiteral("pageSize"), QStringLiteral("100,100")},
                              {QStringLiteral("pageName"), QStringLiteral("Page")},
                              {QStringLiteral("staticOptEnable"), QStringLiteral("true")},
                          });
    writeLeaf(m_writer, QStringLiteral("wgtStyle"),
              {{QStringLiteral("width"), QStringLiteral("100")},
               {QStringLiteral("height"), QStringLiteral("100")},
               {QStringLiteral("x"), QStringLiteral("0")},
               {QStringLiteral("y"), QStringLiteral("0")}});
    writeTextManager();
    writeItemsManager();
    for (int i = 0; i < m_widgets.size(); ++i) {
        writeWidget(m_widgets.at(i), m_texts.fieldLinks(i));
    }
}

void GalleryWriter::writeEmptyStyle()
{
    writeLeaf(m_writer, QStringLiteral("wgtStyle"),
              {{QStringLiteral("width"), QStringLiteral("0")},
               {QStringLiteral("height"), QStringLiteral("0")},
               {QStringLiteral("x"), QStringLiteral("0")},
               {QStringLiteral("y"), QStringLiteral("0")}});
}

void GalleryWriter::writeTextManager()
{
    const XmlElement object(m_writer, QStringLiteral("object"),
                            {
                                {QStringLiteral("id"), QStringLiteral("_PageMLTextMgrWgt")},
                                {QStringLiteral("class"), QStringLiteral("PageMLTextMgrWgt")},
                                {QStringLiteral("mgrType"), QStringLiteral("Page")},
                                {QStringLiteral("mlFileName"), QStringLiteral("")},
                            });
    writeEmptyStyle();
    const Links links = m_texts.allLinks();
    const QStringList languages = languagesOf(links);
    writeLanguages(languages);
    writeTextTable(links, languages);
}

void GalleryWriter::writeLanguages(const QStringList &languages)
{
    const XmlElement langs(m_writer, QStringLiteral("langs"),
                           {{QStringLiteral("defLangId"), QStringLiteral("L1")},
                            {QStringLiteral("curLangId"), QStringLiteral("L1")}});
    const QStringList ids = languageIds(languages.size());
    for (int i = 0; i < languages.size(); ++i) {
        writeLeaf(m_writer, QStringLiteral("lang"),
                  {
                      {QStringLiteral("writingsystem"), QStringLiteral("Any")},
                      {QStringLiteral("langId"), ids.at(i)},
                      {QStringLiteral("keypads"), QStringLiteral(";;")},
                      {QStringLiteral("name"), QLatin1String("Lang") + QString::number(i + 1)},
                      {QStringLiteral("langCode"), languages.at(i)},
                      {QStringLiteral("removable"), QStringLiteral("false")},
                      {QStringLiteral("defaultFont"), panelFont()},
                  });
    }
}

void GalleryWriter::writeTextTable(const Links &links, const QStringList &languages)
{
    const XmlElement texts(m_writer, QStringLiteral("MLTexts"));
    const QStringList ids = languageIds(languages.size());
    for (const _MLLinkInfo &link : links) {
        const XmlElement text(m_writer, QStringLiteral("MLText"),
                              {{QStringLiteral("id"), QString::number(link.textId)}});
        for (int i = 0; i < languages.size(); ++i) {
            // A text that lacks the language shows in its default language rather than not at all.
            m_writer.writeAttribute(ids.at(i), link.text.get(languages.at(i), true));
        }
    }
}

void GalleryWriter::writeItemsManager()
{
    const XmlElement object(m_writer, QStringLiteral("object"),
                            {{QStringLiteral("id"), QStringLiteral("")},
                             {QStringLiteral("class"), QStringLiteral("GalleryItemsMgrWgt")}});
    writeEmptyStyle();
    writeItems();
    writeItemLinks();
}

void GalleryWriter::writeItems()
{
    const XmlElement items(m_writer, QStringLiteral("items"));
    for (const _MLLinkInfo &link : m_texts.itemLinks()) {
        if (!link.isItemText) {
            continue;
        }
        writeLeaf(m_writer, QStringLiteral("item"),
                  {
                      {QStringLiteral("icon"), QStringLiteral("")},
                      {QStringLiteral("tooltip"), link.tooltip},
                      {QStringLiteral("idx"), QString::number(link.idx)},
                      {QStringLiteral("label"), link.label},
                      {QStringLiteral("id"), objectId(link.widgetId)},
                  });
    }
}

void GalleryWriter::writeItemLinks()
{
    const XmlElement element(m_writer, QStringLiteral("links"));
    for (const _MLLinkInfo &link : m_texts.itemLinks()) {
        const XmlElement lang(m_writer, QStringLiteral("lang"),
                              {{QStringLiteral("attrib"), link.attribute},
                               {QStringLiteral("class"), QStringLiteral("MLGalleryItemsLink")}});
        {
            const XmlElement fontFamily(m_writer, QStringLiteral("MLFontFamily"));
            writeFontFamilies({link});
        }
        writeTextId(link.textId, link.idx);
    }
}

void GalleryWriter::writeWidget(const WidgetMetaInformation &widget, const Links &links)
{
    const XmlElement object(m_writer, QStringLiteral("object"),
                            {{QStringLiteral("class"), QStringLiteral("CustomBuiltWgt")},
                             {QStringLiteral("id"), objectId(widget.id())}});
    writeWidgetStyle(widget);
    writeUserFields(widget);
    writeFieldLinks(links);
}

void GalleryWriter::writeWidgetStyle(const WidgetMetaInformation &widget)
{
    const QSizeF size = widget.defaultSize();
    writeLeaf(m_writer, QStringLiteral("wgtStyle"),
              {
                  {QStringLiteral("widgetId"), widget.id()},
                  {QStringLiteral("widgetVersion"), widget.version().version()},
                  {QStringLiteral("libraryId"), m_meta.id()},
                  {QStringLiteral("libraryName"), m_meta.name().get(QStringLiteral("en-US"), true)},
                  {QStringLiteral("libraryVersion"), m_meta.version().version()},
                  {QStringLiteral("libraryAuthor"), m_meta.author()},
                  {QStringLiteral("width"), numberText(size.width())},
                  {QStringLiteral("height"), numberText(size.height())},
                  {QStringLiteral("x"), QStringLiteral("0")},
                  {QStringLiteral("y"), QStringLiteral("0")},
                  {QStringLiteral("cx"), numberText(size.width() * 0.5)},
                  {QStringLiteral("cy"), numberText(size.height() * 0.5)},
                  {QStringLiteral("wgtStaticOpt"), QStringLiteral("dynamic")},
              });
}

void GalleryWriter::writeUserFields(const WidgetMetaInformation &widget)
{
    const XmlElement userFields(m_writer, QStringLiteral("userfields"));
    const auto fields = widget.fields();
    for (const FieldMetaInformation &field : fields) {
        const bool isFont = field.type() == FieldTypeFont;
        const QString value =
            isFont ? WidgetLibraryPluginUtils::fieldFontToString(field.defaultFont())
                   : WidgetLibraryPluginUtils::fieldValueToString(field.type(), field.defaultValue());
        writeLeaf(m_writer, QStringLiteral("field"),
                  {{QStringLiteral("id"), field.id()},
                   {isFont ? QStringLiteral("font") : QStringLiteral("value"), value}});
    }
}

void GalleryWriter::writeFieldLinks(const Links &links)
{
    const XmlElement element(m_writer, QStringLiteral("links"));
    for (int first = 0; first < links.size();) {
        int end = first + 1;
        while (end < links.size() && links.at(end).attribute == links.at(first).attribute) {
            ++end;
        }
        writeFieldLink(links.mid(first, end - first));
        first = end;
    }
}

void GalleryWriter::writeFieldLink(const Links &links)
{
    const XmlElement lang(
        m_writer, QStringLiteral("lang"),
        {{QStringLiteral("class"), QStringLiteral("MLMsgLink:%1:").arg(links.first().attribute)}});
    {
        const XmlElement fontFamily(
            m_writer, QStringLiteral("MLFontFamily"),
            {{QStringLiteral("useAttributeNameForFontProperties"), QStringLiteral("true")}});
        writeFontFamilies(links);
    }
    for (const _MLLinkInfo &link : links) {
        writeTextId(link.textId, link.second);
    }
}

void GalleryWriter::writeFontFamilies(const Links &links)
{
    const QStringList languages = languagesOf(links);
    for (const QString &language : languages) {
        m_writer.writeAttribute(language, panelFont());
    }
}

void GalleryWriter::writeTextId(int textId, int idx)
{
    writeLeaf(
        m_writer, QStringLiteral("textid"),
        {{QStringLiteral("val"), QString::number(textId)}, {QStringLiteral("idx"), QString::number(idx)}});
}

QString GalleryWriter::objectId(const QString &widgetId) const
{
    return m_isProjectGallery ? QLatin1Char('_') + widgetId : widgetId;
}

QVector<WidgetMetaInformation> widgetsOfPage(const WidgetLibraryPluginMetaInformation &meta,
                                             const TranslationStringType &group, bool isProjectGallery,
                                             const QString &languageId)
{
    const TranslationStringType pageGroup = namedGroup(group, languageId);
    QVector<WidgetMetaInformation> widgets;
    const auto latest = meta.widgetsLatestVersion();
    for (const WidgetMetaInformation &widget : latest) {
        const bool isShown = isProjectGallery ? widget.showInProjectGallery() : widget.showInPageGallery();
        if (isShown && namedGroup(widget.galleryGroupName(), languageId) == pageGroup) {
            widgets.append(widget);
        }
    }
    return widgets;
}

} // namespace

int WidgetLibraryPluginUtils::studioGalleryFromMetaInformation(const WidgetLibraryPluginMetaInformation &meta,
                                                               QXmlStreamWriter &writer,
                                                               const QString &languageId,
                                                               const TranslationStringType &group,
                                                               GalleryType galleryType)
{
    if (galleryType != PageGallery && galleryType != ProjectGallery) {
        return WidgetShowInProjectGalleryNotValid;
    }
    const bool isProjectGallery = galleryType == ProjectGallery;
    const auto widgets = widgetsOfPage(meta, group, isProjectGallery, languageId);
    GalleryWriter(meta, writer, languageId, isProjectGallery, widgets).write();
    return MetaDataNoError;
}

} // namespace INTERNAL
} // namespace KORA
