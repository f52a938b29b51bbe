// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>

/// Reads "800x480"; false, and nothing assigned, if it is no size of a page.
bool pageSizeOf(const QString &text, QSize &size);
