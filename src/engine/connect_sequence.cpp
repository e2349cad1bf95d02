#include "engine/connect_sequence.h"

#include "base/log.h"
#include "engine/library_errors.h"

#include <QElapsedTimer>
#include <QThread>

#include <cstring>

namespace BASS {
namespace {

constexpr int kConnectLimitSeconds = 60;
constexpr unsigned long kPauseStepMs = 100;
constexpr int kPauseSteps = 5;

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
    : m_library(library), m_request(std::move(request)), m_report(std::move(report)), m_sink(sink) {
}

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
    if (isLocalFile()) {
        openLocalFile();
    } else {
        const int attempts = std::max(1, m_request.attempts);
        for (int n = 1; n <= attempts && tryNetwork(n); ++n)
            pauseBeforeNextTry();
    }
    finish();
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

/// False where no further attempt makes sense.
bool ConnectSequence::tryNetwork(int attempt) {
    if (m_isCanceled)
        return false;
    if (m_request.knownKind == StreamKind::None)
        m_report.status(
            QStringLiteral("%1 %2 %3...").arg(tr("Connecting"), ordinalWord(attempt), tr("try")),
            false);
    if (createFromAddress(rewrittenAddress(m_request.address)))
        return false;
    m_report.log(QStringLiteral("BASS_ErrorGetCode=%1").arg(m_errorCode), true);
    m_report.log(QStringLiteral("ErrorMess=%1").arg(libraryErrorText(m_errorCode)), true);
    if (const QString message = httpMessage(); !message.isEmpty())
        m_report.log(QStringLiteral("getHttpErrorMess()=%1").arg(message), true);
    return !m_isCanceled && m_errorCode != BASS_ERROR_NONET && m_errorCode != BASS_ERROR_TIMEOUT;
}

void ConnectSequence::pauseBeforeNextTry() {
    for (int n = 0; n < kPauseSteps && !m_isCanceled; ++n)
        QThread::msleep(kPauseStepMs);
}

bool ConnectSequence::createFromAddress(const QString& address) {
    if (m_request.knownKind != StreamKind::None)
        return create(m_request.knownKind, address);
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

void ConnectSequence::openLocalFile() {
    const QString path = localPath(m_request.address);
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
