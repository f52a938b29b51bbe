// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>

/// A 64-bit shared object for that processor, as ElfFile numbers them, with names, these bytes as the section of Qt's
/// metadata, and one needed library. It holds no code: no dynamic loader takes it.
QByteArray libraryFile(int machine, const QByteArray &metaData);
