// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDebug>
#include <QtCore/QObject>

#include <memory>

#include <kora/export.h>

namespace KORA {

class DataRolePrivate;

/// A question that the host puts to a widget or graphics object through data().
class KORA_EXPORT DataRole
{
    Q_GADGET

public:
    enum Type : int { Icon = 1 };
    Q_ENUM(Type)

    explicit DataRole(DataRole::Type type);
    DataRole(const DataRole &) = delete;
    DataRole &operator=(const DataRole &) = delete;
    virtual ~DataRole();

    DataRole::Type type() const;

private:
    std::unique_ptr<DataRolePrivate> d;
};

class IconDataRolePrivate;

/// Asks for the icon; the answer is a QIcon.
class KORA_EXPORT IconDataRole : public DataRole
{
public:
    IconDataRole();
    ~IconDataRole() override;

private:
    std::unique_ptr<IconDataRolePrivate> d;
};

KORA_EXPORT QDebug operator<<(QDebug debug, const IconDataRole *role);

} // namespace KORA
