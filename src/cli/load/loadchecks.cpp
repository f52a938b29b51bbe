// SPDX-License-Identifier: Apache-2.0
#include "loadchecks.h"

#include <QtCore/QMetaMethod>

#include <kora/host.h>

#include "loadcheckinput.h"
#include "loadchecklog.h"
#include "loadcheckrun.h"
#include "loadcheckstage.h"
#include "loadcheckvalues.h"

#include <malloc.h>

#include <limits>

using namespace KORA::INTERNAL;
using KORA::AlarmInfo;

const char loadCheckName[] = "load";
const char registrationCheckName[] = "registration";
const char unloadCheckName[] = "unload";

namespace {

const int timersMs = 25; // for what a widget puts off

// Classes --------------------------------------------------------------------------------------------------

/// What a registered class must be.
struct ClassRule
{
    const QMetaObject &base;
    const char *argument; // of the constructor
    const char *what;
};

const ClassRule widgetRule{KORA::Widget::staticMetaObject, "KORA::WidgetData", "widget class"};
const ClassRule itemRule{KORA::GraphicsObject::staticMetaObject, "KORA::GraphicsObjectData",
                         "graphics object class"};

// moc writes constructors without the namespace of their class.
QString unqualifiedName(const QMetaObject &type)
{
    return QString::fromLatin1(type.className()).section(QStringLiteral("::"), -1);
}

bool hasConstructor(const QMetaObject &type, const ClassRule &rule)
{
    const QString signature =
        QStringLiteral("%1(%2)").arg(unqualifiedName(type), QLatin1String(rule.argument));
    return type.indexOfConstructor(signature.toLatin1().constData()) >= 0;
}

QString constructorsOf(const QMetaObject &type)
{
    QStringList signatures;
    for (int i = 0; i < type.constructorCount(); ++i) {
        signatures.append(QString::fromLatin1(type.constructor(i).methodSignature()));
    }
    return signatures.isEmpty() ? QStringLiteral("none") : signatures.join(QLatin1String(", "));
}

QString constructorLine(const QMetaObject &type, const ClassRule &rule)
{
    return QStringLiteral("Q_INVOKABLE explicit %1(const %2 &data) : %3(data) {}")
        .arg(unqualifiedName(type), QLatin1String(rule.argument), QLatin1String(rule.base.className()));
}

void checkClass(CheckRun &run, const QMetaObject *type, const ClassRule &rule)
{
    const QString what = QLatin1String(rule.what);
    if (!type) {
        run.error(QStringLiteral("its %1 is registered as a null pointer").arg(what),
                  QStringLiteral("pass the address of the class's staticMetaObject to registerWidget()"));
        return;
    }
    const QString name = QLatin1String(type->className());
    if (type == &rule.base) {
        run.error(
            QStringLiteral("its %1 is registered as %2 itself").arg(what, name),
            QStringLiteral("write Q_OBJECT in the class: without it, its staticMetaObject is that of %1")
                .arg(name));
    } else if (!type->inherits(&rule.base)) {
        run.error(QStringLiteral("its %1 %2 is not derived from %3")
                      .arg(what, name, QLatin1String(rule.base.className())),
                  QStringLiteral("derive it, or register another class"));
    } else if (!hasConstructor(*type, rule)) {
        run.error(QStringLiteral("its %1 %2 has no invokable constructor taking const %3 &; it has %4")
                      .arg(what, name, QLatin1String(rule.argument), constructorsOf(*type)),
                  QStringLiteral("write, with the type in full: %1").arg(constructorLine(*type, rule)));
    }
}

KORA::WidgetLibraryPluginPrivate::WidgetMetaInfo registeredClasses(const CheckRun &run)
{
    return WidgetLibraryPluginPrivateAccessor::priv(run.plugin().instance())
        ->widgetRegistry.value({run.widget().id(), run.widget().version().version()});
}

void checkWidgetClass(CheckRun &run)
{
    checkClass(run, registeredClasses(run).widgetClass, widgetRule);
    if (run.hasErrors()) {
        return;
    }
    CheckStage stage(run);
    if (!stage.makeWidget()) {
        run.error(QStringLiteral("its widget class cannot be made"), QString());
    } else if (stage.widget()->id() != run.widget().id() || !stage.widget()->widgetActionManager()) {
        run.error(QStringLiteral("its widget class does not pass on the data that it is constructed from"),
                  QStringLiteral("pass the constructor's argument to KORA::Widget"));
    }
}

void checkItemClass(CheckRun &run)
{
    checkClass(run, registeredClasses(run).graphicsObjectClass, itemRule);
    if (run.hasErrors()) {
        return;
    }
    CheckStage stage(run);
    if (!stage.makeWidget() || !stage.makeItem()) {
        run.error(QStringLiteral("its graphics object class cannot be made"), QString());
    } else if (stage.item()->widget() != stage.widget()) {
        run.error(
            QStringLiteral("its graphics object class does not pass on the data that it is constructed from"),
            QStringLiteral("pass the constructor's argument to KORA::GraphicsObject"));
    }
}

// Life -----------------------------------------------------------------------------------------------------

void liveThrough(CheckRun &run, bool valuesBeforeStart)
{
    CheckStage stage(run);
    if (!stage.makeWidget() || !stage.makeItem()) {
        return;
    }
    if (!valuesBeforeStart) {
        stage.start();
    }
    stage.setDefaults();
    stage.resize(stage.defaultSize());
    if (valuesBeforeStart) {
        stage.start();
    }
    stage.paint();
    stage.settle();
    stage.stop();
    stage.verify();
}

void dieUnstarted(CheckRun &run)
{
    CheckStage stage(run);
    stage.makeWidget();
    stage.makeItem();
}

void loseItem(CheckRun &run)
{
    CheckStage stage(run);
    if (stage.perform()) {
        stage.deleteItem(0);
        stage.setDefaults();
        stage.settle(timersMs);
        stage.stop();
        stage.start();
        stage.deleteWidget(); // while started
    }
}

void shareItems(CheckRun &run)
{
    CheckStage stage(run);
    if (stage.perform() && stage.makeItem()) {
        stage.resize(stage.defaultSize() * 0.5);
        stage.paint();
        stage.deleteItem(1);
        stage.settle(timersMs);
        stage.paint();
    }
}

void liveWithoutItem(CheckRun &run)
{
    CheckStage stage(run);
    if (stage.makeWidget()) {
        stage.setDefaults();
        stage.start();
        stage.settle(timersMs);
        stage.stop();
    }
}

void checkLifeCycle(CheckRun &run)
{
    liveThrough(run, true);
    liveThrough(run, false);
    dieUnstarted(run);
    loseItem(run);
    shareItems(run);
    liveWithoutItem(run);
}

void checkEvents(CheckRun &run)
{
    CheckStage stage(run);
    if (!stage.makeWidget() || !stage.makeItem()) {
        return;
    }
    stage.stop(); // never started: reaches nobody
    stage.paint();
    stage.setDefaults();
    stage.resize(stage.defaultSize());
    stage.start();
    stage.start();
    stage.settle(timersMs);
    stage.stop();
    stage.stop();
    stage.start(); // a widget may be started again
    stage.paint();
    stage.stop();
    stage.setDefaults();
    stage.resize(stage.defaultSize() * 2);
    stage.paint();
    stage.takeWrittenFields();
    stage.settle(2 * timersMs);
    const QSet<QString> written = stage.takeWrittenFields();
    for (const QString &fieldId : written) {
        run.warning(QStringLiteral("it writes its field %1 although it was stopped").arg(fieldId),
                    QStringLiteral("stop timers in deinitEvent and start them in initEvent"));
    }
    stage.verify();
}

// A panel and the design tool are two lives; what a widget shows in the design tool moves no machine.
void checkModes(CheckRun &run)
{
    for (const auto mode : {CheckStage::Editor, CheckStage::Runtime}) {
        CheckStage stage(run, mode);
        if (!stage.perform()) {
            return;
        }
        stage.paint();
        stage.settle(timersMs);
        stage.paint();
        stage.stop();
        stage.verify();
        if (mode == CheckStage::Editor && stage.host.commandCount > 0) {
            run.error(
                QStringLiteral("it resets or acknowledges alarms in the design tool, without any input"),
                QStringLiteral("ask isInsideProjectEditor() first"));
        }
    }
}

// Values ---------------------------------------------------------------------------------------------------

void checkKept(CheckRun &run, CheckStage &stage, const FieldMetaInformation &field, const QVariant &value,
               const QString &what)
{
    QVariant expected;
    const bool isTaken = stage.storedValue(field.id(), value, expected);
    stage.setField(field.id(), value);
    const QVariant actual = stage.fieldValue(field.id());
    // A read-only field is the widget's own to write.
    if (!field.readOnly() && (!isTaken || actual != expected)) {
        run.fieldError(field.id(), shortText(value),
                       QStringLiteral("its field %1 does not keep its %2 %3, it is %4 at once")
                           .arg(field.id(), what, shortText(value), shortText(actual)),
                       QStringLiteral("let the metadata and the widget's code agree"));
    }
}

void checkDefaults(CheckRun &run)
{
    CheckStage stage(run);
    if (!stage.perform()) {
        return;
    }
    const auto fields = run.widget().fields();
    for (const FieldMetaInformation &field : fields) {
        if (field.defaultValue().isValid() && !field.isMultiLanguageText()) {
            checkKept(run, stage, field, field.defaultValue(), QStringLiteral("default value"));
        }
        stage.paint();
    }
    stage.settle(timersMs);
    stage.verify();
}

/// Each value in turn in each field of a started widget, which then draws itself.
template<typename ValuesOf>
void setFields(CheckRun &run, ValuesOf valuesOf)
{
    CheckStage stage(run);
    if (!stage.perform()) {
        return;
    }
    const auto fields = run.widget().fields();
    for (const FieldMetaInformation &field : fields) {
        const QVariantList values = valuesOf(field);
        for (const QVariant &value : values) {
            stage.setField(field.id(), value);
            stage.paint();
            stage.settle();
        }
        if (field.defaultValue().isValid()) {
            stage.setField(field.id(), field.defaultValue());
        }
    }
    stage.settle(timersMs);
    stage.verify();
}

void checkBounds(CheckRun &run)
{
    CheckStage stage(run);
    if (!stage.perform()) {
        return;
    }
    const auto fields = run.widget().fields();
    for (const FieldMetaInformation &field : fields) {
        if (field.minimum().isValid()) {
            checkKept(run, stage, field, field.minimum(), QStringLiteral("minimum"));
        }
        if (field.maximum().isValid()) {
            checkKept(run, stage, field, field.maximum(), QStringLiteral("maximum"));
        }
    }
    setFields(run, extremeValues);
}

void checkWrongValues(CheckRun &run)
{
    setFields(run, [](const FieldMetaInformation &) { return wrongValues(); });
    const auto info = run.widget().fieldInfo();
    CheckStage stage(run);
    if (!stage.perform()) {
        return;
    }
    for (auto field = info.cbegin(); field != info.cend(); ++field) {
        if (field->isAdditionalInformation()) { // the font of a text
            stage.setField(field.key(), QVariant());
            stage.setField(field.key(), QStringLiteral("font"));
            stage.paint();
        }
    }
}

void checkRandomValues(CheckRun &run)
{
    const int valuesPerField = 20;
    const int rounds = 30;
    setFields(run, [&run](const FieldMetaInformation &field) {
        QVariantList values;
        for (int i = 0; i < valuesPerField; ++i) {
            values.append(randomValue(field, run.random()));
        }
        return values;
    });
    // All fields at once: what is wrong only in company.
    CheckStage stage(run);
    const bool isOn = stage.perform();
    const auto fields = run.widget().fields();
    for (int i = 0; isOn && i < rounds; ++i) {
        for (const FieldMetaInformation &field : fields) {
            stage.setField(field.id(), randomValue(field, run.random()));
        }
        stage.paint();
        stage.settle();
    }
}

// Size and picture -----------------------------------------------------------------------------------------

const QSizeF sizes[] = {{0, 0},     {1, 1},      {1, 4096},      {4096, 1}, {0, 300},      {300, 0},
                        {0.4, 0.6}, {33.3, 7.7}, {4096, 4096.0}, {2, 3},    {1000000, 0.1}};

void checkResize(CheckRun &run)
{
    for (const bool isStarted : {false, true}) {
        CheckStage stage(run);
        if (!stage.makeWidget() || !stage.makeItem()) {
            return;
        }
        stage.setDefaults();
        if (isStarted) {
            stage.start();
        }
        for (const QSizeF &size : sizes) {
            stage.resize(size);
            stage.settle();
            stage.verify();
        }
        stage.resize(stage.defaultSize());
    }
}

void checkPaint(CheckRun &run)
{
    const int largestPicture = 4096;
    for (const auto mode : {CheckStage::Runtime, CheckStage::Editor}) {
        CheckStage stage(run, mode);
        if (!stage.perform()) {
            return;
        }
        stage.takeWrittenFields();
        stage.paint(stage.defaultSize().toSize());
        for (const QSizeF &size : sizes) {
            stage.resize(size);
            const bool isLarge = size.width() >= largestPicture && size.height() >= largestPicture;
            stage.paint(isLarge && mode == CheckStage::Runtime ? size.toSize() : QSize(256, 256));
        }
        const QSet<QString> written = stage.takeWrittenFields();
        for (const QString &fieldId : written) {
            run.warning(QStringLiteral("it writes its field %1 while it paints or is resized").arg(fieldId),
                        QStringLiteral("write fields in events: how often a host paints is its own matter"));
        }
        stage.verify();
    }
}

// What the host tells and asks -------------------------------------------------------------------------------

void checkAlarms(CheckRun &run)
{
    if (!run.widget().receiveAlarmsEvents()) {
        return; // no host tells it of any
    }
    for (const bool isStarted : {true, false}) {
        CheckStage stage(run);
        if (!stage.perform()) {
            return;
        }
        if (!isStarted) {
            stage.stop();
        }
        stage.alarm(AlarmInfo(), QStringLiteral("an invalid alarm"));
        stage.alarm(AlarmInfo::createAlarmInfo({}), QStringLiteral("an alarm without data"));
        for (int state = AlarmInfo::StateDisabled; state <= AlarmInfo::StateNotTriggeredAcknowledged;
             ++state) {
            stage.alarm(alarmInState(static_cast<AlarmInfo::State>(state)),
                        QStringLiteral("an alarm in state %1").arg(state));
            stage.paint();
        }
        stage.settle(timersMs);
        stage.verify();
    }
}

void checkInput(CheckRun &run)
{
    for (const auto mode : {CheckStage::Runtime, CheckStage::Editor}) {
        CheckStage stage(run, mode);
        if (!stage.perform()) {
            return;
        }
        giveInput(run, stage);
        stage.settle(timersMs);
        stage.verify();
    }
}

void checkIcon(CheckRun &run, const QVariant &data, const QString &what)
{
    if (data.userType() != QMetaType::QIcon) {
        run.error(
            QStringLiteral("%1 answers the icon role with %2 instead of a QIcon").arg(what, shortText(data)),
            QStringLiteral("override icon() rather than data()"));
        return;
    }
    const auto icon = data.value<QIcon>();
    if (!icon.isNull() && icon.pixmap(64, 64).isNull()) {
        run.warning(
            QStringLiteral("its icon shows nothing"),
            QStringLiteral("is the file among the plugin's RESOURCES, under this path? An SVG file needs "
                           "Qt's SVG plugin"));
    }
}

void checkDataRoles(CheckRun &run)
{
    CheckStage stage(run);
    if (!stage.perform()) {
        return;
    }
    KORA::IconDataRole icon;
    run.call(QStringLiteral("the widget's data of the icon role"));
    checkIcon(run, stage.widget()->data(&icon), QStringLiteral("it"));
    run.call(QStringLiteral("the graphics object's data of the icon role"));
    checkIcon(run, stage.item()->data(&icon), QStringLiteral("its graphics object"));
    // What a later host may ask.
    KORA::DataRole unknown(static_cast<KORA::DataRole::Type>(1000));
    run.call(QStringLiteral("data of an unknown role"));
    stage.widget()->data(&unknown);
    stage.item()->data(&unknown);
    stage.verify();
}

void checkHostServices(CheckRun &run)
{
    for (int answers = 0; answers < CheckHost::answersCount; ++answers) {
        CheckStage stage(run);
        stage.host.answers = static_cast<CheckHost::Answers>(answers);
        if (!stage.perform()) {
            return;
        }
        const auto fields = run.widget().fields();
        for (const FieldMetaInformation &field : fields) {
            if (field.type() == FieldTypeTag || field.type() == FieldTypeTrend) {
                stage.setField(field.id(), QStringLiteral("boiler.pressure"));
                stage.settle();
                stage.setField(field.id(), stage.host.getTagValue({}));
            }
        }
        stage.settle(timersMs);
        stage.paint();
        stage.verify();
    }
}

// Growth ---------------------------------------------------------------------------------------------------

/// Bytes that the process has from the allocator; 0 under a sanitizer, which counts for itself.
qint64 allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks) + static_cast<qint64>(info.hblkhd);
}

