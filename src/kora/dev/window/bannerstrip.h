// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QVector>
#include <QtWidgets/QFrame>

#include <kora/dev/window/banner.h>
#include <kora/export.h>

namespace KORA {
namespace DEV {

/// The messages above the page that are there until they are read.
class KORA_EXPORT BannerStrip : public QWidget
{
    Q_OBJECT

public:
    explicit BannerStrip(QWidget *parent = nullptr);

    /// Shows a message in place of the one with the same key, if there is one.
    void show(BannerKind kind, const QString &text, const QVector<BannerAction> &actions, const QString &key);
    void close(const QString &key);
    /// The texts that are shown.
    QStringList texts() const;

private:
    QFrame *makeBanner(BannerKind kind, const QString &text, const QVector<BannerAction> &actions,
                       const QString &key);

    QMap<QString, QFrame *> m_banners;
};

} // namespace DEV
} // namespace KORA
