// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/dev/panes/providerpane.h>

namespace KORA {
namespace DEV {

class Providers;

/// The simulated tags. Object names begin with "tags", see ProviderPane; "tagsReplay" chooses a replay file.
class KORA_EXPORT TagsPane : public ProviderPane
{
    Q_OBJECT

public:
    /// @p providers is not owned and must outlive the pane.
    explicit TagsPane(Providers *providers, QWidget *parent = nullptr);

private:
    void chooseReplay();

    Providers *m_providers;
};

} // namespace DEV
} // namespace KORA
