#pragma once

#include "app/command_line.h"
#include "ui/tray_options.h"

#include <QObject>

#include <functional>

class Commands;
class TrayIcon;
class QWidget;

/// Shows, minimises and hides the main window, and keeps the tray icon in step with it.
///
/// *Thread*: GUI. *Owner*: the main window, which outlives it as do the commands.
class WindowPresenter final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WindowPresenter)

  public:
    struct Parts {
        QWidget& window;
        const Commands& commands;
        std::function<bool()> hasTray; ///< there is a tray now
        bool hasDisplay = true;        ///< false: the window is never shown
    };

    explicit WindowPresenter(const Parts& parts, QObject* parent = nullptr);
    ~WindowPresenter() override;

    void setTrayOptions(const TrayOptions& options);
    [[nodiscard]] TrayIcon& tray() { return *m_tray; }

    void bringToFront();
    void showAs(ShowMode mode);
    /// To be seen, or in the tray where the settings say so.
    void showAtStart();
    /// Minimised where there is no tray icon, since a hidden window could not be found again.
    void hideToTray();
    /// True where closing the window only hides it.
    [[nodiscard]] bool isHiddenOnClose() const;

  signals:
    /// The window can be seen from now on, or cannot: it is hidden or minimised.
    void sig_watchedChanged(bool isWatched);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void wireCommands();
    void toggle();

    Parts m_parts;
    TrayIcon* m_tray;
    bool m_isWatched = false;
};
