// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGui/QIcon>

/// What widgets show that have no icon of their own. Needs the application.
QIcon placeholderIcon();
