// SPDX-License-Identifier: Apache-2.0
#include "stillplant.h"

#include <kora/dev/panes/alarmspane.h>
#include <kora/dev/panes/tagspane.h>
#include <kora/dev/panes/trendspane.h>

#include <support/testmain.h>

#include <QtTest/QtTest>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QTableView>
#include <QtWidgets/QToolButton>

namespace {

/// A window round a pane. The platform warns of windows whose contents limit their size, which this one's do not.
struct Window : QWidget
{
    bool shows(QWidget &pane, const QSize &size)
    {
        pane.setParent(this);
        resize(size);
        pane.setGeometry(rect());
        pane.show();
        show();
        return QTest::qWaitForWindowExposed(this);
    }
};

template<typename T>
T *control(QWidget &pane, const char *name)
{
    T *found = pane.findChild<T *>(QLatin1String(name));
    return found ? found : (qFatal("no control %s", name), nullptr);
}

void click(QWidget &pane, const char *button)
{
    QTest::mouseClick(control<QToolButton>(pane, button), Qt::LeftButton);
}

/// Opens the editor of a cell with a double-click.
template<typename T>
T *editCell(ProviderPane &pane, int row, int column)
{
    QTableView *view = pane.table();
    const QModelIndex cell = view->model()->index(row, column);
    view->scrollTo(cell);
    const QPoint place = view->visualRect(cell).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    return view->findChild<T *>(QStringLiteral("cellEditor"));
}

} // namespace

class TestProviderPanes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void panesAreUsedByMouseAndKeys();
    void alarmPaneActsAndEdits();
    void theColourOfAStateIsSeen();
    void numbersAndFilesAreEnteredInCells();
    void trendIsDrawnWithItsGaps();
    void replayFilesAreNamedFromTheScenario();
    void everyControlHasAName();
};

