// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <kora/export.h>

class QAction;
class QMenuBar;
class QWidget;

namespace KORA {
namespace DEV {

/// The window's actions, made from one table: names, icons, keys and the menus they stand in. No key is a letter
/// alone: that would steal what is typed into a field.
class KORA_EXPORT BenchActions : public QObject
{
    Q_OBJECT

public:
    explicit BenchActions(QWidget *window);

    /// Never null for a name of the table.
    QAction *operator[](const char *name) const;
    QVector<QAction *> all() const { return m_actions; }
    /// Puts the actions into menus, a separator where the table has one.
    void fill(QMenuBar *bar) const;

    /// Keys that no action of the table has, for the list of keys: "keys\twhat they do".
    static QStringList canvasKeys();

private:
    QVector<QAction *> m_actions;
};

} // namespace DEV
} // namespace KORA
