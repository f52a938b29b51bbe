// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>

/// The text of a command line argument, which is taken as UTF-8 whatever the locale.
QString textOfArgument(const std::string &argument);

/// @p text on one line and without control characters, which are shown as "\x1b" and the like: what stands in
/// a plugin or in a folder's name must not reach the terminal as a command.
QString printable(const QString &text);

/// Writes lines to standard output, in UTF-8.
void printResult(const QString &lines);

/// Writes "kora: <message>" and the @p details, indented below it, to standard error.
void printError(const QString &message, const QStringList &details = {});
void printWarning(const QString &message);

/// Whether all results were written; tells it on standard error if not. To be called last.
bool flushResults();
