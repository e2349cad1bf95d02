#include "platform/shared_block.h"

#include <QCryptographicHash>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {
/// A file descriptor of its own; -1 is none.
class Descriptor {
  public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor() { reset(); }
    Q_DISABLE_COPY_MOVE(Descriptor)

    void reset(int fd = -1) {
        if (m_fd >= 0)
            close(m_fd);
        m_fd = fd;
    }
    [[nodiscard]] int get() const { return m_fd; }

  private:
    int m_fd;
};

bool lockDescriptor(int fd) {
    int answer = 0;
    do
        answer = flock(fd, LOCK_EX);
    while (answer != 0 && errno == EINTR);
    return answer == 0;
}
} // namespace

struct SharedBlock::Private {
    QByteArray name;
    std::size_t bytes = 0;
    Scope scope = Scope::User;
    Descriptor fd;
    void* memory = nullptr;
    int errorCode = 0;
    QString error;

    bool fail(int code) {
        errorCode = code;
        error = QString::fromLocal8Bit(std::strerror(code));
        return false;
    }

    void detach() {
        if (memory != nullptr)
            munmap(memory, bytes);
        memory = nullptr;
        fd.reset();
    }

    /// Takes over an open descriptor.
    bool map(int descriptor) {
        detach();
        fd.reset(descriptor);
        struct stat info {};
        if (fstat(descriptor, &info) != 0)
            return fail(errno);
        if (scope == Scope::User && info.st_uid != geteuid())
            return fail(EACCES); // somebody else took the name
        if (info.st_size < static_cast<off_t>(bytes) &&
            ftruncate(descriptor, static_cast<off_t>(bytes)) != 0)
            return fail(errno);
        void* address = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
        if (address == MAP_FAILED)
            return fail(errno);
        memory = address;
        return true;
    }

    bool open(int flags) {
        const int descriptor = shm_open(name.constData(), O_RDWR | flags, S_IRUSR | S_IWUSR);
        if (descriptor < 0)
            return fail(errno);
        if ((flags & O_CREAT) != 0 && scope == Scope::System)
            fchmod(descriptor, 0666); // past the umask; somebody else's block refuses, rightly
        return map(descriptor);
    }

    [[nodiscard]] bool isNamed() const {
        struct stat info {};
        return fstat(fd.get(), &info) == 0 && info.st_nlink > 0;
    }
};

SharedBlock::SharedBlock(const QString& name, int bytes, Scope scope)
    : d(std::make_unique<Private>()) {
    // The user's id in the name: users never share a block by accident.
    const QByteArray owner = scope == Scope::User ? QByteArray::number(geteuid()) : "all";
    d->name = "/wavelark-" + owner + '-' +
              QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha1).toHex();
    d->bytes = static_cast<std::size_t>(bytes);
    d->scope = scope;
}

SharedBlock::~SharedBlock() {
    d->detach();
}

SharedBlock::Opened SharedBlock::create() {
    if (d->open(O_CREAT | O_EXCL))
        return Opened::Created;
    return d->errorCode == EEXIST ? Opened::AlreadyThere : Opened::Failed;
}

bool SharedBlock::attach() {
    return d->open(0);
}

bool SharedBlock::lock(WhenGone whenGone) {
    for (int tries = 0; tries < 1000; ++tries) {
        if (d->memory == nullptr || !lockDescriptor(d->fd.get()))
            return d->fail(d->memory == nullptr ? EINVAL : errno);
        if (d->isNamed())
            return true;
        if (!d->open(whenGone == WhenGone::MakeAnew ? O_CREAT : 0))
            return false;
    }
    return d->fail(EAGAIN);
}

bool SharedBlock::unlock() {
    return flock(d->fd.get(), LOCK_UN) == 0 || d->fail(errno);
}

void SharedBlock::remove() {
    shm_unlink(d->name.constData());
}

char* SharedBlock::data() {
    return static_cast<char*>(d->memory);
}

QString SharedBlock::errorText() const {
    return d->error;
}
