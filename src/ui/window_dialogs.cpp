#include "ui/window_dialogs.h"

#include "ui/controllers/record_controller.h"
#include "ui/controllers/sound_controller.h"
#include "ui/dialogs/sound_dialog.h"
#include "ui/player.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {

struct WindowDialogs {
    Q_DECLARE_TR_FUNCTIONS(WindowDialogs)
};

void askAboutBoost(QWidget& window,
                   const QString& question,
                   const std::function<void(bool)>& answered) {
    auto* box = new QMessageBox(QMessageBox::Question,
                                QStringLiteral("Wavelark"),
                                question,
                                QMessageBox::Yes | QMessageBox::No,
                                &window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(box, &QDialog::finished, &window, [answered](int button) {
        answered(button == QMessageBox::Yes);
    });
    box->open();
}

} // namespace

bool askToStopRecordingAndQuit(QWidget& window) {
    QMessageBox box(QMessageBox::Question,
                    QStringLiteral("Wavelark"),
                    WindowDialogs::tr("A recording is running. Stop it and quit?"),
                    QMessageBox::NoButton,
                    &window);
    QPushButton* quit = box.addButton(WindowDialogs::tr("Stop and &quit"), QMessageBox::AcceptRole);
    box.addButton(WindowDialogs::tr("&Keep recording"), QMessageBox::RejectRole);
    box.setInformativeText(WindowDialogs::tr("What has been recorded is kept."));
    box.exec();
    return box.clickedButton() == quit;
}

BoostControl boostControl(QWidget& window, SoundController& sound, Player& player) {
    return {[&sound] { return sound.options().boost != BASS::DynamicBoost::Off; },
            [&sound, &player](bool isOn) {
                BASS::SoundOptions options = sound.options();
                options.boost = isOn ? options.boost : BASS::DynamicBoost::Off;
                player.setSound(options);
            },
            [&window](const QString& question, const std::function<void(bool)>& answered) {
                askAboutBoost(window, question, answered);
            }};
}

void showSoundDialog(QWidget& window, SoundController& sound) {
    auto* dialog = window.findChild<SoundDialog*>();
    if (dialog == nullptr) {
        dialog = new SoundDialog(sound, &window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
    }
    dialog->show(); // beside the window, so that stations can be changed meanwhile
    dialog->activateWindow();
}

void showAbout(QWidget& window) {
    QMessageBox::about(
        &window,
        WindowDialogs::tr("About Wavelark"),
        WindowDialogs::tr("<b>Wavelark %1</b><p>Listen to internet radio and record it, one file "
                          "per track.</p>")
            .arg(QCoreApplication::applicationVersion()));
}
