#include "platform/shared_block.h"

#include <QSharedMemory>

struct SharedBlock::Private {
    Private(const QString& name, int size) : memory(name), bytes(size) {}
    QSharedMemory memory;
    int bytes;
};

SharedBlock::SharedBlock(const QString& name, int bytes, Scope scope)
    : d(std::make_unique<Private>(scope == Scope::System ? name + QStringLiteral("-all") : name,
                                  bytes)) {}

SharedBlock::~SharedBlock() = default;

SharedBlock::Opened SharedBlock::create() {
    if (d->memory.create(d->bytes)) {
        // The system hands out zeroed pages.
        return Opened::Created;
    }
    return d->memory.error() == QSharedMemory::AlreadyExists ? Opened::AlreadyThere
                                                             : Opened::Failed;
}

bool SharedBlock::attach() {
    return d->memory.attach();
}

bool SharedBlock::lock(WhenGone) {
    return d->memory.lock();
}

bool SharedBlock::unlock() {
    return d->memory.unlock();
}

void SharedBlock::remove() {
    // The object goes with its last handle.
}

char* SharedBlock::data() {
    return static_cast<char*>(d->memory.data());
}

QString SharedBlock::errorText() const {
    return d->memory.errorString();
}
