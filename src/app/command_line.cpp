#include "app/command_line.h"

#include <array>

namespace {
QString normalised(const QString& argument) {
    QString result = argument;
    if (!result.startsWith(QLatin1Char('/')))
        result.prepend(QLatin1Char('/'));
    result.remove(QLatin1Char('"'));
    return result;
}

QString valueOf(const QString& argument) {
    return argument.mid(argument.indexOf(QLatin1Char('=')) + 1);
}

void applyAction(const QString& value, CommandRecord& record) {
    if (value.startsWith(QLatin1String("Record (Split)")))
        record.recordAction = RecordAction::Split;
    else if (value.startsWith(QLatin1String("Record (No Split)")))
        record.recordAction = RecordAction::NoSplit;
    else if (value.startsWith(QLatin1String("Record")))
        record.recordAction = RecordAction::Record;
    // Deliberate: at the start of the value the word does not count.
    if (value.indexOf(QLatin1String("MuteVolume")) > 0)
        record.isMuteOnStart = true;
}

struct Option {
    const char* prefix;
    void (*apply)(const QString& value, CommandRecord& record);
};

// The order counts: the first that matches applies.
constexpr std::array<Option, 12> kOptions{{
    {"/url=", [](const QString& value, CommandRecord& record) { record.url = value; }},
    {"/name=", [](const QString& value, CommandRecord& record) { record.name = value; }},
    {"/id=", [](const QString& value, CommandRecord& record) { record.id = value; }},
    {"/station_id=", [](const QString& value, CommandRecord& record) { record.stationId = value; }},
    {"/show=minimizedtotray",
     [](const QString&, CommandRecord& record) { record.show = ShowMode::MinimizedToTray; }},
    {"/show=minimized",
     [](const QString&, CommandRecord& record) { record.show = ShowMode::Minimized; }},
    {"/action=", applyAction},
    {"/duration=",
     [](const QString& value, CommandRecord& record) { record.duration = value.toInt(); }},
    {"/end_action=",
     [](const QString& value, CommandRecord& record) {
         if (const std::optional<EndAction> action = endActionFromScheduleCode(value))
             record.endAction = action;
     }},
    {"/startlast", [](const QString&, CommandRecord& record) { record.isStartLast = true; }},
    {"/playlast", [](const QString&, CommandRecord& record) { record.isPlayLast = true; }},
    {"/restart", [](const QString&, CommandRecord& record) { record.isRestart = true; }},
}};
} // namespace

CommandRecord parseCommandLine(const QStringList& arguments) {
    CommandRecord record;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString argument = normalised(arguments.at(i));
        record.arguments.append(argument);
        for (const Option& option : kOptions) {
            if (argument.startsWith(QLatin1String(option.prefix))) {
                option.apply(valueOf(argument), record);
                break;
            }
        }
    }
    return record;
}

std::optional<EndAction> endActionFromScheduleCode(const QString& code) {
    // Deliberate: schedules and the sleep timer number the actions differently.
    constexpr std::array<EndAction, 5> kBySchedule{EndAction::StopPlaying,
                                                   EndAction::Exit,
                                                   EndAction::Sleep,
                                                   EndAction::Hibernate,
                                                   EndAction::Shutdown};
    bool isNumber = false;
    const uint number = code.toUInt(&isNumber);
    if (!isNumber || number >= kBySchedule.size())
        return std::nullopt;
    return kBySchedule.at(number);
}

QStringList forwardedArguments(const QByteArray& message) {
    return QString::fromUtf8(message).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList storedCommandArguments(const QString& command) {
    return command.split(QStringLiteral(" /"));
}
