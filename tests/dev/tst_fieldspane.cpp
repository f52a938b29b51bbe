// SPDX-License-Identifier: Apache-2.0
#include "memorylibrary.h"

#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QMimeData>
#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtGui/QDropEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSlider>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QToolButton>

#include <kora/core/metatypes_p.h>
#include <kora/dev/fields/numberbox.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/dev/theme/theme.h>

using namespace KORA::DEV;
using namespace KORA::INTERNAL;

namespace {

const char *const allTypes = R"([
    {"id": "title", "type": "string", "display": "Title", "group": "Texts", "multiLanguage": true,
     "defaultValue": "Tank", "defaultFont": {"family": "Roboto", "size": 10, "bold": false},
     "description": "Name of what is shown",
     "displayFontFamily": "Font", "displayFontSize": "Size", "displayFontBold": "Bold",
     "displayFontStyle": "Style", "displayFontUnderline": "Underline"},
    {"id": "unit", "type": "string", "display": "Unit", "group": "Texts", "defaultValue": "bar",
     "tagCanBeAttached": true,
     "displayFontFamily": "Font", "displayFontSize": "Size", "displayFontBold": "Bold",
     "displayFontStyle": "Style", "displayFontUnderline": "Underline"},
    {"id": "recipes", "type": "stringList", "display": "Recipes", "group": "Texts",
     "defaultValue": ["Milk", "Cream", "Butter"],
     "displayFontFamily": "Font", "displayFontSize": "Size", "displayFontBold": "Bold",
     "displayFontStyle": "Style", "displayFontUnderline": "Underline"},
    {"id": "states", "type": "stringMap", "display": "State texts", "group": "Texts",
     "defaultValue": [{"i": 0, "v": "Off"}, {"i": 1, "v": "On"}],
     "displayFontFamily": "Font", "displayFontSize": "Size", "displayFontBold": "Bold",
     "displayFontStyle": "Style", "displayFontUnderline": "Underline"},
    {"id": "level", "type": "integer", "display": "Level", "group": "Scale", "minimum": 0, "maximum": 100,
     "defaultValue": 42, "tagCanBeAttached": true},
    {"id": "offset", "type": "integer", "display": "Offset", "group": "Scale", "defaultValue": 0},
    {"id": "opacity", "type": "double", "display": "Opacity", "group": "Scale", "minimum": 0, "maximum": 1,
     "defaultValue": 1},
    {"id": "factor", "type": "double", "display": "Factor", "group": "Scale", "defaultValue": 2.5},
    {"id": "enabled", "type": "bool", "display": "Enabled", "group": "Behavior", "defaultValue": true},
    {"id": "shape", "type": "option", "display": "Shape", "group": "Appearance", "defaultValue": 1,
     "options": [{"index": 0, "option": "flat"}, {"index": 1, "option": "dished"}, {"index": 2, "option": "cone"}]},
    {"id": "color", "type": "color", "display": "Color", "group": "Appearance", "defaultValue": "#336699"},
    {"id": "valueFont", "type": "font", "display": "Value font", "group": "Appearance",
     "defaultFont": {"family": "Roboto Medium", "size": 14, "bold": false},
     "displayFontFamily": "Font", "displayFontSize": "Size", "displayFontBold": "Bold",
     "displayFontStyle": "Style", "displayFontUnderline": "Underline"},
    {"id": "image", "type": "image", "display": "Image", "group": "Appearance"},
    {"id": "value", "type": "tag", "display": "Value", "group": "Live", "tagAcceptedTypes": ["numeric"]},
    {"id": "history", "type": "trend", "display": "History", "group": "Live"},
    {"id": "peak", "type": "double", "display": "Highest value since the last start", "group": "Live",
     "readOnly": true, "defaultValue": 0},
    {"id": "limit", "type": "double", "display": "Limit", "group": "Live", "requirements": "enabled==false",
     "defaultValue": 7},
    {"id": "secret", "type": "string", "display": "Secret", "private": true,
     "displayFontFamily": "Font", "displayFontSize": "Size", "displayFontBold": "Bold",
     "displayFontStyle": "Style", "displayFontUnderline": "Underline"}
])";

} // namespace

class TestFieldsPane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(QStringLiteral("Fusion"));
        m_fields = fieldsFromJson(allTypes);
    }

    void typingIsLiveAndOneStep();
    void escapeRestoresAndLeavesNoStep();
    void numbersAreClampedAndRefused();
    void sliderDragIsOneStep();
    void wheelScrollsUnfocusedEditors();
    void textsAreKeptPerLanguage();
    void severalLinesAreEditedInABox();
    void listsAndMapsAreEditedInABox();
    void choicesAndColors();
    void fontPartsHaveRows();
    void imageHasThreeStates();
    void imagesComeFromFiles();
    void fieldsFollowTags();
    void pluginWritesShowAndAreCoalesced();
    void rowMenuCopiesAndSends();
    void modifiedRowsAreMarkedAndReset();
    void geometryIsEdited();
    void everyControlHasAName();
    void thousandFieldsAreThereAtOnce();
    void tabGoesFromEditorToEditor();
    void screenshots();

