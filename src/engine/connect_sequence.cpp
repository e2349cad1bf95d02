#include "engine/connect_sequence.h"

#include "base/log.h"
#include "engine/library_errors.h"
#include "engine/playlist_parser.h"
#include "net/q_http_ext.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <QUrl>

#include <cstring>

namespace BASS {
namespace {

constexpr int kConnectLimitSeconds = 60;
constexpr unsigned long kPauseStepMs = 100;
constexpr int kPauseSteps = 5;
/// A playlist that points at itself ends here.
constexpr int kMostPlaylistHops = 10;

/// What the status line and the log call a create function.
struct KindTexts {
    const char* status; ///< "%1 %2 (FLAC)..." of the verb and the address
    const char* log;    ///< the name that the log uses
};

KindTexts textsFor(StreamKind kind) {
    switch (kind) {
    case StreamKind::Mp4:
        return {"%1 %2 (MP4)...", "MP4_StreamCreateURL"};
    case StreamKind::Flac:
        return {"%1 %2 (FLAC)...", "FLAC_StreamCreateURL"};
    case StreamKind::Hls:
        return {"%1 %2 (HLS)...", "HLS_StreamCreateURL"};
    case StreamKind::Opus:
        return {"%1 %2 (OPUS)...", "OPUS_StreamCreateURL"};
    case StreamKind::Wma:
        return {"%1 %2 (WMA)...", "WMA_StreamCreateURL"};
    default:
        return {"%1 to %2 (MP3/AAC)...", "StreamCreateURL"};
    }
}

const char* fileText(StreamKind kind) {
    switch (kind) {
    case StreamKind::Aac:
        return "AAC %1";
    case StreamKind::Opus:
        return "OPUS %1";
    case StreamKind::Flac:
        return "FLAC %1";
    case StreamKind::Hls:
        return "HLS %1";
    default:
        return "%1";
    }
}

} // namespace

ConnectSequence::ConnectSequence(AudioLibrary& library,
                                 ConnectRequest request,
                                 ConnectReport report,
                                 StreamSink& sink)
    : m_library(library), m_request(std::move(request)), m_report(std::move(report)), m_sink(sink),
      m_address(m_request.address), m_isPlaylistChecked(m_request.isPlaylistChecked),
      m_forcedKind(m_request.knownKind) {}

void ConnectSequence::cancel() {
    m_isCanceled = true;
    m_library.StreamCancel(this);
}

QString ConnectSequence::httpMessage() const {
    const std::lock_guard lock(m_httpMutex);
    return m_httpMess;
}

void ConnectSequence::run() {
    if (m_request.address.isEmpty() || m_isCanceled) {
        finish();
        return;
    }
    if (isRecordingDevice(m_address)) {
        openRecordingDevice();
    } else if (isLocalFile()) {
        openLocalFile();
    } else {
        const AddressOptions options = addressOptions(rewrittenAddress(m_address));
        m_address = options.address;
        m_isPlaylistChecked = m_isPlaylistChecked || options.isPlaylistChecked;
        m_userAgent = options.userAgent;
        if (m_request.hasProxy)
            m_report.status(QStringLiteral("%1 %2...")
                                .arg(tr("Connecting with proxy"), withoutCredentials(m_address)),
                            false);
        runNetwork();
    }
    finish();
}

void ConnectSequence::runNetwork() {
    if (!m_userAgent.isEmpty()) {
        qCInfo(lcEngine, "CBass::SetConfigPtr User Agent");
        m_library.SetConfigPtr(BASS_CONFIG_NET_AGENT | BASS_UNICODE, m_userAgent.utf16());
    }
    const int attempts = std::max(1, m_request.attempts);
    for (int n = 1; n <= attempts && !m_isCanceled;) {
        if (tryNetwork(n) || !mayGoOn())
            break;
        // a hop to what a playlist names is free
        if (followPlaylist())
            continue;
        pauseBeforeNextTry();
        ++n;
    }
    if (!m_userAgent.isEmpty())
        m_library.SetConfigPtr(BASS_CONFIG_NET_AGENT | BASS_UNICODE, m_request.userAgent.utf16());
}

bool ConnectSequence::mayGoOn() const {
    return !m_isCanceled && m_errorCode != BASS_ERROR_NONET && m_errorCode != BASS_ERROR_TIMEOUT;
}

void ConnectSequence::finish() {
    if (m_isCanceled) {
        if (m_handle != 0)
            m_library.StreamFree(m_handle);
        m_handle = 0;
        m_report.status(tr("Connection canceled"), true);
    } else if (m_handle != 0) {
        m_report.status(tr("Connection succeeded"), true);
    }
}

/// True where a channel exists.
bool ConnectSequence::tryNetwork(int attempt) {
    if (m_request.knownKind == StreamKind::None)
        m_report.status(
            QStringLiteral("%1 %2 %3...").arg(tr("Connecting"), ordinalWord(attempt), tr("try")),
            false);
    if (lookUpAddress() && createFromAddress(m_address))
        return true;
    if (!m_isCanceled)
        logFailure();
    return false;
}

void ConnectSequence::logFailure() {
    m_report.log(QStringLiteral("BASS_ErrorGetCode=%1").arg(m_errorCode), true);
    m_report.log(QStringLiteral("ErrorMess=%1").arg(libraryErrorText(m_errorCode)), true);
    if (const QString message = httpMessage(); !message.isEmpty())
        m_report.log(QStringLiteral("getHttpErrorMess()=%1").arg(message), true);
}

QByteArray ConnectSequence::fetch(const QString& address) {
    QT_EXT::HttpRequest request;
    request.url = QUrl(address);
    request.timeout = std::chrono::seconds(5);
    request.userAgent = m_userAgent.isEmpty() ? m_request.userAgent : m_userAgent;
    request.isCanceled = [this] { return m_isCanceled.load(); };
    const auto answer = QT_EXT::QHttpExt::getSync(request);
    if (!answer)
        m_report.log(answer.error(), true);
    return answer ? answer.value() : QByteArray();
}

/// An address of the station directory is replaced by the directory's answer.
bool ConnectSequence::lookUpAddress() {
    if (!isDirectoryAddress(m_address))
        return true;
    m_report.status(QStringLiteral("%1 %2...")
                        .arg(tr("Checking online database"), withoutCredentials(m_address)),
                    false);
    const QString answer = directoryAnswer(fetch(m_address));
    if (answer.isEmpty()) {
        m_errorCode = BASS_ERROR_FILEOPEN;
        m_report.log(QStringLiteral("%1 %2").arg(tr("Failed to get station url"),
                                                 withoutCredentials(m_address)),
                     true);
        return false;
    }
    if (answer == m_request.knownAddress)
        m_report.status(tr("No difference in the database") + QStringLiteral("..."), false);
    m_address = answer;
    return true;
}

/// True where the address turned out to be a playlist and its first entry is to be tried.
bool ConnectSequence::followPlaylist() {
    const bool isNoAudio = m_errorCode == BASS_ERROR_FILEFORM && m_request.isPlaylistProcessed;
    if (!(m_isPlaylistChecked || isNoAudio) || m_request.knownKind != StreamKind::None ||
        m_playlistHops >= kMostPlaylistHops)
        return false;
    m_report.status(tr("Checking playlist file") + QStringLiteral("..."), false);
    const Playlist playlist = parsePlaylist(fetch(m_address), m_address);
    if (m_isCanceled)
        return false;
    if (playlist.kind == PlaylistKind::Hls && m_forcedKind != StreamKind::Hls) {
        m_forcedKind = StreamKind::Hls;
        return true;
    }
    if (playlist.addresses.isEmpty()) {
        m_report.log(playlist.message, true);
        return false;
    }
    ++m_playlistHops;
    m_forcedKind = StreamKind::None;
    m_address = rewrittenAddress(playlist.addresses.first());
    return true;
}

void ConnectSequence::pauseBeforeNextTry() {
    for (int n = 0; n < kPauseSteps && !m_isCanceled; ++n)
        QThread::msleep(kPauseStepMs);
}

bool ConnectSequence::createFromAddress(const QString& address) {
    if (m_forcedKind != StreamKind::None)
        return create(m_forcedKind, address);
    const StreamKind kind = kindFor(m_request.declaredFormat, address);
    if (create(kind, address))
        return true;
    if (kind != StreamKind::Generic)
        return false;
    const int firstError = m_errorCode;
    for (StreamKind fallback : fallbacksFor(address, httpMessage())) {
        if (!mayFallBack())
            break;
        if (create(fallback, address))
            return true;
    }
    // what the first try said tells the user more than that it is no WMA either
    if (m_errorCode == BASS_ERROR_FILEFORM)
        m_errorCode = firstError;
    return false;
}

bool ConnectSequence::mayFallBack() const {
    return !m_isCanceled && m_errorCode != BASS_ERROR_TIMEOUT && m_errorCode != BASS_ERROR_NONET &&
           m_elapsedTotalTimerSeconds < kConnectLimitSeconds;
}

bool ConnectSequence::create(StreamKind kind, const QString& address) {
    const KindTexts texts = textsFor(kind);
    const QString verb = kind == StreamKind::Generic ? tr("Connecting") : tr("Trying");
    m_report.status(QString::fromLatin1(texts.status).arg(verb, withoutCredentials(address)),
                    false);
    m_report.createBegins(kind);
    QElapsedTimer timer;
    timer.start();
    m_handle = callCreate(kind, address.utf16());
    m_errorCode = m_handle != 0 ? 0 : m_library.ErrorGetCode();
    m_elapsedTotalTimerSeconds += static_cast<int>(timer.elapsed() / 1000);
    qCInfo(lcEngine,
           "CBass::%s m_elapsedTotalTimerSeconds=%d took=%lld ms error=%d",
           texts.log,
           m_elapsedTotalTimerSeconds,
           static_cast<long long>(timer.elapsed()),
           m_errorCode);
    if (m_handle == 0) {
        m_sink.discard();
        return false;
    }
    m_kind = kind;
    m_sink.release();
    return true;
}

HSTREAM ConnectSequence::callCreate(StreamKind kind, const void* url) {
    const DWORD flags = BASS_UNICODE | BASS_STREAM_STATUS | BASS_STREAM_AUTOFREE |
                        (m_request.isFloat ? BASS_SAMPLE_FLOAT : 0U);
    DOWNLOADPROC* const proc = &ConnectSequence::downloadProc;
    switch (kind) {
    case StreamKind::Mp4:
        return m_library.MP4_StreamCreateURL(url, 0, flags, proc, this);
    case StreamKind::Flac:
        return m_library.FLAC_StreamCreateURL(url, 0, flags, proc, this);
    case StreamKind::Hls:
        return m_library.HLS_StreamCreateURL(url, 0, flags, proc, this);
    case StreamKind::Opus:
        return m_library.OPUS_StreamCreateURL(url, 0, flags, proc, this);
    case StreamKind::Wma:
        return m_library.WMA_StreamCreateURL(url, 0, flags, proc, this);
    default:
        return m_library.StreamCreateURL(url, 0, flags, proc, this);
    }
}

HSTREAM ConnectSequence::callCreateFile(StreamKind kind, const void* path) {
    const DWORD flags =
        BASS_UNICODE | BASS_STREAM_AUTOFREE | (m_request.isFloat ? BASS_SAMPLE_FLOAT : 0U);
    switch (kind) {
    case StreamKind::Aac:
        return m_library.AAC_StreamCreateFile(path, flags);
    case StreamKind::Wma:
        return m_library.WMA_StreamCreateFile(path, flags);
    case StreamKind::Opus:
        return m_library.OPUS_StreamCreateFile(path, flags);
    case StreamKind::Flac:
        return m_library.FLAC_StreamCreateFile(path, flags);
    case StreamKind::Mp4:
        return m_library.MP4_StreamCreateFile(path, flags);
    case StreamKind::Hls:
        return m_library.HLS_StreamCreateFile(path, flags);
    default:
        return m_library.StreamCreateFile(path, flags);
    }
}

void ConnectSequence::openRecordingDevice() {
    m_report.createBegins(StreamKind::Generic);
    m_kind = StreamKind::Generic;
    const std::optional<int> device = recordingDevice();
    if (!device) { // another one would record what nobody wanted
        m_errorCode = BASS_ERROR_DEVICE;
        m_report.log(tr("The recording device %1 is not there. Connect it, or choose another one "
                        "in the settings.")
                         .arg(m_request.recordingDevice),
                     true);
        return;
    }
    m_handle = m_library.StreamCreateRecordingDevice(*device, BASS_SAMPLE_FLOAT);
    m_errorCode = m_handle != 0 ? BASS_OK : m_library.ErrorGetCode();
    if (m_handle == 0)
        m_report.log(libraryErrorText(m_errorCode), true);
}

/// Nothing: the chosen one is not there.
std::optional<int> ConnectSequence::recordingDevice() {
    constexpr int kDefaultDevice = -1;
    if (m_request.recordingDevice.isEmpty())
        return kDefaultDevice;
    BASS_DEVICEINFO info{};
    for (DWORD n = 1; m_library.RecordGetDeviceInfo(n, &info); ++n) {
        if (QString::fromUtf8(info.name) == m_request.recordingDevice)
            return static_cast<int>(n);
    }
    return std::nullopt;
}

void ConnectSequence::openLocalFile() {
    const QString path = localPath(m_address);
    for (StreamKind kind : {StreamKind::Generic,
                            StreamKind::Aac,
                            StreamKind::Wma,
                            StreamKind::Opus,
                            StreamKind::Flac,
                            StreamKind::Mp4,
                            StreamKind::Hls}) {
        if (m_isCanceled)
            return;
        m_report.status(QString::fromLatin1(fileText(kind)).arg(path), false);
        m_report.createBegins(kind);
        m_handle = callCreateFile(kind, path.utf16());
        if (m_handle != 0) {
            m_kind = kind;
            m_errorCode = 0;
            return;
        }
        m_errorCode = m_library.ErrorGetCode();
        m_report.log(libraryErrorText(m_errorCode), true);
    }
    playLocalPlaylist();
}

/// A playlist on this machine: its first entry is played, from wherever it is.
void ConnectSequence::playLocalPlaylist() {
    QFile file(localPath(m_address));
    constexpr qint64 kMostBytes = 1024 * 1024;
    if (m_playlistHops > 0 || !file.open(QIODevice::ReadOnly))
        return;
    const Playlist playlist = parsePlaylist(file.read(kMostBytes), QString());
    if (playlist.addresses.isEmpty())
        return;
    ++m_playlistHops;
    m_address = rewrittenAddress(playlist.addresses.first());
    if (isLocalAddress(m_address))
        openLocalFile();
    else
        runNetwork();
}

// --- callbacks: the library's network thread
// ------------------------------------------------------

void ConnectSequence::downloadProc(const void* buffer, DWORD length, void* user) {
    auto* self = static_cast<ConnectSequence*>(user);
    if (buffer == nullptr) {
        self->m_sink.connectionEnded();
    } else if (length == 0) {
        self->takeHeaders(static_cast<const char*>(buffer));
        self->m_sink.connectionBegan(static_cast<const char*>(buffer));
    } else {
        self->m_sink.audioBytes(static_cast<const char*>(buffer), length);
    }
}

void ConnectSequence::takeHeaders(const char* headers) {
    const QString status = QString::fromLatin1(headers);
    const std::lock_guard lock(m_httpMutex);
    m_httpMess = status;
    qCDebug(lcEngine, "CBass::DownloadProc m_httpMess=%s", qPrintable(m_httpMess));
}

void ConnectSequence::titleProc(const StreamTitle& title, void* user) {
    static_cast<ConnectSequence*>(user)->m_sink.titleArrived(title);
}

} // namespace BASS
