// SPDX-License-Identifier: Apache-2.0
#include "newproject.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUuid>

#include <kora/core/files_p.h>
#include <kora/core/pluginutils.h>
#include <kora/core/uuid_p.h>

#include "translationproject.h"

#include <algorithm>

using KORA::INTERNAL::PluginUtils;

namespace {

const QLatin1String libraryLanguage("en-US"); // of the texts in the template
const QLatin1String schemaName("widget-library.schema.json");

using Values = QHash<QString, QString>;

bool matchesWhole(const QString &text, const char *pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern)))
        .match(text)
        .hasMatch();
}

// "level_tank" and "level-tank" give "LevelTank".
QString classNameOf(const QString &id)
{
    QString name;
    bool startsWord = true;
    for (const QChar c : id) {
        if (c == QLatin1Char('_') || c == QLatin1Char('-')) {
            startsWord = true;
            continue;
        }
        name += startsWord ? c.toUpper() : c;
        startsWord = false;
    }
    return name.isEmpty() || name.at(0).isDigit() ? QLatin1String("Widget") + name : name;
}

QString pluginClassOf(const NewProject &project)
{
    return classNameOf(project.name) + QLatin1String("Library");
}

// "level_tank" gives "Level tank".
QString displayNameOf(const QString &id)
{
    QString text = id;
    text.replace(QLatin1Char('_'), QLatin1Char(' '));
    text = text.simplified();
    if (text.isEmpty()) {
        return id;
    }
    text[0] = text.at(0).toUpper();
    return text;
}

QString problemWithWidgets(const NewProject &project)
{
    QHash<QString, QString> idOfFile{{pluginClassOf(project).toLower(), project.name}};
    for (const QString &id : project.widgets) {
        if (!matchesWhole(id, "[a-zA-Z0-9_]+")) {
            return QStringLiteral("--widget %1: a widget's id has letters, digits and \"_\"").arg(id);
        }
        const QString name = classNameOf(id);
        for (const QString &file : {name.toLower(), name.toLower() + QLatin1String("item")}) {
            if (idOfFile.contains(file)) {
                return QStringLiteral("--widget %1: its classes would have the names of those of %2")
                    .arg(id, idOfFile.value(file));
            }
            idOfFile.insert(file, id);
        }
    }
    return {};
}

QString problemWithLanguages(const NewProject &project)
{
    QSet<QString> seen;
    for (const QString &language : project.languages) {
        if (!PluginUtils::isValidLanguageCode(language)) {
            return QStringLiteral("--language %1: a language is written like it-IT").arg(language);
        }
        if (language == libraryLanguage) {
            return QStringLiteral("--language %1: that is the language of the library's own texts")
                .arg(language);
        }
        if (seen.contains(language)) {
            return QStringLiteral("--language %1: given twice").arg(language);
        }
        seen.insert(language);
    }
    return {};
}

QString readResource(const QString &name)
{
    QFile file(QLatin1String(":/template/") + name);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QString text = QString::fromUtf8(file.readAll());
    // The licence is that of the template, not of what authors make of it.
    static const QRegularExpression licence(QStringLiteral("^(//|#) SPDX-License-Identifier: .*\n"));
    return text.remove(licence);
}

// The text with a value for each "@name@".
QString filled(const QString &text, const Values &values)
{
    static const QRegularExpression placeholder(QStringLiteral("@([a-zA-Z]+)@"));
    QString result;
    int end = 0;
    for (auto i = placeholder.globalMatch(text); i.hasNext();) {
        const QRegularExpressionMatch match = i.next();
        Q_ASSERT(values.contains(match.captured(1)));
        result += text.mid(end, match.capturedStart() - end) + values.value(match.captured(1));
        end = match.capturedEnd();
    }
    return result + text.mid(end);
}

QString filledFile(const char *name, const Values &values)
{
    return filled(readResource(QLatin1String(name)), values);
}

