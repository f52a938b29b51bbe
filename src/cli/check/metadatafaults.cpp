// SPDX-License-Identifier: Apache-2.0
#include "metadatafaults.h"

#include <QtCore/QJsonArray>
#include <QtCore/QSet>

#include <algorithm>
#include <functional>

#include <kora/host.h>

#include "jsonsource.h"

using namespace KORA::INTERNAL;

namespace {

/// What puts right the key that a code speaks of: another value, or without one its removal.
struct Repair
{
    int code;
    QLatin1String key;
    QJsonValue value = QJsonValue::Undefined;
};

enum FieldCode : int {
    FieldIdMissing = 10013,
    FieldIdWrong = 10014,
    TypeMissing = 10028,
    TypeWrong = 10029,
    DefaultWrong = 10031,
    OptionsWrong = 10036,
    RequirementsWrong = 10038
};
constexpr int translationCode = 16;
constexpr int widgetsCode = 10000;
constexpr int fieldsCode = 10012;

const QLatin1String metaDataKey("MetaData");
const QLatin1String widgetsKey("widgets");
const QLatin1String fieldsKey("fields");
const QLatin1String requirementsKey("requirements");
const QLatin1String optionsKey("options");
const QLatin1String defaultValueKey("defaultValue");

const QString stand = QStringLiteral("stand_in"); // an id and text that every key takes

// Tables of a command: no host loads them.
// clazy:excludeall=non-pod-global-static
const QVector<Repair> libraryRepairs = {
    {4, QLatin1String("name"), stand},
    {5, QLatin1String("name"), stand},
    {6, QLatin1String("id"), QStringLiteral("00000000-0000-4000-8000-000000000001")},
    {7, QLatin1String("id"), QStringLiteral("00000000-0000-4000-8000-000000000001")},
    {8, QLatin1String("author"), stand},
    {9, QLatin1String("author"), stand},
    {10, QLatin1String("version"), QStringLiteral("1.0.0")},
    {11, QLatin1String("version"), QStringLiteral("1.0.0")},
    {12, QLatin1String("copyright")},
    {13, QLatin1String("description")},
    {14, QLatin1String("license")},
    {15, QLatin1String("defaultLanguage")},
    {translationCode, QLatin1String("translation")},
};

const QVector<Repair> widgetRepairs = {
    {10001, QLatin1String("id"), stand},
    {10002, QLatin1String("id"), stand},
    {10003, QLatin1String("display")},
    {10004, QLatin1String("description")},
    {10005, QLatin1String("version"), QStringLiteral("1.0.0")},
    {10006, QLatin1String("version"), QStringLiteral("1.0.0")},
    {10007, QLatin1String("defaultSize")},
    {10008, QLatin1String("galleryGroupName")},
    {10009, QLatin1String("showInPageGallery")},
    {10010, QLatin1String("showInProjectGallery")},
    {10011, QLatin1String("receiveAlarmsEvents")},
    {fieldsCode, QLatin1String("fields")},
};

const QVector<Repair> fieldRepairs = {
    {FieldIdMissing, QLatin1String("id"), stand},
    {FieldIdWrong, QLatin1String("id"), stand},
    {10015, QLatin1String("display"), stand},
    {10016, QLatin1String("display"), stand},
    {10017, QLatin1String("displayFontFamily"), stand},
    {10018, QLatin1String("displayFontFamily"), stand},
    {10019, QLatin1String("displayFontSize"), stand},
    {10020, QLatin1String("displayFontSize"), stand},
    {10021, QLatin1String("displayFontBold"), stand},
    {10022, QLatin1String("displayFontBold"), stand},
    {10023, QLatin1String("displayFontStyle"), stand},
    {10024, QLatin1String("displayFontStyle"), stand},
    {10025, QLatin1String("displayFontUnderline"), stand},
    {10026, QLatin1String("displayFontUnderline"), stand},
    {10027, QLatin1String("description")},
    // A type that requirements may name: a wrong one is no reason to refuse those of other fields too.
    {TypeMissing, QLatin1String("type"), QStringLiteral("integer")},
    {TypeWrong, QLatin1String("type"), QStringLiteral("integer")},
    {10030, QLatin1String("tagCanBeAttached")},
    {DefaultWrong, QLatin1String("defaultValue")},
    {10032, QLatin1String("readOnly")},
    {10033, QLatin1String("group")},
    {10034, QLatin1String("minimum")},
    {10035, QLatin1String("maximum")},
    {OptionsWrong, QLatin1String("options")},
    {10037, QLatin1String("private")},
    {RequirementsWrong, QLatin1String("requirements")},
    {10039, QLatin1String("defaultFont")},
    {10040, QLatin1String("multiLanguage")},
    {10041, QLatin1String("tagAcceptedTypes")},
    {10042, QLatin1String("tagOnDemand")},
};

using Parse = std::function<int(const QJsonObject &)>;

int parseLibrary(const QJsonObject &metaData)
{
    WidgetLibraryPluginMetaInformation info;
    return WidgetLibraryPluginUtils::metaInformationFromMetaData({{metaDataKey, metaData}}, info);
}

int parseWidget(const QJsonValue &value)
{
    WidgetMetaInformation widget;
    QList<TranslationStringType> texts;
    return WidgetLibraryPluginUtils::infoFromMetaDataParseWidget(value, widget, {}, QStringLiteral("en-US"),
                                                                 texts);
}

int parseField(const QJsonObject &object)
{
    FieldMetaInformation field;
    QList<TranslationStringType> texts;
    return WidgetLibraryPluginUtils::infoFromMetaDataParseField(object, field, {}, QStringLiteral("en-US"),
                                                                texts);
}

/// Asks the parser for the faults of one object, each put right before the next question.
class ObjectFaults
{
public:
    ObjectFaults(const QString &pointer, Parse parse, const QVector<Repair> &repairs,
                 QVector<MetadataFault> &faults)
        : m_pointer(pointer)
        , m_parse(std::move(parse))
        , m_repairs(repairs)
        , m_faults(faults)
    {}

