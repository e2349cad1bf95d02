#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

struct ToolOutput {
    QByteArray out;
    QByteArray err;
    bool isOk; ///< it ran, ended by itself and with code 0
};

/// Runs a command-line tool to its end, at most two minutes; blocks. A tool that does not run is
/// said in `err`.
ToolOutput
runTool(const QString& program, const QStringList& arguments, const QByteArray& input = {});
