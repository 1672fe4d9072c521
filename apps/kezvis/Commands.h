#ifndef KEZVIS_COMMANDS_H
#define KEZVIS_COMMANDS_H

// The commands of kezvis. Each takes its own command line (the program and
// command name first), prints one line to standard error for any failure and
// answers the exit status: 0 on success, 1 when an input or output file is
// refused, 2 for a usage error.

#include <QString>
#include <QStringList>

namespace Commands {

int Gallery(const QStringList &arguments);
int Render(const QStringList &arguments);
int Fill(const QStringList &arguments);
int Text(const QStringList &arguments);

// Keeps the painter's debug lines, one for each primitive painted, out of
// the program's output.
void QuietPainter();

// Prints "kezvis: MESSAGE" to standard error and answers 2.
int UsageError(const QString &message);

} // namespace Commands

#endif // KEZVIS_COMMANDS_H