void TestProviderPanes::panesAreUsedByMouseAndKeys()
{
    Plant plant;
    plant.addDefaults();
    Window window;
    TagsPane pane(&plant);
    QVERIFY(window.shows(pane, QSize(500, 180)));
    QSignalSpy edits(&plant, &Providers::edited);

    // A value is typed; a wrong one is refused, with the reason below the table.
    auto *line = editCell<QLineEdit>(pane, 0, TagTable::ValueColumn);
    QVERIFY(line);
    QTest::keyClicks(line, QStringLiteral("12.5"));
    plant.clock()->advance(100); // the generator goes on; what is typed stays
    QTest::qWait(80);
    QCOMPARE(line->text(), QStringLiteral("12.5"));
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_COMPARE(plant.tags()->value(QStringLiteral("level")), QVariant(12.5)); // the view takes it later
    QCOMPARE(edits.count(), 1);
    line = editCell<QLineEdit>(pane, 1, TagTable::ValueColumn);
    QVERIFY(line);
    QTest::keyClicks(line, QStringLiteral("fast"));
    QTest::keyClick(line, Qt::Key_Return);
    auto *problem = control<QLabel>(pane, "tagsProblem");
    QTRY_VERIFY(problem->isVisible());
    QCOMPARE(problem->text(), QStringLiteral("Tag \"speed\": \"fast\" is no number"));

    // Rows are added, duplicated and removed by keys; F2 edits; a choice is taken at once.
    pane.table()->setFocus();
    QTest::keyClick(pane.table(), Qt::Key_Insert);
    QCOMPARE(pane.currentName(), QStringLiteral("tag"));
    line = pane.table()->findChild<QLineEdit *>(QStringLiteral("cellEditor"));
    QVERIFY(line);
    QTest::keyClicks(line, QStringLiteral("flow"));
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_VERIFY(plant.tags()->contains(QStringLiteral("flow")));
    QTest::keyClick(pane.table(), Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(pane.currentName(), QStringLiteral("flow2"));
    pane.table()->setCurrentIndex(plant.tags()->index(5, TagTable::TypeColumn));
    QTest::keyClick(pane.table(), Qt::Key_F2);
    auto *combo = pane.table()->findChild<QComboBox *>(QStringLiteral("cellEditor"));
    QVERIFY(combo);
    QTest::keyClick(combo, Qt::Key_Home);
    QTest::keyClick(combo, Qt::Key_Return);
    QTRY_COMPARE(plant.tags()->definition(QStringLiteral("flow2")).type, TagTypeBool);
    pane.table()->setCurrentIndex(plant.tags()->index(5, TagTable::KnownColumn));
    QTest::keyClick(pane.table(), Qt::Key_Space);
    QVERIFY(!plant.tags()->definition(QStringLiteral("flow2")).isKnown);
    edits.clear();
    QTest::keyClick(pane.table(), Qt::Key_Up, Qt::ShiftModifier);
    QTest::keyClick(pane.table(), Qt::Key_Delete);
    QVERIFY(!plant.tags()->contains(QStringLiteral("flow"))
            && !plant.tags()->contains(QStringLiteral("flow2")));
    QCOMPARE(edits.count(), 1); // two rows, one edit

    // The clock.
    click(pane, "tagsClockPause");
    QVERIFY(!plant.clock()->isPaused());
    click(pane, "tagsClockStep");
    QVERIFY(plant.clock()->isPaused());
    auto *seed = control<QAbstractSpinBox>(pane, "tagsClockSeed");
    seed->selectAll();
    QTest::keyClicks(seed, QStringLiteral("42"));
    QTest::keyClick(seed, Qt::Key_Return);
    QCOMPARE(plant.clock()->seed(), 42U);

    // A pane may go while a cell is being edited.
    line = editCell<QLineEdit>(pane, 0, TagTable::NameColumn);
    QVERIFY(line);
    QTest::keyClicks(line, QStringLiteral("half"));
}

void TestProviderPanes::alarmPaneActsAndEdits()
{
    Plant plant;
    plant.addDefaults();
    Window window;
    AlarmsPane pane(&plant);
    QVERIFY(window.shows(pane, QSize(800, 300)));
    QSignalSpy edits(&plant, &Providers::edited);
    const QString name = QStringLiteral("levelHigh");
    QCOMPARE(pane.currentName(), name);
    QVERIFY(!control<QToolButton>(pane, "alarmsAcknowledge")->isEnabled());
    click(pane, "alarmsRaise");
    QCOMPARE(plant.alarms()->definition(name).state, AlarmInfo::StateTriggeredNotAcknowledged);
    QCOMPARE(edits.count(), 1);
    QTRY_VERIFY(control<QToolButton>(pane, "alarmsAcknowledge")->isEnabled());
    click(pane, "alarmsAcknowledge");
    click(pane, "alarmsClear");
    QCOMPARE(plant.alarms()->definition(name).state, AlarmInfo::StateNotTriggered);
    click(pane, "alarmsDisable");
    QCOMPARE(plant.alarms()->definition(name).state, AlarmInfo::StateDisabled);
    click(pane, "alarmsBurst");
    QCOMPARE(plant.alarms()->burstRate(), 10);

    click(pane, "alarmsDetails");
    auto *line = control<QLineEdit>(pane, "alarmFormName");
    QVERIFY(line->isVisible());
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, QStringLiteral("high"));
    QTest::keyClick(line, Qt::Key_Return);
    QVERIFY(plant.alarms()->contains(QStringLiteral("high")));
    QCOMPARE(pane.currentName(), QStringLiteral("high"));
    // A colour is taken away by key, and chosen in a dialog that leaves the window usable.
    auto *swatch = control<QWidget>(pane, "alarmFormBackground3");
    swatch->setFocus();
    QTest::keyClick(swatch, Qt::Key_Delete);
    QVERIFY(!plant.alarms()
                 ->definition(QStringLiteral("high"))
                 .backgroundColors.contains(AlarmInfo::StateTriggeredNotAcknowledged));
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
    QTest::keyClick(swatch, Qt::Key_Space);
    auto *dialog = swatch->findChild<QDialog *>(QStringLiteral("colorDialog"));
    QVERIFY(dialog && dialog->isVisible() && !dialog->isModal());
    dialog->accept();
    QCOMPARE(plant.alarms()
                 ->definition(QStringLiteral("high"))
                 .backgroundColors.value(AlarmInfo::StateTriggeredNotAcknowledged),
             QColor(Qt::white));
    // The form of an alarm that is removed does nothing.
    QVERIFY(plant.alarms()->remove(QStringLiteral("high")));
    QTest::keyClick(line, Qt::Key_Return);
    QVERIFY(!plant.alarms()->contains(QStringLiteral("high")));
    // The pane may go while something is typed.
    pane.setCurrentName(QStringLiteral("pumpFault"));
    line->setFocus();
    QTest::keyClicks(line, QStringLiteral("half"));
}