    /// Returns the object that the parser accepts.
    QJsonObject run(QJsonObject object);

private:
    const Repair *repairOf(int code) const;
    void repair(QJsonObject &object, const Repair &repair) const;
    QStringList partsAtFault(const QJsonObject &object, const Repair &repair) const;
    QStringList membersAtFault(const QJsonObject &object, const Repair &repair) const;
    QString memberOfOption(QJsonObject probe, const QJsonValue &option) const;
    bool isRefused(const QJsonObject &object, int code) const { return m_parse(object) == code; }
    bool isRefusedWith(QJsonObject object, const Repair &repair, const QJsonValue &value) const
    {
        object.insert(repair.key, value);
        return isRefused(object, repair.code);
    }

    QString m_pointer;
    Parse m_parse;
    const QVector<Repair> &m_repairs;
    QVector<MetadataFault> &m_faults;
};

const Repair *ObjectFaults::repairOf(int code) const
{
    const auto found = std::find_if(m_repairs.cbegin(), m_repairs.cend(),
                                    [code](const Repair &repair) { return repair.code == code; });
    return found == m_repairs.cend() ? nullptr : &*found;
}

QJsonObject ObjectFaults::run(QJsonObject object)
{
    QSet<int> seen;
    while (const int code = m_parse(object)) {
        const Repair *repair = repairOf(code);
        if (!repair || seen.contains(code)) {
            m_faults.append({m_pointer, code}); // a code that no key can put right
            break;
        }
        seen.insert(code);
        const QString pointer = pointerTo(m_pointer, QString(repair->key));
        const QStringList parts = partsAtFault(object, *repair);
        for (const QString &part : parts) {
            m_faults.append({pointer + part, code});
        }
        if (parts.isEmpty()) {
            m_faults.append({pointer, code});
        }
        this->repair(object, *repair);
    }
    return object;
}

void ObjectFaults::repair(QJsonObject &object, const Repair &repair) const
{
    if (repair.code == OptionsWrong) {
        const int index = object.value(defaultValueKey).toInt(); // which else would be the next fault
        object.insert(optionsKey, QJsonArray{QJsonObject{{QLatin1String("index"), index},
                                                         {QLatin1String("option"), stand}}});
        return;
    }
    if (repair.value.isUndefined()) {
        object.remove(repair.key);
    } else {
        object.insert(repair.key, repair.value);
    }
    if (repair.code == TypeMissing || repair.code == TypeWrong) {
        for (const char *key : {"defaultValue", "minimum", "maximum"}) { // of the type that was meant
            object.remove(QLatin1String(key));
        }
    }
}

// Whether the parser refuses single elements of an array, each asked for alone; their pointers below the key.
QStringList ObjectFaults::partsAtFault(const QJsonObject &object, const Repair &repair) const
{
    if (object.value(repair.key).isObject()) {
        return membersAtFault(object, repair);
    }
    QStringList parts;
    const QJsonArray elements = object.value(repair.key).toArray();
    // What may not even be an empty array is no array at all; but options must not be empty.
    if (repair.code != OptionsWrong && isRefusedWith(object, repair, QJsonArray())) {
        return {};
    }
    for (int i = 0; i < elements.size(); ++i) {
        QJsonObject probe = object;
        probe.insert(repair.key, QJsonArray{elements.at(i)});
        if (repair.code == OptionsWrong) {
            probe.remove(defaultValueKey);
        }
        if (isRefused(probe, repair.code)) {
            const QString member =
                repair.code == OptionsWrong ? memberOfOption(probe, elements.at(i)) : QString();
            parts.append(pointerTo(QString(), i) + member);
        }
    }
    return parts;
}

QStringList ObjectFaults::membersAtFault(const QJsonObject &object, const Repair &repair) const
{
    if (isRefusedWith(object, repair, QJsonObject())) {
        return {};
    }
    QStringList parts;
    const QJsonObject members = object.value(repair.key).toObject();
    for (auto member = members.constBegin(); member != members.constEnd(); ++member) {
        if (isRefusedWith(object, repair, QJsonObject{{member.key(), member.value()}})) {
            parts.append(pointerTo(QString(), member.key()));
        }
    }
    return parts;
}

// The one of an option's two members that alone makes it wrong.
QString ObjectFaults::memberOfOption(QJsonObject probe, const QJsonValue &option) const
{
    const struct
    {
        QLatin1String key;
        QJsonValue value;
    } members[] = {{QLatin1String("index"), 0}, {QLatin1String("option"), stand}};
    for (const auto &member : members) {
        QJsonObject repaired = option.toObject();
        if (!repaired.contains(member.key)) {
            continue;
        }
        repaired.insert(member.key, member.value);
        probe.insert(optionsKey, QJsonArray{repaired});
        if (!isRefused(probe, OptionsWrong)) {
            return pointerTo(QString(), QString(member.key));
        }
    }
    return {};
}

/// The faults of a widget, of its fields, and of requirements between them.
class WidgetFaults
{
public:
    WidgetFaults(const QString &pointer, QVector<MetadataFault> &faults)
        : m_pointer(pointer)
        , m_faults(faults)
    {}

