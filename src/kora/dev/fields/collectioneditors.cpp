// SPDX-License-Identifier: Apache-2.0
#include <kora/core/metatypes_p.h>
#include <kora/dev/fields/editorpopup.h>
#include <kora/dev/fields/fieldeditors_p.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QVBoxLayout>

namespace KORA {
namespace DEV {

namespace {

using INTERNAL::StringMap;

const QSize popupSize(290, 200);

/// Shows as much of its text as there is room for.
class SummaryButton : public QPushButton
{
public:
    void setSummary(const QString &summary)
    {
        m_summary = summary;
        setToolTip(summary.toHtmlEscaped());
        update();
    }
    QSize minimumSizeHint() const override { return {40, QPushButton::minimumSizeHint().height()}; }
    QSize sizeHint() const override { return {100, QPushButton::sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPushButton::paintEvent(event); // without a text
        QPainter painter(this);
        const QRect area = rect().adjusted(8, 0, -8, 0);
        painter.setPen(
            palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
        const QString flat = QString(m_summary).replace(QLatin1Char('\n'), QLatin1Char(' '));
        painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(flat, Qt::ElideRight, area.width()));
    }

private:
    QString m_summary;
};

struct CollectionText
{
    Q_DECLARE_TR_FUNCTIONS(KORA::DEV::CollectionEditor)
};

QString counted(int count, const QString &entries)
{
    if (count == 0) {
        return CollectionText::tr("no texts");
    }
    return count == 1 ? CollectionText::tr("1 text: %1").arg(entries)
                      : CollectionText::tr("%1 texts: %2").arg(QString::number(count), entries);
}

/// A text list or a text map: a button with a summary, and a box with a table.
class CollectionEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit CollectionEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_button(new SummaryButton)
    {
        addControl(m_button, 1);
        if (!context.language.isEmpty()) {
            auto *badge = new QLabel(context.language);
            badge->setEnabled(false);
            addPassive(badge);
        }
        connect(m_button, &QPushButton::clicked, this, &CollectionEditor::openBox);
    }

    void setValue(const QVariant &value) override
    {
        m_value = value;
        m_button->setSummary(value.isValid() ? summary(value) : tr("no value"));
    }

protected:
    virtual QString summary(const QVariant &value) const = 0;
    /// The table, filled with the value, and its buttons.
    virtual void fill(EditorPopup *popup, const QVariant &value) = 0;

    void sendLive(const QVariant &value)
    {
        setValue(value);
        send(value, false);
    }
    QPushButton *addButton(QBoxLayout *bar, const QString &text, const QString &part)
    {
        auto *button = new QPushButton(text);
        button->setObjectName(context().objectName + part);
        button->setAutoDefault(false);
        bar->addWidget(button);
        return button;
    }
    static QStringList clipboardLines()
    {
        return QGuiApplication::clipboard()->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    void openBox()
    {
        auto *popup = new EditorPopup(m_button);
        fill(popup, m_value);
        connect(popup, &EditorPopup::closed, this, &CollectionEditor::finish);
        connect(popup, &EditorPopup::cancelled, this, &CollectionEditor::restoreRequested);
        popup->open();
    }

    SummaryButton *m_button;
    QVariant m_value;
};

class StringListEditor : public CollectionEditor
{
    Q_OBJECT

public:
    using CollectionEditor::CollectionEditor;

private:
    QString summary(const QVariant &value) const override
    {
        const QStringList texts = value.toStringList();
        return counted(texts.size(), texts.join(QLatin1String(", ")));
    }

