// SPDX-License-Identifier: Apache-2.0
//
// The test bench beside a plain tree and a plain scene that show as much.
#include "support/program.h"

#include <dev/memorylibrary.h>

#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QHeaderView>

#include <kora/dev/canvas/canvasview.h>

#include <memory>

using namespace KORA::DEV;
using namespace KORA::INTERNAL;

namespace {

// A thousand fields, from the selection of a widget to the painted rows ---------------------------------------

constexpr int fieldCount = 1000;
constexpr int groupCount = 10;
const QSize paneSize(370, 700);

QString fieldId(int number)
{
    return QStringLiteral("field%1").arg(number, 4, 10, QLatin1Char('0'));
}

QString groupName(int number)
{
    return QStringLiteral("Group %1").arg(number * groupCount / fieldCount);
}

Fields thousandFields()
{
    Fields fields;
    for (int i = 0; i < fieldCount; ++i) {
        FieldMetaInformationPrivate field;
        field.isValid = true;
        field.id = fieldId(i);
        field.display.set(QStringLiteral("en-US"), QStringLiteral("Value %1").arg(i));
        field.group.set(QStringLiteral("en-US"), groupName(i));
        field.type = FieldTypeInteger;
        field.defaultValue = i;
        fields.append(FieldMetaInformation(field));
    }
    return fields;
}

void fieldsOurs(benchmark::State &state)
{
    ProbeBench bench(thousandFields());
    bench.pane.resize(paneSize);
    const auto select = [&bench] {
        bench.document.setSelection({});
        bench.document.setSelection({bench.widget});
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(bench.pane.grab());
    };
    select();
    if (require(state, bench.pane.fieldManagers().size() == fieldCount, "fields are missing")) {
        measure(state, select);
    }
}

void fillTree(QTreeWidget &tree)
{
    tree.clear();
    QTreeWidgetItem *group = nullptr;
    for (int i = 0; i < fieldCount; ++i) {
        if (!group || group->text(0) != groupName(i)) {
            group = new QTreeWidgetItem(&tree, {groupName(i)});
            group->setExpanded(true);
        }
        new QTreeWidgetItem(group, {QStringLiteral("Value %1").arg(i), QString::number(i)});
    }
}

void fieldsQt(benchmark::State &state)
{
    QTreeWidget tree;
    tree.setColumnCount(2);
    tree.resize(paneSize);
    tree.show();
    const auto fill = [&tree] {
        fillTree(tree);
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(tree.grab());
    };
    fill();
    if (require(state, tree.topLevelItemCount() == groupCount, "rows are missing")) {
        measure(state, fill);
    }
}

// A page of 100 widgets -----------------------------------------------------------------------------------------

constexpr int columns = 10;
constexpr int rows = 10;
const QSizeF itemSize(120, 80); // as the widget's metadata says
const QSize viewSize(960, 640);

// Close together, so that all are in sight.
QPointF centreOf(int number)
{
    return {70.0 + 85 * (number % columns), 50.0 + 52 * div(number, columns).quot};
}

// What a widget of a page paints.
void paintMeter(QPainter *painter)
{
    painter->fillRect(QRectF(QPointF(), itemSize), Qt::darkGreen);
    painter->setPen(Qt::white);
    painter->drawText(QRectF(QPointF(), itemSize), Qt::AlignCenter, QStringLiteral("4.75 bar"));
}

class MeterItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit MeterItem(const KORA::GraphicsObjectData &data)
        : KORA::GraphicsObject(data)
    {}
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        paintMeter(painter);
    }
};

class PlainItem : public QGraphicsItem
{
public:
    QRectF boundingRect() const override { return {QPointF(), itemSize}; }
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        paintMeter(painter);
    }
};

void sendMouse(QWidget *viewport, QEvent::Type type, const QPoint &position, Qt::MouseButtons buttons)
{
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, position, viewport->mapToGlobal(position), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &event);
}

// Paints what is to be painted, at once: the platform would wait a few milliseconds for more.
void paint(QWidget &window)
{
    QCoreApplication::processEvents();
    QEvent update(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(&window, &update);
}

void show(QGraphicsView &view)
{
    view.resize(viewSize);
    view.show();
    QCoreApplication::processEvents();
}

/// The canvas of the bench, with 100 widgets.
struct Canvas
{
    Canvas()
        : bench({})
        , view(&bench.document)
    {
        bench.pane.hide();
        bench.document.remove({bench.widget});
        bench.plugin.registerWidget(QStringLiteral("probe"), QStringLiteral("1.0.0"),
                                    &ProbeWidget::staticMetaObject, &MeterItem::staticMetaObject);
        for (int i = 0; i < columns * rows; ++i) {
            bench.document.place(QStringLiteral("probe"), QStringLiteral("1.0.0"), centreOf(i));
        }
        bench.document.setSelection({});
        show(view);
    }

    void setZoom(double zoom) { view.setZoom(zoom); }

    ProbeBench bench;
    CanvasView view;
};

/// A plain view of a scene with 100 items.
struct Plain
{
    Plain()
        : view(&scene)
    {
        scene.setSceneRect(0, 0, 800, 600);
        for (int i = 0; i < columns * rows; ++i) {
            auto *item = new PlainItem;
            item->setFlags(QGraphicsItem::ItemIsMovable | QGraphicsItem::ItemIsSelectable);
            item->setPos(centreOf(i) - QPointF(itemSize.width(), itemSize.height()) / 2);
            scene.addItem(item);
        }
        show(view);
    }

    void setZoom(double zoom) { view.setTransform(QTransform::fromScale(zoom, zoom)); }

    QGraphicsScene scene;
    QGraphicsView view;
};

// One step of zoom, up and down, to the painted page.
template<typename Page>
void zoom(benchmark::State &state)
{
    Page page;
    bool isNear = false;
    const auto step = [&] {
        isNear = !isNear;
        page.setZoom(isNear ? 1.25 : 1.0);
        paint(page.view);
    };
    step();
    if (require(state, page.view.transform().m11() == 1.25, "no zoom")) {
        measure(state, step);
    }
}

// One move of the mouse with a widget, to the painted page.
template<typename Page>
void drag(benchmark::State &state)
{
    Page page;
    page.setZoom(1);
    QCoreApplication::processEvents();
    QWidget *viewport = page.view.viewport();
    const QPoint start = page.view.mapFromScene(centreOf(99));
    const QGraphicsItem *item = page.view.itemAt(start);
    if (!require(state, item, "no item")) {
        return;
    }
    const QPointF before = item->scenePos();
    sendMouse(viewport, QEvent::MouseButtonPress, start, Qt::LeftButton);
    int offset = 0;
    const auto step = [&] {
        offset = (offset + 7) % 120;
        sendMouse(viewport, QEvent::MouseMove, start + QPoint(20 + offset, 20 + offset), Qt::LeftButton);
        paint(page.view);
    };
    step();
    if (require(state, item->scenePos() != before, "not moved")) {
        measure(state, step);
    }
    sendMouse(viewport, QEvent::MouseButtonRelease, start, Qt::NoButton);
}

} // namespace

int main(int argc, char **argv)
{
    Program program(argc, argv);
    program.add("benchfields/ours", fieldsOurs);
    program.add("benchfields/qt", fieldsQt);
    program.add("benchzoom/ours", zoom<Canvas>);
    program.add("benchzoom/qt", zoom<Plain>);
    program.add("benchdrag/ours", drag<Canvas>);
    program.add("benchdrag/qt", drag<Plain>);
    return program.run();
}

#include "bench.moc"
