// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>

#include <memory>

#include <kora/export.h>

namespace KORA {

class PluginPrivate;

namespace INTERNAL {
class PluginPrivateAccessor;
} // namespace INTERNAL

/// The root object of a plugin. The host calls the four hooks, each on all plugins in plugin-id order:
/// aboutToLoad() on every plugin before load() on the first, aboutToUnload() on every plugin before unload() on
/// the first. A plugin may be unloaded and loaded again.
class KORA_EXPORT Plugin : public QObject
{
    Q_OBJECT

public:
    explicit Plugin(QObject *parent = nullptr);
    ~Plugin() override;

    bool event(QEvent *event) override;

    virtual void aboutToLoad();
    virtual void load();
    virtual void aboutToUnload();
    virtual void unload();

private:
    friend class INTERNAL::PluginPrivateAccessor;

    std::unique_ptr<PluginPrivate> d;
};

} // namespace KORA
