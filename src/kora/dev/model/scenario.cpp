// SPDX-License-Identifier: Apache-2.0
#include "scenario.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSet>

#include <kora/core/files_p.h>

#include <cmath>

namespace KORA {
namespace DEV {

namespace {

const int schemaVersion = 1;
const double farthest = 1e6; // pixels from the page's corner
const qint64 largestFile = 64 * 1024 * 1024;

const QLatin1String checkerboard("checkerboard");

/// Reads the keys of one object; what is wrong goes to the list with its place. Keys that nobody asked for are wrong
/// too: a misspelt one would else be passed over.
class ObjectReader
{
public:
    ObjectReader(const QJsonValue &json, const QString &place, QStringList &problems)
        : m_object(json.toObject())
        , m_place(place)
        , m_problems(problems)
    {
        if (!json.isObject()) {
            report(QString(), QStringLiteral("an object is expected"));
        }
    }

    ~ObjectReader()
    {
        for (auto it = m_object.constBegin(); it != m_object.constEnd(); ++it) {
            if (!m_asked.contains(it.key())) {
                report(it.key(), QStringLiteral("the key is not known"));
            }
        }
    }
    Q_DISABLE_COPY_MOVE(ObjectReader)

    void report(const QString &key, const QString &problem)
    {
        const QString place = key.isEmpty() ? m_place : m_place + QLatin1Char('/') + key;
        m_problems.append(
            QStringLiteral("%1: %2").arg(place.isEmpty() ? QStringLiteral("the file") : place, problem));
    }

    /// Undefined if the key is absent.
    QJsonValue take(const char *key)
    {
        m_asked.insert(QLatin1String(key));
        return m_object.value(QLatin1String(key));
    }

    void text(const char *key, QString &result, bool isRequired = false)
    {
        const QJsonValue json = take(key);
        if (json.isUndefined() && !isRequired) {
            return;
        }
        result = json.toString();
        if (!json.isString() || (isRequired && result.isEmpty())) {
            report(QLatin1String(key), QStringLiteral("a text is expected"));
        }
    }

    void flag(const char *key, bool &result)
    {
        const QJsonValue json = take(key);
        if (json.isUndefined()) {
            return;
        }
        result = json.toBool();
        if (!json.isBool()) {
            report(QLatin1String(key), QStringLiteral("true or false is expected"));
        }
    }

    void number(const char *key, double smallest, double largest, double &result, bool isRequired)
    {
        const QJsonValue json = take(key);
        if (json.isUndefined() && !isRequired) {
            return;
        }
        result = json.toDouble();
        if (!json.isDouble() || result < smallest || result > largest) {
            report(QLatin1String(key), QStringLiteral("a number from %1 to %2 is expected")
                                           .arg(QString::number(smallest), QString::number(largest)));
        }
    }

    void integer(const char *key, int smallest, int largest, int &result)
    {
        double number = result;
        this->number(key, smallest, largest, number, false);
        result = static_cast<int>(std::lround(qBound<double>(smallest, number, largest)));
    }

