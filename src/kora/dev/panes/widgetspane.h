// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtGui/QIcon>
#include <QtWidgets/QWidget>

#include <kora/export.h>

class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace KORA {

namespace INTERNAL {
class WidgetMetaInformation;
} // namespace INTERNAL

namespace DEV {

class BenchDocument;

/// The library's widgets by gallery group, to be dragged onto the page or placed with Enter.
class KORA_EXPORT WidgetsPane : public QWidget
{
    Q_OBJECT

public:
    /// Of a drag: a JSON object with "widget" and "version".
    static const char *const mimeType;

    /// @p document is not owned and outlives the pane.
    explicit WidgetsPane(BenchDocument *document, QWidget *parent = nullptr);

    ~WidgetsPane() override;

    /// Asks the widgets for their icons, one by one while the window is idle; makes an instance of each. A widget that
    /// ended the bench when it was asked is not asked again until the library is another.
    void loadIcons();

Q_SIGNALS:
    void placeRequested(const QString &widgetId, const QString &version);

private:
    void rebuild();
    QTreeWidgetItem *groupRow(const QString &name);
    QTreeWidgetItem *addWidget(QTreeWidgetItem *parent, const INTERNAL::WidgetMetaInformation &info);
    QString groupOf(const INTERNAL::WidgetMetaInformation &info) const;
    QString problemOf(const INTERNAL::WidgetMetaInformation &info) const;
    void applyFilter(const QString &text);
    void readRefused();
    QString settingsKey(const char *name) const;
    void loadNextIcon();
    QIcon iconOf(const INTERNAL::WidgetMetaInformation &info) const;
    void place(QTreeWidgetItem *row);

    BenchDocument *m_document;
    QLineEdit *m_filter;
    QTreeWidget *m_tree;
    QVector<QPair<QString, QString>> m_iconless; // id and version; the next one last
    QMap<QPair<QString, QString>, QIcon> m_icons;
    QStringList m_refused; // "id version" of those that are not asked
    QTimer m_iconTimer;
};

} // namespace DEV
} // namespace KORA
