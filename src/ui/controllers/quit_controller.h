#pragma once

#include <QObject>

class Player;
class RecordController;
class UiSettings;

/// Ends the program in such a way that the file being recorded is complete.
///
/// *Thread*: GUI. *Owner*: the main window. The objects given outlive it.
class QuitController final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(QuitController)

  public:
    struct Parts {
        Player& player;
        RecordController& record;
        const UiSettings& settings;
    };

    explicit QuitController(const Parts& parts, QObject* parent = nullptr);

    /// True where a person has to be asked before finish(): once, not again while it ends.
    [[nodiscard]] bool mustAsk() const;
    /// Asks nobody. sig_finished comes when everything is on disk; further calls do nothing.
    void finish();

  signals:
    void sig_finished();

  private:
    Parts m_parts;
    bool m_isFinishing = false;
};