bool liveShortly(CheckRun &run)
{
    {
        CheckStage stage(run);
        if (!stage.perform()) {
            return false;
        }
        stage.paint(QSize(16, 16));
        stage.stop();
    }
    run.tellLog();
    return true;
}

const int livesPerPeriod = 100;

/// What each life of a period left behind on average; false if there is no widget.
bool measurePeriod(CheckRun &run, qint64 &bytesPerLife)
{
    const qint64 before = allocatedBytes();
    for (int life = 0; life < livesPerPeriod; ++life) {
        if (!liveShortly(run)) {
            return false;
        }
    }
    bytesPerLife = (allocatedBytes() - before) / livesPerPeriod;
    return true;
}

// What is kept in caches stops growing at some time; what every instance leaves behind grows in every period.
void checkGrowth(CheckRun &run)
{
    const int periods = 10;
    const int warmUpPeriods = 2;
    const int fewestPeriods = 5;      // of less nothing can be said
    const qint64 toleratedBytes = 16; // per life: the smallest piece that the allocator gives is 32
    qint64 leastGrowth = std::numeric_limits<qint64>::max();
    int period = 0;
    for (; period < periods && !run.isHalfTimeOver(); ++period) {
        qint64 growth = 0;
        if (!measurePeriod(run, growth)) {
            return;
        }
        if (allocatedBytes() == 0) {
            return;
        }
        if (period >= warmUpPeriods) {
            leastGrowth = qMin(leastGrowth, growth);
        }
    }
    if (period < fewestPeriods) {
        run.note(QStringLiteral("its growth was not measured: %1 lives took half of the time limit")
                     .arg(period * livesPerPeriod),
                 QStringLiteral("give it more with --timeout"));
    } else if (leastGrowth >= toleratedBytes) {
        run.error(
            QStringLiteral("each instance that is made and deleted leaves %1 bytes behind").arg(leastGrowth),
            QStringLiteral("what the constructors and events make, destructors must delete; children of a "
                           "QObject are"));
    }
}

