// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGui/QColor>
#include <QtWidgets/QToolBar>

#include <kora/dev/model/scenario.h>
#include <kora/export.h>

class QComboBox;
class QMenu;
class QToolButton;

namespace KORA {
namespace DEV {

class BenchActions;

/// The window's one bar of tools. It shows what it is told and says what is chosen.
class KORA_EXPORT BenchToolBar : public QToolBar
{
    Q_OBJECT

public:
    BenchToolBar(const BenchActions &actions, QWidget *parent);

    void setZoom(double factor);
    void setPage(const PageState &page);
    void setLanguages(const QStringList &languages, const QString &current);

    /// What "Zoom" offers, in percent.
    static QVector<int> zoomSteps();

Q_SIGNALS:
    void zoomChosen(double factor);
    void pageSizeChosen(const QSize &size);
    void customPageSizeRequested();
    /// An invalid colour: a checkerboard.
    void backgroundChosen(const QColor &color);
    void customBackgroundRequested();
    void languageChosen(const QString &language);

private:
    void addModes(const BenchActions &actions);
    void addZoom(const BenchActions &actions);
    void addPage(const BenchActions &actions);
    QMenu *makeBackgroundMenu();
    void chooseZoom();

    QComboBox *m_zoom;
    QComboBox *m_page;
    QToolButton *m_background;
    QComboBox *m_language;
};

} // namespace DEV
} // namespace KORA
