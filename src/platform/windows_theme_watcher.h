#pragma once

#include <QObject>
#include <QString>

#include <memory>

/// Whether the desktop asks programs to be light or dark, and when that changes.
/// Windows: "AppsUseLightTheme" of the Personalize key. Linux, in spite of the name: the desktop
/// portal's "color-scheme" (org.freedesktop.appearance); a desktop without the portal leaves it at
/// Unknown, and the palette tells.
///
/// *Thread*: GUI; never blocks. *Owner*: whoever asks. *Life*: the event loop brings the changes,
/// on Linux the first answer as well.
class WindowsThemeWatcher final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WindowsThemeWatcher)

  public:
    enum class Scheme { Unknown, Light, Dark };
    Q_ENUM(Scheme)

    /// `source`: another key under HKEY_CURRENT_USER than the system's own; of no effect on Linux.
    explicit WindowsThemeWatcher(const QString& source = {}, QObject* parent = nullptr);
    ~WindowsThemeWatcher() override;

    [[nodiscard]] Scheme scheme() const;

  signals:
    void sig_schemeChanged(WindowsThemeWatcher::Scheme scheme);

  private:
    struct Private;
    std::unique_ptr<Private> d;
};