void TestProviderPanes::theColourOfAStateIsSeen()
{
    Plant plant;
    plant.addDefaults();
    Window window;
    AlarmsPane pane(&plant);
    QVERIFY(window.shows(pane, QSize(900, 600)));
    click(pane, "alarmsDetails");
    const auto color = [&plant, &pane] {
        return plant.alarms()
            ->definition(pane.currentName())
            .backgroundColors.value(AlarmInfo::StateTriggeredNotAcknowledged);
    };
    auto *swatch = control<QWidget>(pane, "alarmFormBackground3");
    const auto shown = [swatch] {
        return swatch->grab().toImage().pixelColor(swatch->width() / 2, swatch->height() / 2);
    };
    const QColor before = color();
    QVERIFY(before.isValid());
    QCOMPARE(shown(), before);
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
    QTest::keyClick(swatch, Qt::Key_Return);
    auto *dialog = swatch->findChild<QColorDialog *>(QStringLiteral("colorDialog"));
    QVERIFY(dialog);
    QCOMPARE(dialog->currentColor(), before);
    QTest::keyClick(swatch, Qt::Key_Return); // no second one
    QCOMPARE(swatch->findChildren<QColorDialog *>().size(), 1);
    // What is being chosen is seen at once, and gone if it is not taken.
    dialog->setCurrentColor(Qt::darkCyan);
    QCOMPARE(shown(), QColor(Qt::darkCyan));
    QCOMPARE(color(), before);
    dialog->reject();
    QCOMPARE(shown(), before);
}

void TestProviderPanes::numbersAndFilesAreEnteredInCells()
{
    Plant plant;
    plant.addDefaults();
    Window window;
    TrendsPane pane(&plant);
    QVERIFY(window.shows(pane, QSize(900, 300)));
    const QString name = plant.trends()->nameOf(0);
    auto *spin = editCell<QSpinBox>(pane, 0, TrendTable::IntervalColumn);
    QVERIFY(spin);
    QCOMPARE(spin->value(), plant.trends()->definition(name).interval);
    QCOMPARE(spin->minimum(), int(TrendDefinition::MinimumInterval));
    spin->selectAll();
    QTest::keyClicks(spin, QStringLiteral("250"));
    QTest::keyClick(spin, Qt::Key_Return);
    QTRY_COMPARE(plant.trends()->definition(name).interval, 250);

    TrendDefinition trend = plant.trends()->definition(name);
    trend.source = TrendDefinition::FromGenerator;
    trend.generator.kind = Generator::CsvReplay;
    QVERIFY(plant.trends()->edit(name, trend));
    auto *line = editCell<QLineEdit>(pane, 0, TrendTable::GeneratorColumn + 5);
    QVERIFY(line);
    QTest::keyClicks(line, QStringLiteral("none.csv"));
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_COMPARE(plant.trends()->definition(name).generator.csvFile, QStringLiteral("none.csv"));
    QVERIFY(plant.trends()->rowProblem(0).contains(QStringLiteral("none.csv")));
}

void TestProviderPanes::trendIsDrawnWithItsGaps()
{
    Plant plant;
    TrendDefinition trend;
    trend.name = QStringLiteral("level");
    trend.source = TrendDefinition::FromGenerator;
    trend.generator = generator(Generator::Sine, 20000, 20, 80);
    trend.interval = 1000;
    QVERIFY(plant.trends()->add(trend));
    plant.clock()->advance(60000);
    Window window;
    TrendsPane pane(&plant);
    QVERIFY(window.shows(pane, QSize(900, 400)));
    auto *curve = control<QWidget>(pane, "trendsCurve");
    // The columns of the picture that the line passes, as a share of all.
    const auto drawn = [curve] {
        const QImage picture = curve->grab().toImage();
        const QColor line = curve->palette().color(QPalette::Link);
        int columns = 0;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                const QColor pixel = picture.pixelColor(x, y);
                if (qAbs(pixel.red() - line.red()) + qAbs(pixel.green() - line.green())
                        + qAbs(pixel.blue() - line.blue())
                    < 60) {
                    ++columns;
                    break;
                }
            }
        }
        return double(columns) / picture.width();
    };
    const double whole = drawn();
    QVERIFY2(whole > 0.7, QByteArray::number(whole));
    QVERIFY(curve->toolTip().startsWith(QStringLiteral("Now "))
            && curve->toolTip().endsWith(QStringLiteral("; last minute, not asked yet")));

    trend.hasGaps = true;
    QVERIFY(plant.trends()->edit(trend.name, trend));
    const double withGaps = drawn();
    QVERIFY2(withGaps > 0.4 && withGaps < whole - 0.1, QByteArray::number(withGaps));
    // What a widget asked for last is what is shown.
    plant.trends()->trendValue(trend.name, noon, noon.addSecs(30), 7, WidgetActionManager::UtcTime);
    QTRY_VERIFY2(curve->toolTip().contains(QStringLiteral("; asked for 7, got ")),
                 qPrintable(curve->toolTip()));
    QVERIFY(curve->toolTip().endsWith(QStringLiteral("12:00:00 to 12:00:30")));
    QVERIFY(drawn() > 0.2);
    trend.answersEmpty = true;
    QVERIFY(plant.trends()->edit(trend.name, trend));
    QCOMPARE(drawn(), 0.0);
    QVERIFY(plant.trends()->remove(trend.name));
    QTRY_COMPARE(curve->toolTip(), QStringLiteral("No trend is selected"));
    QCOMPARE(drawn(), 0.0);
}