private:
    Fields m_fields;
};

void TestFieldsPane::typingIsLiveAndOneStep()
{
    ProbeBench bench(m_fields);
    const int steps = bench.document.undoStack()->count();
    auto *line = bench.find<QLineEdit>(QStringLiteral("unit"));
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, QStringLiteral("psi"));
    QCOMPARE(bench.value("unit").toString(), QStringLiteral("bar")); // not with each key
    QTRY_COMPARE(bench.value("unit").toString(), QStringLiteral("psi"));
    QTest::keyClicks(line, QStringLiteral("g"));
    QTest::keyClick(line, Qt::Key_Return);
    QCOMPARE(bench.value("unit").toString(), QStringLiteral("psig"));
    QCOMPARE(bench.document.undoStack()->count(), steps + 1);
    QTest::keyClicks(line, QStringLiteral("!")); // a new entry
    bench.pane.findChild<QLineEdit *>(QStringLiteral("fieldsFilter"))->setFocus();
    QCOMPARE(bench.value("unit").toString(), QStringLiteral("psig!"));
    QCOMPARE(bench.document.undoStack()->count(), steps + 2);
    bench.document.undoStack()->undo();
    QTRY_COMPARE(line->text(), QStringLiteral("psig"));
    bench.document.undoStack()->undo();
    QTRY_COMPARE(line->text(), QStringLiteral("bar"));

    // A test text.
    auto *menu = bench.find<QMenu>(QStringLiteral("unitMenu"));
    menu->actions().last()->trigger();
    QVERIFY(bench.value("unit").toString().contains(QLatin1String("%1")));
}

void TestFieldsPane::escapeRestoresAndLeavesNoStep()
{
    ProbeBench bench(m_fields);
    auto *line = bench.find<QLineEdit>(QStringLiteral("title"));
    const int index = bench.document.undoStack()->index();
    line->setFocus();
    line->end(false);
    QTest::keyClicks(line, QStringLiteral("er"));
    QTRY_COMPARE(bench.value("title").toString(), QStringLiteral("Tanker"));
    QTest::keyClicks(line, QStringLiteral("s")); // not sent yet
    QTest::keyClick(line, Qt::Key_Escape);
    QCOMPARE(line->text(), QStringLiteral("Tank"));
    QCOMPARE(bench.value("title").toString(), QStringLiteral("Tank"));
    QVERIFY(!bench.widget->isModified(QStringLiteral("title")));
    QCOMPARE(bench.document.undoStack()->index(), index);
}

