// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/dev/panes/providerpane.h>

namespace KORA {
namespace DEV {

class Providers;
class TrendCurve;

/// The simulated trends, and a curve of the current one as a widget gets it. Object names begin with "trends", see
/// ProviderPane; "trendsCurve" is the curve, "trendsReplay" chooses a replay file.
class KORA_EXPORT TrendsPane : public ProviderPane
{
    Q_OBJECT

public:
    /// @p providers is not owned and must outlive the pane.
    explicit TrendsPane(Providers *providers, QWidget *parent = nullptr);

protected:
    void currentChanged() override;

private:
    void chooseReplay();

    Providers *m_providers;
    TrendCurve *m_curve;
};

} // namespace DEV
} // namespace KORA
