// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/bannerstrip.h>

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/theme/theme.h>

namespace KORA {
namespace DEV {

namespace {

const int iconSide = 18;

QColor colorOf(BannerKind kind, const QWidget *widget)
{
    switch (kind) {
    case BannerKind::Success:
        return BenchTheme::successColor();
    case BannerKind::Warning:
        return BenchTheme::warningColor();
    case BannerKind::Error:
        return BenchTheme::errorColor();
    default:
        return widget->palette().color(QPalette::Highlight);
    }
}

const char *iconOf(BannerKind kind)
{
    const char *const icons[] = {"info", "check", "warning", "error"};
    return icons[static_cast<int>(kind)];
}

} // namespace

BannerStrip::BannerStrip(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
}

void BannerStrip::show(BannerKind kind, const QString &text, const QVector<BannerAction> &actions,
                       const QString &key)
{
    close(key);
    QFrame *banner = makeBanner(kind, text, actions, key);
    m_banners.insert(key, banner);
    layout()->addWidget(banner);
}

void BannerStrip::close(const QString &key)
{
    if (QFrame *banner = m_banners.take(key)) {
        banner->hide();
        // One of its buttons may have asked for it.
        banner->deleteLater();
    }
}

QStringList BannerStrip::texts() const
{
    QStringList texts;
    for (const QFrame *banner : m_banners) {
        texts.append(banner->accessibleName());
    }
    return texts;
}

QFrame *BannerStrip::makeBanner(BannerKind kind, const QString &text, const QVector<BannerAction> &actions,
                                const QString &key)
{
    auto *banner = new QFrame(this);
    banner->setObjectName(QStringLiteral("banner"));
    banner->setAccessibleName(text);
    banner->setStyleSheet(
        QStringLiteral("#banner { background: palette(base); border: none;"
                       "border-left: 4px solid %1; border-bottom: 1px solid palette(mid); }")
            .arg(colorOf(kind, this).name()));
    auto *layout = new QHBoxLayout(banner);
    layout->setContentsMargins(10, 5, 6, 5);
    layout->setSpacing(8);
    auto *icon = new QLabel(banner);
    icon->setPixmap(benchIcon(iconOf(kind)).pixmap(iconSide));
    layout->addWidget(icon, 0, Qt::AlignTop);
    auto *label = new QLabel(text, banner);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(label, 1);
    for (const BannerAction &action : actions) {
        auto *button = new QPushButton(action.text, banner);
        button->setAccessibleName(action.text);
        button->setToolTip(action.text);
        connect(button, &QPushButton::clicked, this, [this, key, run = action.run] {
            close(key);
            if (run) {
                run();
            }
        });
        layout->addWidget(button);
    }
    QToolButton *close =
        iconButton(banner, "close", {QStringLiteral("bannerClose"), tr("Close this message"), {}, {}});
    connect(close, &QToolButton::clicked, this, [this, key] { this->close(key); });
    layout->addWidget(close, 0, Qt::AlignTop);
    return banner;
}

} // namespace DEV
} // namespace KORA