    QJsonObject run(const QJsonObject &widget);

private:
    QJsonObject repairedField(const QJsonValue &value, int index);
    void checkRequirements(QJsonObject &widget);
    QString fieldPointer(int index) const
    {
        return pointerTo(pointerTo(m_pointer, QString(fieldsKey)), index);
    }

    QString m_pointer;
    QVector<MetadataFault> &m_faults;
    bool m_hasUnknownIds = false;
};

QJsonObject WidgetFaults::run(const QJsonObject &widget)
{
    QJsonObject alone = widget;
    const QJsonValue fields = widget.value(fieldsKey);
    if (fields.isArray()) {
        alone.remove(fieldsKey);
    }
    QJsonObject repaired =
        ObjectFaults(
            m_pointer, [](const QJsonObject &object) { return parseWidget(object); }, widgetRepairs, m_faults)
            .run(alone);
    if (!fields.isArray()) {
        return repaired;
    }
    QJsonArray array;
    const QJsonArray elements = fields.toArray();
    for (int i = 0; i < elements.size(); ++i) {
        array.append(repairedField(elements.at(i), i));
    }
    repaired.insert(fieldsKey, array);
    checkRequirements(repaired);
    return repaired;
}

QJsonObject WidgetFaults::repairedField(const QJsonValue &value, int index)
{
    if (!value.isObject()) {
        m_hasUnknownIds = true;
        m_faults.append({fieldPointer(index), fieldsCode});
        return {{QLatin1String("id"), stand + QString::number(index)},
                {QLatin1String("type"), QStringLiteral("integer")},
                {QLatin1String("display"), stand}};
    }
    const int before = m_faults.size();
    QJsonObject field =
        ObjectFaults(fieldPointer(index), parseField, fieldRepairs, m_faults).run(value.toObject());
    const bool idIsUnknown =
        std::any_of(m_faults.cbegin() + before, m_faults.cend(), [](const MetadataFault &fault) {
            return fault.code == FieldIdMissing || fault.code == FieldIdWrong;
        });
    if (idIsUnknown) {
        m_hasUnknownIds = true;
        field.insert(QLatin1String("id"), stand + QString::number(index));
    }
    return field;
}

// Each field's requirements are asked for with those of all others left out.
void WidgetFaults::checkRequirements(QJsonObject &widget)
{
    if (parseWidget(widget) == 0) {
        return;
    }
    QJsonArray fields = widget.value(fieldsKey).toArray();
    QJsonArray silent;
    for (const QJsonValue &field : qAsConst(fields)) {
        QJsonObject object = field.toObject();
        object.remove(requirementsKey);
        silent.append(object);
    }
    for (int i = 0; i < fields.size(); ++i) {
        QJsonArray probe = silent;
        probe.replace(i, fields.at(i));
        widget.insert(fieldsKey, probe);
        if (const int code = parseWidget(widget)) {
            if (!m_hasUnknownIds) { // what they name may be the field whose id is at fault
                m_faults.append({pointerTo(fieldPointer(i), QString(requirementsKey)), code});
            }
            fields.replace(i, silent.at(i));
        }
    }
    widget.insert(fieldsKey, fields);
}

QJsonArray repairedWidgets(const QJsonArray &widgets, QVector<MetadataFault> &faults)
{
    QJsonArray repaired;
    for (int i = 0; i < widgets.size(); ++i) {
        const QString pointer = pointerTo(pointerTo(QString(), QString(widgetsKey)), i);
        if (widgets.at(i).isObject()) {
            repaired.append(WidgetFaults(pointer, faults).run(widgets.at(i).toObject()));
            continue;
        }
        faults.append({pointer, widgetsCode});
        repaired.append(
            QJsonObject{{QLatin1String("id"), stand}, {QLatin1String("version"), QStringLiteral("1.0.0")}});
    }
    return repaired;
}

} // namespace

MetadataFaults findMetadataFaults(const QJsonObject &metaData)
{
    MetadataFaults result;
    QJsonObject generic = metaData;
    generic.remove(widgetsKey);
    result.repaired = ObjectFaults(QString(), parseLibrary, libraryRepairs, result.faults).run(generic);

    const QJsonValue widgets = metaData.value(widgetsKey);
    if (widgets.isArray()) {
        result.repaired.insert(widgetsKey, repairedWidgets(widgets.toArray(), result.faults));
    } else if (!widgets.isUndefined()) {
        result.faults.append({pointerTo(QString(), QString(widgetsKey)), widgetsCode});
    }
    // The parser has the last word.
    const int code = parseLibrary(metaData);
    if (code != 0 && result.faults.isEmpty()) {
        result.faults.append({QString(), code});
    }
    return result;
}
