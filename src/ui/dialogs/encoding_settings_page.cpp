#include "ui/dialogs/encoding_settings_page.h"

#include "recording/c_encoder_params.h"
#include "ui/dialogs/form_fields.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int kBitrates[] = {48, 64, 96, 128, 192, 256, 320};

bool hasBitrate(int encoder) {
    return encoder != BASS::EncoderNone && encoder != BASS::EncoderFlac &&
           encoder != BASS::EncoderFlacOgg;
}

bool hasMode(int encoder) {
    return encoder == BASS::EncoderMp3 || encoder == BASS::EncoderWma;
}

/// What the settings hold stays on offer, whatever it is.
void chooseNumber(QComboBox* box, int value, const QString& text) {
    if (box->findData(value) < 0) {
        box->addItem(text, value);
    }
    box->setCurrentIndex(box->findData(value));
}

} // namespace

EncodingSettingsPage::EncodingSettingsPage(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    layout->addLayout(form);
    addEncoder(form);
    m_same =
        addCheck(layout, "sameKept", tr("Do not encode if &stream type and bitrate are the same"));
    m_remove = addCheck(layout, "removeOriginal", tr("Rem&ove original file\nafter encoding"));
    addLists(layout);
    layout->addStretch();
    connect(m_encoder,
            QOverload<int>::of(&QComboBox::currentIndexChanged),
            this,
            &EncodingSettingsPage::encoderChosen);
}

void EncodingSettingsPage::addEncoder(QFormLayout* form) {
    m_encoder = addField<QComboBox>(form, "encoder", tr("&Encode to:"));
    m_encoder->addItem(tr("Do not encode"), int{BASS::EncoderNone});
    m_encoder->addItem(QStringLiteral("MP3"), int{BASS::EncoderMp3});
    m_encoder->addItem(QStringLiteral("AAC/M4A"), int{BASS::EncoderAac});
    m_encoder->addItem(QStringLiteral("AAC+"), int{BASS::EncoderAacPlus});
    m_encoder->addItem(QStringLiteral("Ogg Vorbis"), int{BASS::EncoderOgg});
    m_encoder->addItem(QStringLiteral("WMA"), int{BASS::EncoderWma});
    m_encoder->addItem(QStringLiteral("FLAC"), int{BASS::EncoderFlac});
    m_encoder->addItem(QStringLiteral("FLAC (Ogg)"), int{BASS::EncoderFlacOgg});
    m_bitrate = addField<QComboBox>(form, "bitrate", tr("&Bitrate:"));
    m_bitrate->addItem(tr("[Not Set]"), 0);
    for (const int bitrate : kBitrates) {
        m_bitrate->addItem(tr("%1 kbit/s").arg(bitrate), bitrate);
    }
    m_mode = addField<QComboBox>(form, "encodingMode", tr("&Mode:"));
    m_mode->addItem(tr("Constant bitrate"), 0);
    m_mode->addItem(tr("Variable bitrate"), 1);
    m_mode->addItem(tr("Average bitrate"), 2);
    m_arguments = addField<QLineEdit>(form, "encoderArguments", tr("Arg&uments of a program:"));
    m_arguments->setPlaceholderText(tr("The usual ones"));
    m_arguments->setToolTip(
        tr("For an encoder program that is used where the built-in encoder is not. “-b0” stands "
           "for the bitrate."));
    m_arguments->setAccessibleDescription(m_arguments->toolTip());
}

void EncodingSettingsPage::addLists(QVBoxLayout* layout) {
    m_tags = addCheck(layout, "tags", tr("Write t&ags into finished files"));
    m_list = addCheck(layout, "trackList", tr("Keep a track &list beside each recording"));
    auto* form = new QFormLayout;
    layout->addLayout(form);
    m_format = addField<QComboBox>(form, "listFormat", tr("&Format of the track list:"));
    m_format->addItem(tr("Playlist (m3u)"), QStringLiteral("m3u"));
    m_format->addItem(tr("Cue sheet (cue)"), QStringLiteral("cue"));
    m_format->addItem(tr("Text (txt)"), QStringLiteral("txt"));
    m_dated = addCheck(layout, "listDates", tr("Dates in the track list"));
    m_titles = addCheck(
        layout, "titleList", tr("A&dd every title to “tracks.txt” in the recording folder"));
    for (QWidget* part : {static_cast<QWidget*>(m_format), static_cast<QWidget*>(m_dated)}) {
        connect(m_list, &QCheckBox::toggled, part, &QWidget::setEnabled);
    }
}

void EncodingSettingsPage::keepArguments() {
    if (m_shown != 0) {
        m_ownArguments[m_shown] = m_arguments->text().trimmed();
    }
}

void EncodingSettingsPage::encoderChosen() {
    keepArguments();
    const int encoder = m_encoder->currentData().toInt();
    const bool hasProgram = !BASS::encoderProgram(encoder).isEmpty();
    m_shown = hasProgram ? encoder : 0;
    m_arguments->setText(m_ownArguments.value(m_shown));
    m_arguments->setEnabled(hasProgram);
    m_bitrate->setEnabled(hasBitrate(encoder));
    m_mode->setEnabled(hasMode(encoder));
    m_same->setEnabled(encoder != BASS::EncoderNone);
    m_remove->setEnabled(encoder != BASS::EncoderNone);
}

void EncodingSettingsPage::fill(const RecordingPreferences& preferences) {
    m_shown = 0;
    m_ownArguments = preferences.arguments;
    chooseNumber(m_encoder, preferences.encoder, tr("Code %1").arg(preferences.encoder));
    encoderChosen();
    chooseNumber(m_bitrate,
                 preferences.bitrate,
                 preferences.bitrate < 10 ? tr("Quality %1").arg(preferences.bitrate)
                                          : tr("%1 kbit/s").arg(preferences.bitrate));
    choose(m_mode, preferences.mode);
    m_same->setChecked(preferences.isSameKept);
    m_remove->setChecked(preferences.isOriginalRemoved);
    m_tags->setChecked(preferences.hasTags);
    m_list->setChecked(preferences.hasTrackList);
    m_format->setEnabled(preferences.hasTrackList);
    m_dated->setEnabled(preferences.hasTrackList);
    choose(m_format, preferences.trackListFormat);
    m_dated->setChecked(preferences.isTrackListDated);
    m_titles->setChecked(preferences.isTitleListKept);
}

void EncodingSettingsPage::read(RecordingPreferences& preferences) const {
    preferences.encoder = m_encoder->currentData().toInt();
    preferences.bitrate = m_bitrate->currentData().toInt();
    if (m_mode->currentIndex() >= 0) {
        preferences.mode = m_mode->currentData().toInt();
    }
    preferences.isSameKept = m_same->isChecked();
    preferences.isOriginalRemoved = m_remove->isChecked();
    preferences.arguments = m_ownArguments;
    if (m_shown != 0) {
        preferences.arguments[m_shown] = m_arguments->text().trimmed();
    }
    preferences.hasTags = m_tags->isChecked();
    preferences.hasTrackList = m_list->isChecked();
    if (m_format->currentIndex() >= 0) {
        preferences.trackListFormat = m_format->currentData().toString();
    }
    preferences.isTrackListDated = m_dated->isChecked();
    preferences.isTitleListKept = m_titles->isChecked();
}