// Registration -------------------------------------------------------------------------------------------------

QString registrationLine(const QString &id, const QString &version)
{
    return QStringLiteral("registerWidget(QStringLiteral(\"%1\"), QStringLiteral(\"%2\"), "
                          "&<widget class>::staticMetaObject, &<item class>::staticMetaObject);")
        .arg(id, version);
}

QString undeclaredHint(const WidgetLibraryPluginMetaInformation &declared, const QString &id,
                       const QString &version)
{
    const QString canonical = VersionType(version).version();
    if (canonical != version && declared.widgets().contains({id, canonical})) {
        return QStringLiteral("write the version as %1: it is compared as text").arg(canonical);
    }
    return QStringLiteral("declare it in the metadata, or remove its registration");
}

} // namespace

void checkRegistration(CheckRun &run)
{
    using Key = QPair<QString, QString>;
    const auto &registry = WidgetLibraryPluginPrivateAccessor::priv(run.plugin().instance())->widgetRegistry;
    const WidgetLibraryPluginMetaInformation &declared = *run.plugin().metaInformation();
    const QList<Key> declaredKeys = declared.widgets().keys();
    for (const Key &key : declaredKeys) {
        if (!registry.contains(key)) {
            run.errorOf(key.first, key.second,
                        QStringLiteral("the metadata declares it but the plugin's code does not register it"),
                        QStringLiteral("write in the plugin's constructor: %1")
                            .arg(registrationLine(key.first, key.second)));
        }
    }
    const QList<Key> registeredKeys = registry.keys();
    for (const Key &key : registeredKeys) {
        if (!declared.widgets().contains(key)) {
            run.errorOf(key.first, key.second,
                        QStringLiteral("the plugin's code registers it but the metadata does not declare it"),
                        undeclaredHint(declared, key.first, key.second));
        }
    }
}