// As JSON has it, in quotes.
QString jsonText(const QString &text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

/// Fills the templates and writes the files of one project.
class ProjectWriter
{
public:
    ProjectWriter(const NewProject &project, const QString &dir)
        : m_project(project)
        , m_dir(dir)
        , m_plugin(pluginClassOf(project))
        , m_common({{QStringLiteral("name"), project.name},
                    {QStringLiteral("id"), project.id},
                    {QStringLiteral("author"), jsonText(project.author)},
                    {QStringLiteral("schema"), schemaName},
                    {QStringLiteral("version"), QStringLiteral(KORA_VERSION).section(QLatin1Char('.'), 0, 1)},
                    {QStringLiteral("Plugin"), m_plugin},
                    {QStringLiteral("pluginfile"), m_plugin.toLower()}})
    {}

    bool writeAll(QString &problem)
    {
        collectWidgets();
        writeBuild();
        writePlugin();
        for (const Values &widget : qAsConst(m_widgets)) {
            writeWidget(widget);
        }
        copySchema();
        problem = m_problem;
        return problem.isEmpty() && writeTranslations(problem);
    }

private:
    void collectWidgets()
    {
        const int columns = 2;
        for (int i = 0; i < m_project.widgets.size(); ++i) {
            const QString &id = m_project.widgets.at(i);
            Values values = m_common;
            values.insert(QStringLiteral("widget"), id);
            values.insert(QStringLiteral("display"), displayNameOf(id));
            values.insert(QStringLiteral("Widget"), classNameOf(id));
            values.insert(QStringLiteral("widgetfile"), classNameOf(id).toLower());
            values.insert(QStringLiteral("x"), QString::number(64 + i % columns * 304));
            values.insert(QStringLiteral("y"), QString::number(64 + i / columns * 160));
            m_widgets.append(values);
        }
    }

    QString forWidgets(const char *line) const
    {
        QString lines;
        for (const Values &widget : m_widgets) {
            lines += filled(QLatin1String(line), widget);
        }
        return lines;
    }

    QString joined(const char *templateName) const
    {
        QStringList parts;
        for (const Values &widget : m_widgets) {
            parts.append(filledFile(templateName, widget));
            parts.last().chop(1); // the line's end
        }
        return parts.join(QLatin1String(",\n"));
    }

    void writeBuild()
    {
        QString translations;
        QStringList languages;
        for (const QString &language : qAsConst(m_project.languages)) {
            translations += QStringLiteral(" translations/%1.csv").arg(language);
            languages.append(jsonText(language));
        }
        Values values = m_common;
        values.insert(QStringLiteral("sources"),
                      forWidgets("        src/@widgetfile@.cpp src/@widgetfile@.h\n"));
        values.insert(QStringLiteral("tests"), forWidgets(" tests/tst_@widgetfile@.cpp"));
        values.insert(QStringLiteral("translations"), translations);
        values.insert(QStringLiteral("languages"), languages.join(QLatin1String(", ")));
        values.insert(QStringLiteral("widgets"), joined("metadatawidget.json.in"));
        write(QStringLiteral("CMakeLists.txt"), filledFile("CMakeLists.txt.in", values));
        write(QStringLiteral("metadata.json"), filledFile("metadata.json.in", values));
        values.insert(QStringLiteral("widgets"), joined("scenariowidget.json.in"));
        values.insert(QStringLiteral("tags"), joined("scenariotag.json.in"));
        write(QStringLiteral("scenarios/default.json"), filledFile("scenario.json.in", values));
        write(QStringLiteral("CMakePresets.json"), filledFile("CMakePresets.json.in", values));
        write(QStringLiteral("README.md"), filledFile("README.md.in", values));
        write(QStringLiteral(".gitignore"), filledFile("gitignore.in", values));
    }

    void writePlugin()
    {
        Values values = m_common;
        const QString file = QLatin1String("src/") + m_plugin.toLower();
        values.insert(QStringLiteral("includes"), forWidgets("#include \"@widgetfile@.h\"\n"));
        values.insert(
            QStringLiteral("registrations"),
            forWidgets(
                "    registerWidget(QStringLiteral(\"@widget@\"), QStringLiteral(\"1.0.0\"),\n"
                "                   &@Widget@::staticMetaObject, &@Widget@Item::staticMetaObject);\n"));
        write(file + QLatin1String(".h"), filledFile("plugin.h.in", values));
        write(file + QLatin1String(".cpp"), filledFile("plugin.cpp.in", values));
    }

    void writeWidget(const Values &values)
    {
        const QString file = values.value(QStringLiteral("widgetfile"));
        write(QStringLiteral("src/%1.h").arg(file), filledFile("widget.h.in", values));
        write(QStringLiteral("src/%1.cpp").arg(file), filledFile("widget.cpp.in", values));
        write(QStringLiteral("tests/tst_%1.cpp").arg(file), filledFile("tst_widget.cpp.in", values));
    }

    // Beside the metadata: editors find it there without a network.
    void copySchema()
    {
        QFile schema(QLatin1String(":/schema/") + schemaName);
        const bool isOpen = schema.open(QIODevice::ReadOnly);
        write(schemaName, isOpen ? QString::fromUtf8(schema.readAll()) : QString());
    }

    bool writeTranslations(QString &problem) const
    {
        TranslationProject translations;
        if (!translations.open(m_dir, QDir(m_dir).filePath(QStringLiteral("translations")), problem)) {
            return false;
        }
        const QStringList languages = translations.languages();
        for (const QString &language : languages) {
            const TranslationProject::Update update = translations.update(language, false);
            if (!update.isWritten) {
                problem = update.faults.value(0).message;
                return false;
            }
        }
        return true;
    }

    void write(const QString &name, const QString &text)
    {
        const QString path = QDir(m_dir).filePath(name);
        QString reason = QStringLiteral("its folder cannot be made");
        const bool ok =
            QDir().mkpath(QFileInfo(path).path()) && KORA::INTERNAL::replaceFile(path, text.toUtf8(), reason);
        if (!ok && m_problem.isEmpty()) {
            m_problem = QStringLiteral("%1 cannot be written: %2").arg(name, reason);
        }
    }

    NewProject m_project;
    QString m_dir;
    QString m_plugin;
    Values m_common;
    QList<Values> m_widgets;
    QString m_problem; // the first
};

} // namespace