void TestProviderPanes::replayFilesAreNamedFromTheScenario()
{
    QTemporaryDir dir;
    const auto put = [&dir](const char *name) {
        const QString path = dir.filePath(QLatin1String(name));
        QFile file(path);
        return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
                       && file.write("time,value\n0,1\n1000,2\n") > 0
                   ? path
                   : QString();
    };
    const QString beside = put("scenario/data/level.csv");
    const QString outside = put("level.csv");
    Plant plant;
    plant.addDefaults();
    plant.setFolder(dir.filePath(QStringLiteral("scenario")));
    Window window;
    TagsPane tags(&plant);
    TrendsPane trends(&plant);
    const auto choose = [&window](ProviderPane &pane, const char *button, const QString &path) {
        QVERIFY(window.shows(pane, QSize(700, 300)));
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
        click(pane, button);
        auto *dialog = pane.findChild<QFileDialog *>(QStringLiteral("replayDialog"));
        QVERIFY(dialog && dialog->isVisible());
        Q_EMIT dialog->fileSelected(path);
        dialog->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    choose(tags, "tagsReplay", beside);
    Generator taken = plant.tags()->definition(tags.currentName()).generator;
    QCOMPARE(taken.kind, Generator::CsvReplay);
    QCOMPARE(taken.csvFile, QStringLiteral("data/level.csv"));
    choose(trends, "trendsReplay", outside);
    const TrendDefinition trend = plant.trends()->definition(trends.currentName());
    QCOMPARE(trend.source, TrendDefinition::FromGenerator);
    QCOMPARE(trend.generator.kind, Generator::CsvReplay);
    QCOMPARE(trend.generator.csvFile, outside);
}

void TestProviderPanes::everyControlHasAName()
{
    QApplication::setFont(QFont(QStringLiteral("Roboto"), 9));
    Plant plant;
    plant.addDefaults();
    Window window;
    TagsPane tags(&plant);
    TrendsPane trends(&plant);
    AlarmsPane alarms(&plant);
    click(alarms, "alarmsDetails");
    for (ProviderPane *pane : QVector<ProviderPane *>{&tags, &trends, &alarms}) {
        QVERIFY(window.shows(*pane, QSize(500, 180)));
        QVERIFY2(pane->minimumSizeHint().width() <= 500, QByteArray::number(pane->minimumSizeHint().width()));
        const QList<QWidget *> controls = pane->findChildren<QWidget *>();
        for (QWidget *control : controls) {
            const bool isInner = control->objectName().startsWith(QLatin1String("qt_"));
            if (control->focusPolicy() == Qt::NoFocus || isInner || control->focusProxy()
                || control->window() != &window) { // the lists of combo boxes
                continue;
            }
            const QByteArray who = control->objectName().toUtf8() + control->metaObject()->className();
            QVERIFY2(!control->objectName().isEmpty() && !control->accessibleName().isEmpty(), who);
            QVERIFY2(!qobject_cast<QToolButton *>(control) || !control->toolTip().isEmpty(), who);
            QVERIFY2(!qobject_cast<QToolButton *>(control) || control->width() >= control->sizeHint().width(),
                     who);
        }
    }
}

KORA_TEST_MAIN(TestProviderPanes)

#include "tst_providerpanes.moc"