void TestFieldsPane::numbersAreClampedAndRefused()
{
    ProbeBench bench(m_fields);
    FieldManager *level = bench.manager("level");
    auto *box = bench.find<NumberBox>(QStringLiteral("level"));
    auto *text = box->findChild<QLineEdit *>();
    box->setFocus();
    text->selectAll();
    QTest::keyClicks(text, QStringLiteral("150"));
    QCOMPARE(level->note(level->row()), QStringLiteral("becomes 100"));
    QCOMPARE(bench.value("level").toInt(), 100);
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(text->text(), QStringLiteral("100"));
    QCOMPARE(level->note(level->row()), QString());
    QTest::keyClick(text, Qt::Key_Up); // not beyond the bound
    QCOMPARE(bench.value("level").toInt(), 100);
    QTest::keyClick(text, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(bench.value("level").toInt(), 90);
    QTest::keyClick(text, Qt::Key_Return);

    text->selectAll();
    QTest::keyClicks(text, QStringLiteral("4x"));
    QCOMPARE(level->note(level->row()), QStringLiteral("not a whole number"));
    QCOMPARE(bench.value("level").toInt(), 4);
    QTest::keyClick(text, Qt::Key_Return); // stays, to be put right
    QCOMPARE(text->text(), QStringLiteral("4x"));
    QTest::keyClick(text, Qt::Key_Escape);
    QCOMPARE(text->text(), QStringLiteral("90"));
    QCOMPARE(level->note(level->row()), QString());

    auto *factor = bench.find<NumberBox>(QStringLiteral("factor"))->findChild<QLineEdit *>();
    for (const char *number : {"1,25", "1e300", "0.123456789"}) {
        factor->selectAll();
        QTest::keyClicks(factor, QLatin1String(number));
        QTest::keyClick(factor, Qt::Key_Return);
        QCOMPARE(bench.value("factor").toDouble(),
                 QString::fromLatin1(number).replace(QLatin1Char(','), QLatin1Char('.')).toDouble());
    }
    QCOMPARE(bench.manager("factor")->note(bench.manager("factor")->row()),
             QStringLiteral("text form: 0.123457"));
    bench.find<NumberBox>(QStringLiteral("offset"))->findChild<QLineEdit *>()->selectAll();
    QTest::keyClicks(bench.find<NumberBox>(QStringLiteral("offset")), QStringLiteral("99999999999"));
    QCOMPARE(bench.manager("offset")->note(bench.manager("offset")->row()), QStringLiteral("beyond 32 bits"));
}

void TestFieldsPane::sliderDragIsOneStep()
{
    ProbeBench bench(m_fields);
    auto *slider = bench.find<QSlider>(QStringLiteral("levelSlider"));
    QCoreApplication::processEvents();
    const int steps = bench.document.undoStack()->count();
    const int handle = slider->style()->pixelMetric(QStyle::PM_SliderLength, nullptr, slider);
    const auto mouse = [&](QEvent::Type type, int x) {
        const QPointF position(x, slider->height() / 2);
        QMouseEvent event(type, position, type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        QCoreApplication::sendEvent(slider, &event);
    };
    const int start = QStyle::sliderPositionFromValue(0, 100, 42, slider->width() - handle) + handle / 2;
    mouse(QEvent::MouseButtonPress, start);
    for (int x = start; x < slider->width(); x += 3) {
        mouse(QEvent::MouseMove, x);
    }
    QVERIFY(bench.value("level").toInt() > 90); // live
    mouse(QEvent::MouseButtonRelease, slider->width());
    QCOMPARE(bench.document.undoStack()->count(), steps + 1);
    bench.document.undoStack()->undo();
    QCOMPARE(bench.value("level").toInt(), 42);
    QTRY_COMPARE(slider->value(), 42);
}

void TestFieldsPane::wheelScrollsUnfocusedEditors()
{
    ProbeBench bench(m_fields);
    bench.pane.resize(370, 240);
    QCoreApplication::processEvents();
    const auto turn = [&bench](QWidget *widget) {
        const QPoint middle = widget->mapTo(&bench.pane, widget->rect().center());
        QWheelEvent event(middle, bench.pane.mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // others are not passed on to parents
        qApp->notify(bench.pane.windowHandle(), &event);
    };
    QScrollBar *bar = bench.pane.tree()->verticalScrollBar();
    for (const char *name : {"level", "levelSlider", "shape", "color"}) {
        auto *editor = bench.find<QWidget>(QLatin1String(name));
        bench.pane.tree()->scrollToItem(
            bench.pane.fieldManagers().lowerBound(QLatin1String(name, 5)).value()->row(),
            QAbstractItemView::PositionAtCenter);
        QCoreApplication::processEvents();
        const int before = bar->value();
        QVERIFY2(before > 0, name);
        turn(editor);
        QVERIFY2(bar->value() < before && !editor->hasFocus(), name);
    }
    QCOMPARE(bench.value("level").toInt(), 42);
    QCOMPARE(bench.value("shape").toInt(), 1);
    auto *box = bench.find<NumberBox>(QStringLiteral("level"));
    box->setFocus();
    QCoreApplication::processEvents();
    turn(box);
    QCOMPARE(bench.value("level").toInt(), 43);
}

void TestFieldsPane::textsAreKeptPerLanguage()
{
    ProbeBench bench(m_fields);
    FieldManager *title = bench.manager("title");
    QCOMPARE(title->rows().size(), 1 + 1 + 5); // the text, Italian, the parts of its font
    auto *italian = bench.find<QLineEdit>(QStringLiteral("titleitIT"));
    italian->selectAll();
    QTest::keyClicks(italian, QStringLiteral("Serbatoio"));
    QTest::keyClick(italian, Qt::Key_Return);
    QCOMPARE(bench.value("title").toString(), QStringLiteral("Tank"));
    auto *size = bench.find<NumberBox>(QStringLiteral("titleSize"))->findChild<QLineEdit *>();
    size->selectAll();
    QTest::keyClicks(size, QStringLiteral("20"));
    QTest::keyClick(size, Qt::Key_Return);
    QCOMPARE(bench.value("title.font").value<QFont>().pointSize(), 20);
    bench.document.setLanguage(QStringLiteral("it-IT"));
    QCOMPARE(bench.value("title").toString(), QStringLiteral("Serbatoio"));
    QCOMPARE(bench.find<QLineEdit>(QStringLiteral("title"))->text(), QStringLiteral("Serbatoio"));
    QCOMPARE(bench.find<QLineEdit>(QStringLiteral("titleenUS"))->text(), QStringLiteral("Tank"));
    bench.manager("title")->reset();
    QCOMPARE(bench.value("title").toString(), QStringLiteral("Tank"));
    QCOMPARE(bench.value("title.font").value<QFont>().pointSize(), 10);
}

void TestFieldsPane::severalLinesAreEditedInABox()
{
    ProbeBench bench(m_fields);
    const int steps = bench.document.undoStack()->count();
    const auto openBox = [&bench] {
        bench.find<QMenu>(QStringLiteral("unitMenu"))->actions().first()->trigger();
        return bench.find<QPlainTextEdit>(QStringLiteral("unitLines"));
    };
    QPlainTextEdit *box = openBox();
    QCOMPARE(box->toPlainText(), QStringLiteral("bar"));
    box->setPlainText(QStringLiteral("bar\nabsolute"));
    QTRY_COMPARE(bench.value("unit").toString(), QStringLiteral("bar\nabsolute"));
    box->window()->close();
    QCOMPARE(bench.document.undoStack()->count(), steps + 1);
    QTRY_COMPARE(bench.manager("unit")->note(bench.manager("unit")->row()), QStringLiteral("2 lines"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    box = openBox();
    box->setPlainText(QStringLiteral("psi"));
    QTRY_COMPARE(bench.value("unit").toString(), QStringLiteral("psi"));
    QTest::keyClick(box->window(), Qt::Key_Escape);
    QCOMPARE(bench.value("unit").toString(), QStringLiteral("bar\nabsolute"));
    QCOMPARE(bench.document.undoStack()->index(), steps + 1);
}

void TestFieldsPane::listsAndMapsAreEditedInABox()
{
    ProbeBench bench(m_fields);
    const int steps = bench.document.undoStack()->count();
    auto *button = bench.find<QPushButton>(QStringLiteral("recipes"));
    QVERIFY(button->toolTip().startsWith(QLatin1String("3 texts")));
    button->click();
    auto *list = bench.find<QListWidget>(QStringLiteral("recipesList"));
    QVERIFY(list->isVisible());
    list->setCurrentRow(0);
    list->window()->findChild<QPushButton *>(QStringLiteral("recipesDown"))->click();
    QGuiApplication::clipboard()->setText(QStringLiteral("Whey\nCurd"));
    list->window()->findChild<QPushButton *>(QStringLiteral("recipesPaste"))->click();
    QCOMPARE(bench.value("recipes").toStringList().join(QLatin1Char(' ')),
             QStringLiteral("Cream Milk Butter Whey Curd"));
    list->window()->close();
    QCOMPARE(bench.document.undoStack()->count(), steps + 1);

    bench.find<QPushButton>(QStringLiteral("states"))->click();
    auto *table = bench.find<QTableWidget>(QStringLiteral("statesTable"));
    auto *problem = bench.find<QLabel>(QStringLiteral("statesProblem"));
    table->item(1, 0)->setText(QStringLiteral("0"));
    QVERIFY(problem->isVisible() && problem->text().contains(QLatin1String("0 is there already")));
    QTRY_COMPARE(table->item(1, 0)->text(), QStringLiteral("1"));
    table->window()->findChild<QPushButton *>(QStringLiteral("statesAdd"))->click();
    QTRY_COMPARE(table->rowCount(), 3);
    table->item(2, 1)->setText(QStringLiteral("Fault"));
    QGuiApplication::clipboard()->setText(QStringLiteral("7=A=B\n1=again\nx=y"));
    table->window()->findChild<QPushButton *>(QStringLiteral("statesPaste"))->click();
    const StringMap expected{{0, QStringLiteral("Off")},
                             {1, QStringLiteral("On")},
                             {2, QStringLiteral("Fault")},
                             {7, QStringLiteral("A=B")}};
    QCOMPARE(bench.value("states").value<StringMap>(), expected);
    QCOMPARE(problem->text(), QStringLiteral("not added: 1=again, x=y"));
    QTest::keyClick(table->window(), Qt::Key_Escape);
    QCOMPARE(bench.value("states").value<StringMap>().size(), 2);
}

void TestFieldsPane::choicesAndColors()
{
    ProbeBench bench(m_fields);
    auto *shape = bench.find<QComboBox>(QStringLiteral("shape"));
    QCOMPARE(shape->currentText(), QStringLiteral("1 - dished"));
    bench.setFromPlugin("shape", 7);
    QTRY_COMPARE(shape->currentText(), QStringLiteral("7 - not declared"));
    shape->setFocus();
    QTest::keyClick(shape, Qt::Key_Up);
    QCOMPARE(bench.value("shape").toInt(), 2);
    QCOMPARE(shape->count(), 3);

    auto *enabled = bench.find<QCheckBox>(QStringLiteral("enabled"));
    QVERIFY(enabled->isChecked());
    QTest::keyClick(enabled, Qt::Key_Space);
    QCOMPARE(bench.value("enabled"), QVariant(false));
    QVERIFY(!bench.isHidden("limit"));

    FieldManager *color = bench.manager("color");
    auto *hex = bench.find<QLineEdit>(QStringLiteral("color"));
    hex->selectAll();
    QTest::keyClicks(hex, QStringLiteral("#80ff0000"));
    QTest::keyClick(hex, Qt::Key_Return);
    QCOMPARE(bench.value("color").value<QColor>(), QColor(255, 0, 0, 128));
    QVERIFY(color->note(color->row()).contains(QLatin1String("drops alpha: #ff0000")));
    QTest::keyClicks(hex, QStringLiteral("z"));
    QVERIFY(color->note(color->row()).startsWith(QLatin1String("not a colour")));
    QTest::keyClick(hex, Qt::Key_Escape);

    const int steps = bench.document.undoStack()->count();
    bench.find<QToolButton>(QStringLiteral("colorSwatch"))->click();
    auto *dialog = bench.find<QColorDialog>(QStringLiteral("colorDialog"));
    QVERIFY(!dialog->isModal());
    dialog->setCurrentColor(Qt::green);
    dialog->setCurrentColor(Qt::blue);
    QCOMPARE(bench.value("color").value<QColor>(), QColor(Qt::blue));
    dialog->accept();
    QCOMPARE(bench.document.undoStack()->count(), steps + 1);
}

void TestFieldsPane::fontPartsHaveRows()
{
    ProbeBench bench(m_fields);
    const auto font = [&bench] { return bench.value("valueFont").value<QFont>(); };
    QTest::mouseClick(bench.find<QToolButton>(QStringLiteral("valueFont")), Qt::LeftButton);
    QVERIFY(font().bold());
    QTRY_VERIFY(bench.find<QCheckBox>(QStringLiteral("valueFontBold"))->isChecked());
    auto *family = bench.find<QComboBox>(QStringLiteral("valueFontFamily"));
    QCOMPARE(family->count(), 5);
    QTest::keyClick(family, Qt::Key_Home);
    QCOMPARE(font().family(), QStringLiteral("Roboto"));
    auto *size = bench.find<NumberBox>(QStringLiteral("valueFontSize"))->findChild<QLineEdit *>();
    size->selectAll();
    QTest::keyClicks(size, QStringLiteral("0"));
    QTest::keyClick(size, Qt::Key_Return);
    QCOMPARE(font().pointSize(), 1);
    bench.document.undoStack()->undo();
    QCOMPARE(font().pointSize(), 14);
}

void TestFieldsPane::imageHasThreeStates()
{
    ProbeBench bench(m_fields);
    FieldManager *image = bench.manager("image");
    auto *line = bench.find<QLineEdit>(QStringLiteral("image"));
    QVERIFY(!bench.value("image").isValid());
    QCOMPARE(line->placeholderText(), QStringLiteral("no value"));
    QTest::keyClicks(line, QStringLiteral("missing.png"));
    QTest::keyClick(line, Qt::Key_Return);
    QCOMPARE(image->note(image->row()), QStringLiteral("there is no such file"));
    QCOMPARE(bench.value("image"), QVariant(QStringLiteral("missing.png")));
    line->clear();
    QTest::keyClick(line, Qt::Key_A);
    QTest::keyClick(line, Qt::Key_Backspace);
    QTest::keyClick(line, Qt::Key_Return);
    QVERIFY(bench.value("image").isValid() && bench.value("image").toString().isEmpty());
    QCOMPARE(line->placeholderText(), QStringLiteral("empty text"));
    const auto actions = bench.find<QMenu>(QStringLiteral("imageClearMenu"))->actions();
    actions.at(0)->trigger();
    QVERIFY(!bench.value("image").isValid());
    actions.at(1)->trigger();
    QVERIFY(bench.value("image").isValid());
}

// Dropped or chosen; a thumbnail shows them.
void TestFieldsPane::imagesComeFromFiles()
{
    const QTemporaryDir dir;
    const QString red = dir.filePath(QStringLiteral("red.png"));
    const QString blue = dir.filePath(QStringLiteral("blue.png"));
    for (const QString &path : {red, blue}) {
        QImage picture(48, 24, QImage::Format_RGB32);
        picture.fill(path == red ? Qt::red : Qt::blue);
        QVERIFY(picture.save(path));
    }
    ProbeBench bench(m_fields);
    auto *line = bench.find<QLineEdit>(QStringLiteral("image"));
    const auto thumbnail = [line] {
        const auto labels = line->parentWidget()->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            const QPixmap shown = label->pixmap(Qt::ReturnByValue);
            if (!shown.isNull()) {
                return shown.toImage();
            }
        }
        return QImage();
    };
    QVERIFY(thumbnail().isNull());
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(red)});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(line, &enter);
    QVERIFY(enter.isAccepted());
    QVERIFY(!bench.value("image").isValid());
    QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(line, &drop);
    QCOMPARE(bench.value("image"), QVariant(red));
    QCOMPARE(line->text(), red);
    QCOMPARE(thumbnail().size(), QSize(24, 12)); // in proportion
    QCOMPARE(thumbnail().pixelColor(12, 6), QColor(Qt::red));

    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
    bench.find<QToolButton>(QStringLiteral("imageFile"))->click();
    auto *dialog = bench.pane.findChild<QFileDialog *>();
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->directory().absolutePath(), dir.path());
    Q_EMIT dialog->fileSelected(blue);
    QCOMPARE(bench.value("image"), QVariant(blue));
    QCOMPARE(thumbnail().pixelColor(12, 6), QColor(Qt::blue));
    dialog->close();
    // A file that is no picture is no failure of the field.
    QFile file(dir.filePath(QStringLiteral("text.png")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("text") > 0 && file.flush());
    line->setText(file.fileName());
    QTest::keyClick(line, Qt::Key_Space);
    QTest::keyClick(line, Qt::Key_Backspace);
    QTest::keyClick(line, Qt::Key_Return);
    QCOMPARE(bench.value("image"), QVariant(file.fileName()));
    QVERIFY(thumbnail().isNull());
}

void TestFieldsPane::fieldsFollowTags()
{
    ProbeBench bench(m_fields);
    TagTable *tags = bench.document.providers()->tags();
    const QStringList others = tags->names();
    for (const QString &name : others) {
        tags->remove(name);
    }
    TagDefinition tag;
    tag.name = QStringLiteral("Level1");
    tag.value = 12.5;
    QVERIFY(tags->add(tag));
    tag.name = QStringLiteral("Name");
    tag.type = TagTypeString;
    tag.value = QStringLiteral("T1");
    QVERIFY(tags->add(tag));

    auto *box = bench.find<QComboBox>(QStringLiteral("value"));
    box->showPopup();
    QCOMPARE(box->itemText(1), QStringLiteral("Level1"));
    QCOMPARE(box->itemText(2), QStringLiteral("Name - string is not accepted"));
    QVERIFY(!(box->model()->flags(box->model()->index(2, 0)) & Qt::ItemIsEnabled));
    box->hidePopup();
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(bench.widget->binding(QStringLiteral("value")), QStringLiteral("Level1"));
    QCOMPARE(bench.value("value").toDouble(), 12.5);
    QTRY_COMPARE(box->currentText(), QStringLiteral("Level1"));

    FieldManager *level = bench.manager("level");
    level->bind(QStringLiteral("Level1"));
    QCOMPARE(level->note(level->row()), QStringLiteral("follows Level1"));
    auto *number = bench.find<NumberBox>(QStringLiteral("level"))->findChild<QLineEdit *>();
    number->selectAll();
    QTest::keyClicks(number, QStringLiteral("77"));
    QTest::keyClick(number, Qt::Key_Return);
    QCOMPARE(tags->value(QStringLiteral("Level1")).toDouble(), 77.0);
    QVERIFY(tags->setValue(QStringLiteral("Level1"), 5.0));
    QTRY_COMPARE(number->text(), QStringLiteral("5"));
    level->reset();
    QVERIFY(bench.widget->binding(QStringLiteral("level")).isEmpty());
    QCOMPARE(bench.value("level").toInt(), 42);
}

void TestFieldsPane::pluginWritesShowAndAreCoalesced()
{
    ProbeBench bench(m_fields);
    auto *number = bench.find<NumberBox>(QStringLiteral("level"))->findChild<QLineEdit *>();
    int updates = 0;
    connect(&bench.pane, &FieldsPane::valuesChanged, this, [&updates] { ++updates; });
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 10000; ++i) {
        bench.setFromPlugin("level", i % 100);
        if (i % 500 == 0) {
            QCoreApplication::processEvents();
        }
    }
    QVERIFY2(updates <= 12 + clock.elapsed() / 50, qPrintable(QString::number(updates)));
    QTRY_COMPARE(number->text(), QStringLiteral("99"));

    // What is being typed is not written over.
    number->setFocus();
    number->selectAll();
    QTest::keyClicks(number, QStringLiteral("5"));
    bench.setFromPlugin("level", 60);
    QTest::qWait(60);
    QCOMPARE(number->text(), QStringLiteral("5"));
}

void TestFieldsPane::rowMenuCopiesAndSends()
{
    ProbeBench bench(m_fields);
    LogRecorder log;
    QMenu menu;
    fillFieldMenu(&menu, bench.manager("level"));
    const auto trigger = [&menu](const QString &text) {
        for (QAction *action : menu.findChildren<QAction *>()) {
            if (action->text() == text) {
                action->trigger();
                return;
            }
        }
        QFAIL(qPrintable(text));
    };
    trigger(QStringLiteral("Copy getFieldValue() line"));
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QStringLiteral("getFieldValue(QStringLiteral(\"level\"))"));
    trigger(QStringLiteral("Copy value"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("42"));
    trigger(QStringLiteral("Text \"42\""));
    QCOMPARE(bench.value("level"), QVariant(42));

    QMenu colors;
    fillFieldMenu(&colors, bench.manager("color"));
    const auto others = colors.findChildren<QMenu *>().first()->actions();
    others.at(4)->trigger(); // 1.5
    QVERIFY(log.takeMessages()
                .join(QLatin1Char(' '))
                .contains(QLatin1String("wrong value for the field \"color\"")));
}

void TestFieldsPane::modifiedRowsAreMarkedAndReset()
{
    ProbeBench bench(m_fields);
    const auto isBold = [&bench](const char *id) { return bench.manager(id)->row()->font(0).bold(); };
    auto *revert = bench.find<QToolButton>(QStringLiteral("levelRevert"));
    QVERIFY(!isBold("level") && !revert->isVisible());
    bench.set("level", 7);
    bench.set("unit", QStringLiteral("psi"));
    QTRY_VERIFY(isBold("level") && isBold("unit") && revert->isVisible());
    QVERIFY(revert->toolTip().endsWith(QLatin1String("42")));
    revert->click();
    QVERIFY(!isBold("level") && isBold("unit"));
    bench.pane.findChild<QToolButton *>(QStringLiteral("fieldsResetAll"))->click();
    QVERIFY(!isBold("unit"));
    QCOMPARE(bench.value("unit").toString(), QStringLiteral("bar"));

    QVERIFY(!bench.find<NumberBox>(QStringLiteral("peak"))->isEnabled());
    bench.manager("peak")->unlock();
    QVERIFY(bench.find<NumberBox>(QStringLiteral("peak"))->isEnabled());
    QVERIFY(!bench.manager("secret"));
    bench.pane.setPrivateFieldsShown(true);
    QVERIFY(bench.manager("secret"));
    QVERIFY(bench.pane.groupRows().contains(QStringLiteral("General")));
}

void TestFieldsPane::geometryIsEdited()
{
    ProbeBench bench(m_fields);
    const QRectF before = bench.widget->geometry();
    const int index = bench.document.undoStack()->index();
    auto *width = bench.pane.findChild<NumberBox *>(QStringLiteral("fieldsWidth"))->findChild<QLineEdit *>();
    width->setFocus();
    width->selectAll();
    QTest::keyClicks(width, QStringLiteral("300"));
    QCOMPARE(bench.widget->geometry().width(), 300.0);
    QCOMPARE(bench.widget->item()->size().width(), 300.0);
    QTest::keyClick(width, Qt::Key_Return);
    QCOMPARE(bench.document.undoStack()->index(), index + 1);
    bench.document.undoStack()->undo();
    QCOMPARE(bench.widget->geometry(), before);
    QCOMPARE(width->text(), QStringLiteral("120"));
    bench.document.setLocked(bench.widget, true);
    QVERIFY(!width->isEnabled());
}

void TestFieldsPane::everyControlHasAName()
{
    ProbeBench bench(m_fields);
    bench.pane.setPrivateFieldsShown(true);
    bench.find<QWidget>(QStringLiteral("valueFont"));
    bench.find<QWidget>(QStringLiteral("title"));
    for (FieldManager *manager : bench.pane.fieldManagers()) {
        manager->editor();
    }
    for (const QWidget *control : bench.pane.findChildren<QWidget *>()) {
        const bool isInner = qobject_cast<const QAbstractSpinBox *>(control->parentWidget())
                             || control->objectName().startsWith(QLatin1String("qt_"));
        if (control->focusPolicy() != Qt::NoFocus && !isInner && control->window() == &bench.pane) {
            QVERIFY2(!control->accessibleName().isEmpty(),
                     qPrintable(control->objectName() + QLatin1String(control->metaObject()->className())));
            QVERIFY2(!control->objectName().isEmpty(), qPrintable(control->accessibleName()));
        }
    }
}

void TestFieldsPane::thousandFieldsAreThereAtOnce()
{
    Fields fields;
    for (int i = 0; i < 1000; ++i) {
        FieldMetaInformationPrivate data;
        data.isValid = true;
        data.id = QStringLiteral("field%1").arg(i, 4, 10, QLatin1Char('0'));
        data.type = static_cast<FieldType>(FieldTypeString + i % 10);
        data.requirements = i % 2 ? QStringLiteral("field0003<100") : QString();
        fields.append(FieldMetaInformation(data));
    }
    ProbeBench bench(fields);
    bench.document.setSelection({});
    bench.document.setSelection({bench.widget});
    QCoreApplication::processEvents();
    bench.pane.grab();
    // What makes a thousand fields quick: editors are made for the rows in sight.
    int editors = 0;
    for (FieldManager *manager : bench.pane.fieldManagers()) {
        editors += manager->editorIfMade(manager->row()) ? 1 : 0;
    }
    QVERIFY2(editors < 100, QByteArray::number(editors));
    QVERIFY(bench.manager("field0000")->editorIfMade(bench.manager("field0000")->row()));
    FieldManager *last = bench.manager("field0999");
    QVERIFY(!last->editorIfMade(last->row()));
    bench.pane.tree()->scrollToItem(last->row());
    QTRY_VERIFY(last->editorIfMade(last->row()));
}

void TestFieldsPane::tabGoesFromEditorToEditor()
{
    ProbeBench bench(m_fields);
    bench.pane.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&bench.pane));
    QTRY_VERIFY(bench.manager("offset")->editorIfMade(bench.manager("offset")->row()));
    bench.find<NumberBox>(QStringLiteral("level"))->setFocus();
    QStringList visited;
    for (int i = 0; i < 4; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited.append(QApplication::focusWidget()->objectName());
    }
    QCOMPARE(visited.join(QLatin1Char(' ')), QStringLiteral("levelSlider offset opacity opacitySlider"));
    QCOMPARE(bench.pane.tree()->currentItem(), bench.manager("opacity")->row());
}