    void fill(EditorPopup *popup, const QVariant &value) override
    {
        m_list = new QListWidget;
        m_list->setObjectName(context().objectName + QStringLiteral("List"));
        m_list->setAccessibleName(context().label);
        m_list->setMinimumSize(popupSize);
        m_list->setDragDropMode(QAbstractItemView::InternalMove);
        m_list->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                                | QAbstractItemView::AnyKeyPressed);
        const QStringList texts = value.toStringList();
        for (const QString &text : texts) {
            append(text);
        }
        popup->content()->addWidget(m_list);
        auto *bar = new QHBoxLayout;
        popup->content()->addLayout(bar);
        connect(addButton(bar, tr("Add"), QStringLiteral("Add")), &QPushButton::clicked, this, [this] {
            m_list->editItem(append(QString()));
            sendTexts();
        });
        connect(addButton(bar, tr("Remove"), QStringLiteral("Remove")), &QPushButton::clicked, this, [this] {
            delete m_list->currentItem();
            sendTexts();
        });
        connect(addButton(bar, tr("Up"), QStringLiteral("Up")), &QPushButton::clicked, this,
                [this] { move(-1); });
        connect(addButton(bar, tr("Down"), QStringLiteral("Down")), &QPushButton::clicked, this,
                [this] { move(1); });
        QPushButton *paste = addButton(bar, tr("Paste"), QStringLiteral("Paste"));
        paste->setToolTip(tr("Adds the lines of the clipboard"));
        connect(paste, &QPushButton::clicked, this, [this] {
            const QStringList lines = clipboardLines();
            for (const QString &line : lines) {
                append(line);
            }
            sendTexts();
        });
        connect(m_list, &QListWidget::itemChanged, this, &StringListEditor::sendTexts);
        connect(m_list->model(), &QAbstractItemModel::rowsMoved, this, &StringListEditor::sendTexts);
    }

    QListWidgetItem *append(const QString &text)
    {
        auto *item = new QListWidgetItem(text);
        item->setFlags((item->flags() | Qt::ItemIsEditable) & ~Qt::ItemIsDropEnabled);
        m_list->addItem(item);
        m_list->setCurrentItem(item);
        return item;
    }
    void move(int by)
    {
        const int row = m_list->currentRow();
        if (row < 0 || row + by < 0 || row + by >= m_list->count()) {
            return;
        }
        QListWidgetItem *item = m_list->takeItem(row);
        m_list->insertItem(row + by, item);
        m_list->setCurrentItem(item);
        sendTexts();
    }
    void sendTexts()
    {
        QStringList texts;
        for (int row = 0; row < m_list->count(); ++row) {
            texts.append(m_list->item(row)->text());
        }
        sendLive(texts);
    }

    QListWidget *m_list = nullptr; // of the open box
};

class StringMapEditor : public CollectionEditor
{
    Q_OBJECT

public:
    using CollectionEditor::CollectionEditor;

private:
    enum Column : int { IndexColumn, TextColumn };

    QString summary(const QVariant &value) const override
    {
        const auto map = value.value<StringMap>();
        QStringList entries;
        for (auto entry = map.begin(); entry != map.end(); ++entry) {
            entries.append(QString::number(entry.key()) + QLatin1String("=") + entry.value());
        }
        return counted(map.size(), entries.join(QLatin1String(", ")));
    }

    void fill(EditorPopup *popup, const QVariant &value) override
    {
        m_map = value.value<StringMap>();
        m_table = new QTableWidget(0, 2);
        m_table->setObjectName(context().objectName + QStringLiteral("Table"));
        m_table->setAccessibleName(context().label);
        m_table->setMinimumSize(popupSize);
        m_table->setHorizontalHeaderLabels({tr("Index"), tr("Text")});
        m_table->horizontalHeader()->setStretchLastSection(true);
        m_table->verticalHeader()->hide();
        m_table->setTabKeyNavigation(false);
        m_problem = new QLabel;
        m_problem->setObjectName(context().objectName + QStringLiteral("Problem"));
        m_problem->hide();
        popup->content()->addWidget(m_table);
        popup->content()->addWidget(m_problem);
        auto *bar = new QHBoxLayout;
        popup->content()->addLayout(bar);
        connect(addButton(bar, tr("Add next free"), QStringLiteral("Add")), &QPushButton::clicked, this,
                &StringMapEditor::addNext);
        connect(addButton(bar, tr("Remove"), QStringLiteral("Remove")), &QPushButton::clicked, this,
                &StringMapEditor::removeCurrent);
        QPushButton *paste = addButton(bar, tr("Paste"), QStringLiteral("Paste"));
        paste->setToolTip(tr("Adds lines such as 1=Off from the clipboard"));
        connect(paste, &QPushButton::clicked, this, &StringMapEditor::paste);
        connect(m_table, &QTableWidget::cellChanged, this, &StringMapEditor::onCellChanged);
        showMap();
    }