QString problemWith(const NewProject &project)
{
    static const QSet<QString> targets{
        QStringLiteral("all"),     QStringLiteral("bench"),   QStringLiteral("clean"), QStringLiteral("help"),
        QStringLiteral("install"), QStringLiteral("package"), QStringLiteral("test")};
    if (!matchesWhole(project.name, "[a-zA-Z][a-zA-Z0-9_-]*")) {
        return QStringLiteral("%1: a name begins with a letter and has letters, digits, \"_\" and \"-\"")
            .arg(project.name);
    }
    if (targets.contains(project.name.toLower())) {
        return QStringLiteral("%1: the name is that of a build target; take another").arg(project.name);
    }
    if (!KORA::INTERNAL::isUuid(project.id)) {
        return QStringLiteral("--id %1: a UUID without braces is expected, such as %2")
            .arg(project.id, QUuid::createUuid().toString(QUuid::WithoutBraces));
    }
    const QString widgets = problemWithWidgets(project);
    return widgets.isEmpty() ? problemWithLanguages(project) : widgets;
}

QString widgetIdFromName(const QString &name)
{
    QString id = name.toLower();
    return id.replace(QLatin1Char('-'), QLatin1Char('_'));
}

bool writeNewProject(const NewProject &project, const QString &path, QString &problem)
{
    const QFileInfo target(path);
    if (target.exists() || target.isSymLink()) {
        problem = QStringLiteral("%1 exists already; nothing was written").arg(path);
        return false;
    }
    if (!QDir().mkpath(target.absolutePath())) {
        problem = QStringLiteral("the folder %1 cannot be made").arg(target.absolutePath());
        return false;
    }
    // Beside the target, so that the last step is a rename. Whatever goes wrong before it leaves nothing.
    const QTemporaryDir work(target.absoluteDir().filePath(QStringLiteral(".kora-new-XXXXXX")));
    const QString made = work.filePath(project.name);
    if (!work.isValid() || !QDir().mkpath(made)) {
        problem = QStringLiteral("the folder %1 cannot be written").arg(target.absolutePath());
        return false;
    }
    if (!ProjectWriter(project, made).writeAll(problem)) {
        return false;
    }
    if (!QDir().rename(made, target.absoluteFilePath())) {
        problem = QStringLiteral("%1 cannot be made").arg(path);
        return false;
    }
    return true;
}