    void object(const char *key, QJsonObject &result)
    {
        const QJsonValue json = take(key);
        result = json.toObject();
        if (!json.isUndefined() && !json.isObject()) {
            report(QLatin1String(key), QStringLiteral("an object is expected"));
        }
    }

private:
    QJsonObject m_object;
    QString m_place;
    QStringList &m_problems;
    QSet<QString> m_asked;
};

QJsonObject pageToJson(const PageState &page)
{
    return {{QStringLiteral("width"), page.size.width()},
            {QStringLiteral("height"), page.size.height()},
            {QStringLiteral("background"),
             page.background.isValid() ? page.background.name(QColor::HexArgb) : QString(checkerboard)},
            {QStringLiteral("grid"), page.gridIsShown},
            {QStringLiteral("gridStep"), page.gridStep}};
}

void readPage(const QJsonValue &json, PageState &page, QStringList &problems)
{
    if (json.isUndefined()) {
        return;
    }
    ObjectReader reader(json, QStringLiteral("/page"), problems);
    reader.integer("width", PageState::smallestSide, PageState::largestSide, page.size.rwidth());
    reader.integer("height", PageState::smallestSide, PageState::largestSide, page.size.rheight());
    reader.flag("grid", page.gridIsShown);
    reader.integer("gridStep", 1, 256, page.gridStep);
    QString background = page.background.name(QColor::HexArgb);
    reader.text("background", background);
    if (background != checkerboard && !QColor::isValidColor(background)) {
        reader.report(QStringLiteral("background"),
                      QStringLiteral("a colour such as \"#ffffffff\" or \"checkerboard\" is expected"));
    }
    page.background = background == checkerboard ? QColor() : QColor(background);
}

QJsonObject widgetToJson(const PlacedWidgetState &widget)
{
    QJsonObject bindings;
    for (auto it = widget.bindings.cbegin(); it != widget.bindings.cend(); ++it) {
        bindings.insert(it.key(), it.value());
    }
    return {{QStringLiteral("name"), widget.name},
            {QStringLiteral("widget"), widget.widgetId},
            {QStringLiteral("version"), widget.version},
            {QStringLiteral("x"), widget.geometry.x()},
            {QStringLiteral("y"), widget.geometry.y()},
            {QStringLiteral("width"), widget.geometry.width()},
            {QStringLiteral("height"), widget.geometry.height()},
            {QStringLiteral("visible"), widget.isVisible},
            {QStringLiteral("locked"), widget.isLocked},
            {QStringLiteral("running"), widget.isRunning},
            {QStringLiteral("values"), widget.values},
            {QStringLiteral("texts"), widget.texts},
            {QStringLiteral("bindings"), bindings}};
}

void readBindings(ObjectReader &reader, PlacedWidgetState &widget)
{
    QJsonObject bindings;
    reader.object("bindings", bindings);
    for (auto it = bindings.constBegin(); it != bindings.constEnd(); ++it) {
        widget.bindings.insert(it.key(), it.value().toString());
        if (it.value().toString().isEmpty()) {
            reader.report(QStringLiteral("bindings/") + it.key(),
                          QStringLiteral("the name of a tag or trend is expected"));
        }
    }
}

PlacedWidgetState readWidget(const QJsonValue &json, const QString &place, QStringList &problems)
{
    PlacedWidgetState widget;
    ObjectReader reader(json, place, problems);
    reader.text("name", widget.name, true);
    reader.text("widget", widget.widgetId, true);
    reader.text("version", widget.version, true);
    double x = 0;
    double y = 0;
    double width = 1;
    double height = 1;
    reader.number("x", -farthest, farthest, x, true);
    reader.number("y", -farthest, farthest, y, true);
    reader.number("width", 1, farthest, width, true);
    reader.number("height", 1, farthest, height, true);
    widget.geometry = QRectF(x, y, width, height);
    reader.flag("visible", widget.isVisible);
    reader.flag("locked", widget.isLocked);
    reader.flag("running", widget.isRunning);
    reader.object("values", widget.values);
    reader.object("texts", widget.texts);
    readBindings(reader, widget);
    return widget;
}

void readWidgets(const QJsonValue &json, QVector<PlacedWidgetState> &widgets, QStringList &problems)
{
    if (!json.isUndefined() && !json.isArray()) {
        problems.append(QStringLiteral("/widgets: an array is expected"));
    }
    const QJsonArray array = json.toArray();
    QSet<QString> names;
    for (int i = 0; i < array.size(); ++i) {
        const QString place = QStringLiteral("/widgets/%1").arg(i);
        widgets.append(readWidget(array.at(i), place, problems));
        const QString name = widgets.last().name;
        if (names.contains(name)) {
            problems.append(
                QStringLiteral("%1/name: the name \"%2\" is taken by another widget").arg(place, name));
        }
        names.insert(name);
    }
}

void readMode(ObjectReader &reader, BenchMode &mode)
{
    QString name = QStringLiteral("studio");
    reader.text("mode", name);
    if (name != QLatin1String("studio") && name != QLatin1String("runtime")) {
        reader.report(QStringLiteral("mode"), QStringLiteral("\"studio\" or \"runtime\" is expected"));
    }
    mode = name == QLatin1String("runtime") ? BenchMode::Runtime : BenchMode::Studio;
}

void readKind(ObjectReader &reader)
{
    QString kind;
    reader.text("kora", kind, true);
    if (kind != QLatin1String("scenario")) {
        reader.report(QStringLiteral("kora"), QStringLiteral("\"scenario\" is expected"));
    }
    const QJsonValue schema = reader.take("schema");
    if (!schema.isDouble() || schema.toDouble() != schemaVersion) {
        reader.report(QStringLiteral("schema"),
                      QStringLiteral("this bench reads schema %1").arg(schemaVersion));
    }
}

} // namespace

bool PageState::operator==(const PageState &other) const
{
    return size == other.size && background == other.background && gridIsShown == other.gridIsShown
           && gridStep == other.gridStep;
}

QJsonObject Scenario::toJson() const
{
    QJsonArray array;
    for (const PlacedWidgetState &widget : widgets) {
        array.append(widgetToJson(widget));
    }
    QJsonObject json{
        {QStringLiteral("kora"), QStringLiteral("scenario")},
        {QStringLiteral("schema"), schemaVersion},
        {QStringLiteral("pluginId"), pluginId},
        {QStringLiteral("language"), language},
        {QStringLiteral("mode"),
         mode == BenchMode::Studio ? QStringLiteral("studio") : QStringLiteral("runtime")},
        {QStringLiteral("page"), pageToJson(page)},
        {QStringLiteral("widgets"), array},
        {QStringLiteral("providers"), providers},
    };
    if (!view.isEmpty()) {
        json.insert(QStringLiteral("view"), view);
    }
    return json;
}

bool Scenario::fromJson(const QJsonObject &json, Scenario &scenario, QStringList &problems)
{
    const int problemsBefore = problems.size();
    Scenario read;
    {
        ObjectReader reader(json, QString(), problems);
        readKind(reader);
        reader.take("$schema"); // editors' own
        reader.text("pluginId", read.pluginId, true);
        reader.text("language", read.language);
        readMode(reader, read.mode);
        readPage(reader.take("page"), read.page, problems);
        readWidgets(reader.take("widgets"), read.widgets, problems);
        reader.object("providers", read.providers);
        reader.object("view", read.view);
    }
    if (problems.size() > problemsBefore) {
        return false;
    }
    scenario = read;
    return true;
}

bool Scenario::save(const QString &path, QString &problem) const
{
    QString reason;
    if (INTERNAL::replaceFile(path, QJsonDocument(toJson()).toJson(), reason)) {
        return true;
    }
    problem = QStringLiteral("%1 cannot be written: %2").arg(path, reason);
    return false;
}

bool Scenario::load(const QString &path, Scenario &scenario, QStringList &problems)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        problems.append(QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString()));
        return false;
    }
    if (file.size() > largestFile) {
        problems.append(QStringLiteral("%1 is larger than 64 MiB").arg(path));
        return false;
    }
    const QByteArray text = file.readAll();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject()) {
        const auto line = text.left(error.offset).count('\n') + 1;
        problems.append(document.isNull()
                            ? QStringLiteral("%1:%2: %3").arg(path).arg(line).arg(error.errorString())
                            : QStringLiteral("%1: an object is expected").arg(path));
        return false;
    }
    return fromJson(document.object(), scenario, problems);
}

} // namespace DEV
} // namespace KORA