const QVector<LoadCheck> &widgetChecks()
{
    static const QVector<LoadCheck> checks{
        {"widget-class", "the widget class is derived from KORA::Widget and can be made", true,
         checkWidgetClass},
        {"item-class", "the graphics object class is derived from KORA::GraphicsObject and can be made", true,
         checkItemClass},
        {"life-cycle", "made, started, stopped and deleted in every order that hosts use", false,
         checkLifeCycle},
        {"events", "started and stopped twice, values and sizes before the start and after the stop", false,
         checkEvents},
        {"defaults", "every field keeps its default value", false, checkDefaults},
        {"bounds", "every field keeps its bounds; the ends of its type and what lies beyond", false,
         checkBounds},
        {"wrong-values", "every field gets values of wrong types and the invalid value", false,
         checkWrongValues},
        {"random-values", "every field gets random values, the same for the same --seed", false,
         checkRandomValues},
        {"resize", "sizes from 0x0 to 4096x4096, one side 0, fractions, and larger than any screen", false,
         checkResize},
        {"paint", "draws at each of these sizes and leaves the painter as it was", false, checkPaint},
        {"modes", "lives in the design tool and on a panel", false, checkModes},
        {"alarms", "alarms in every state, invalid and empty ones", false, checkAlarms},
        {"input", "touches of one to three fingers, mouse, wheel, keys and focus", false, checkInput},
        {"data-roles", "gives its icon, and takes a role that it does not know", false, checkDataRoles},
        {"host-services", "tags, trends and alarms that are missing, empty, very many or broken", false,
         checkHostServices},
        {"growth", "made and deleted 1,000 times without growing memory", false, checkGrowth},
    };
    return checks;
}
