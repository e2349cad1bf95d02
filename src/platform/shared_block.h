#pragma once

#include "base/result.h"

#include <memory>

/// A named block of memory that processes share, with a lock that the system itself releases when
/// its holder dies.
/// Linux: POSIX shared memory with flock(2). The System V segments and semaphores behind
/// QSharedMemory survive a killed process, and the first process to leave takes the semaphore away
/// from the others. Windows: QSharedMemory, whose objects go with their last holder.
/// Thread: one thread; the lock is between processes. Owner: whoever made it.
class SharedBlock {
  public:
    enum class Opened { Created, AlreadyThere, Failed };
    /// Whose processes meet under the name.
    enum class Scope { User, System };
    /// What to do where the block was removed since attach().
    enum class WhenGone { MakeAnew, Fail };

    SharedBlock(const QString& name, int bytes, Scope scope);
    ~SharedBlock();
    Q_DISABLE_COPY_MOVE(SharedBlock)

    /// Makes the block, all zero, and attaches to it; AlreadyThere attaches to nothing.
    Opened create();
    /// False where there is no such block.
    bool attach();
    /// Waits for the lock; false where the system refuses it. A block that was removed since
    /// attach() is left for the one that now has the name, so that all processes that hold the
    /// lock see the same block.
    bool lock(WhenGone whenGone = WhenGone::MakeAnew);
    bool unlock();
    /// Drops the name, so that the last one to go leaves nothing behind. Only while locked, and as
    /// the last thing: from then on others may make the block anew.
    void remove();

    /// Null before create() or attach().
    [[nodiscard]] char* data();
    /// What the last failure was, in the system's words.
    [[nodiscard]] QString errorText() const;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};