    void showMap(int current = 0)
    {
        m_isShowing = true;
        m_table->setRowCount(m_map.size());
        int row = 0;
        for (auto entry = m_map.constBegin(); entry != m_map.constEnd(); ++entry, ++row) {
            auto *index = new QTableWidgetItem(QString::number(entry.key()));
            index->setData(Qt::UserRole, entry.key());
            m_table->setItem(row, IndexColumn, index);
            m_table->setItem(row, TextColumn, new QTableWidgetItem(entry.value()));
            if (entry.key() == current) {
                m_table->setCurrentCell(row, TextColumn);
            }
        }
        m_isShowing = false;
    }
    int indexOfRow(int row) const { return m_table->item(row, IndexColumn)->data(Qt::UserRole).toInt(); }
    void tell(const QString &problem)
    {
        m_problem->setText(problem);
        m_problem->setVisible(!problem.isEmpty());
    }
    void change(int current)
    {
        tell(QString());
        // The table is filled anew after the edit that this is called from has ended.
        QMetaObject::invokeMethod(
            m_table, [this, current] { showMap(current); }, Qt::QueuedConnection);
        sendLive(QVariant::fromValue(m_map));
    }
    void addNext()
    {
        int next = 0;
        while (m_map.contains(next)) {
            ++next;
        }
        m_map.insert(next, QString());
        change(next);
    }
    void removeCurrent()
    {
        if (m_table->currentRow() < 0) {
            return;
        }
        m_map.remove(indexOfRow(m_table->currentRow()));
        change(0);
    }
    void paste()
    {
        int last = 0;
        QStringList refused;
        const QStringList lines = clipboardLines();
        for (const QString &line : lines) {
            bool isNumber = false;
            const int index = line.section(QLatin1Char('='), 0, 0).toInt(&isNumber);
            if (!isNumber || !line.contains(QLatin1Char('=')) || m_map.contains(index)) {
                refused.append(line);
                continue;
            }
            m_map.insert(index, line.section(QLatin1Char('='), 1));
            last = index;
        }
        change(last);
        tell(refused.isEmpty() ? QString() : tr("not added: %1").arg(refused.join(QLatin1String(", "))));
    }
    void onCellChanged(int row, int column)
    {
        if (m_isShowing) {
            return;
        }
        const int index = indexOfRow(row);
        if (column == TextColumn) {
            m_map[index] = m_table->item(row, column)->text();
            change(index);
        } else {
            changeIndex(index, m_table->item(row, column)->text());
        }
    }
    void changeIndex(int index, const QString &text)
    {
        bool isNumber = false;
        const int wanted = text.toInt(&isNumber);
        const bool isTaken = wanted != index && m_map.contains(wanted);
        if (isNumber && !isTaken) {
            m_map.insert(wanted, m_map.take(index));
            change(wanted);
            return;
        }
        QMetaObject::invokeMethod(
            m_table, [this, index] { showMap(index); }, Qt::QueuedConnection);
        tell(isTaken ? tr("Index %1 is there already").arg(wanted)
                     : tr("\"%1\" is not a whole number").arg(text));
    }

    StringMap m_map;
    QTableWidget *m_table = nullptr; // of the open box
    QLabel *m_problem = nullptr;
    bool m_isShowing = false;
};

} // namespace

FieldEditor *makeStringListEditor(const FieldEditorContext &context)
{
    return new StringListEditor(context);
}

FieldEditor *makeStringMapEditor(const FieldEditorContext &context)
{
    return new StringMapEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "collectioneditors.moc"
