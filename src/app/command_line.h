#pragma once

#include <QStringList>

#include <optional>

enum class ShowMode { Normal, Minimized, MinimizedToTray };
enum class RecordAction { None, Record, Split, NoSplit };

/// Codes of the sleep timer; schedules number the same actions differently.
enum class EndAction { StopPlaying = 0, Shutdown = 1, Sleep = 2, Hibernate = 3, Exit = 4 };

/// What a command line asks for. A text that is not there was not given.
struct CommandRecord {
    QStringList arguments; ///< normalised, without the program path; for the log
    std::optional<QString> url;
    std::optional<QString> name;
    std::optional<QString> id;
    std::optional<QString> stationId;
    std::optional<int> duration; ///< as given; scheduled starts write seconds
    std::optional<EndAction> endAction;
    RecordAction recordAction = RecordAction::None;
    ShowMode show = ShowMode::Normal;
    bool isMuteOnStart = false;
    bool isStartLast = false;
    bool isPlayLast = false;
    bool isRestart = false;

    /// No argument behind the program path: only show the window.
    [[nodiscard]] bool isEmpty() const { return arguments.isEmpty(); }
};

/// Reads a command line, the program path first. Options match at the start of an argument, letter
/// case counts, a later one wins; a value is what follows the first "=". A missing leading "/" is
/// added and every double quote deleted before. Pure.
CommandRecord parseCommandLine(const QStringList& arguments);

/// The end action of "/end_action=", from the numbering of schedules. Pure.
std::optional<EndAction> endActionFromScheduleCode(const QString& code);

/// The arguments of another instance, out of the message it sent: UTF-8, one per line, empty ones
/// dropped. Pure.
QStringList forwardedArguments(const QByteArray& message);

/// The arguments of a command kept as one text. Pure.
QStringList storedCommandArguments(const QString& command);
