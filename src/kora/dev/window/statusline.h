// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QRectF>
#include <QtWidgets/QStatusBar>

#include <kora/dev/model/scenario.h>
#include <kora/export.h>

class QLabel;
class QToolButton;

namespace KORA {
namespace DEV {

class BenchDocument;

/// The window's status bar: what is selected, what is wrong, what is loaded, where the keys go.
class KORA_EXPORT StatusLine : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent);

    void showSelection(const BenchDocument &document);
    void setProblemCount(int count);
    void setLibrary(const QString &text, const QString &toolTip);
    void setReload(const QString &text);
    void setMode(BenchMode mode, bool allKeys);
    void setZoom(double factor);

Q_SIGNALS:
    void problemsRequested();

private:
    QLabel *addLabel(const QString &name, const QString &toolTip, bool isPermanent);

    QLabel *m_selection;
    QToolButton *m_problems;
    QLabel *m_library;
    QLabel *m_reload;
    QLabel *m_mode;
    QLabel *m_zoom;
};

} // namespace DEV
} // namespace KORA
