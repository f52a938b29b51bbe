// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QVector>
#include <QtGui/QIcon>
#include <QtWidgets/QDialog>

#include <functional>

#include <kora/export.h>

class QLineEdit;
class QTreeWidget;

namespace KORA {
namespace DEV {

/// Something that the palette can do.
struct PaletteEntry
{
    QString text;
    QString note; ///< shown behind the text: a shortcut, a kind
    QIcon icon;
    std::function<void()> run;
};

/// Finds what the bench can do by a few letters of it.
class KORA_EXPORT CommandPalette : public QDialog
{
    Q_OBJECT

public:
    CommandPalette(const QVector<PaletteEntry> &entries, QWidget *parent);

    /// How well the letters of @p typed are found in @p text, in their order; negative if they are not. Parts of
    /// words count more than letters apart.
    static int match(const QString &typed, const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void update(const QString &typed);
    void runCurrent();

    QVector<PaletteEntry> m_entries;
    QLineEdit *m_edit;
    QTreeWidget *m_list;
};

} // namespace DEV
} // namespace KORA