/// Pictures to look at, into the folder of the environment's KORA_SCREENSHOTS.
void TestFieldsPane::screenshots()
{
    const QString folder = qEnvironmentVariable("KORA_SCREENSHOTS");
    if (folder.isEmpty()) {
        QSKIP("KORA_SCREENSHOTS names no folder");
    }
    for (const Theme theme : {Theme::Light, Theme::Dark}) {
        ProbeBench bench(m_fields);
        BenchTheme::apply(theme, &bench.pane);
        TagDefinition tag;
        tag.name = QStringLiteral("Level1");
        tag.value = 12.5;
        QVERIFY(bench.document.providers()->tags()->add(tag));
        bench.manager("value")->bind(tag.name);
        bench.manager("level")->bind(tag.name);
        bench.set("color", QColor(40, 160, 90, 120));
        bench.set("image", QStringLiteral("missing.png"));
        bench.set("opacity", 0.123456789);
        bench.set("shape", 7);
        bench.manager("valueFont")->row()->setExpanded(true);
        bench.pane.resize(370, 800);
        QCOMPARE(bench.pane.width(), 370);
        auto *box = bench.find<NumberBox>(QStringLiteral("offset"));
        box->setFocus();
        QTest::keyClicks(box, QStringLiteral("x"));
        bench.pane.findChild<QToolButton *>(QStringLiteral("fieldsHidden"))->click();
        QTest::qWait(150);
        const QString name = theme == Theme::Dark ? QStringLiteral("dark") : QStringLiteral("light");
        QVERIFY(bench.pane.grab().save(folder + QLatin1String("/fields-") + name + QLatin1String(".png")));
        bench.pane.tree()->scrollToBottom();
        bench.manager("title")->row()->setExpanded(true);
        QTest::qWait(150);
        bench.pane.tree()->scrollToBottom();
        QTest::qWait(150);
        QVERIFY(
            bench.pane.grab().save(folder + QLatin1String("/fields-") + name + QLatin1String("-end.png")));
        bench.pane.resize(370, 420);
        bench.find<QPushButton>(QStringLiteral("states"))->click();
        QTest::qWait(50);
        auto *table = bench.find<QTableWidget>(QStringLiteral("statesTable"));
        QVERIFY(table->window()->grab().save(folder + QLatin1String("/fields-") + name
                                             + QLatin1String("-map.png")));
        table->window()->close();
        bench.document.setSelection({});
        QVERIFY(
            bench.pane.grab().save(folder + QLatin1String("/fields-") + name + QLatin1String("-empty.png")));
    }
}

KORA_TEST_MAIN(TestFieldsPane)

#include "tst_fieldspane.moc"
