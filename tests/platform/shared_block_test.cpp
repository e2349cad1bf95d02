#include "platform/shared_block.h"

#include <QUuid>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {
constexpr int kBytes = 152;

QString freshName() {
    return QUuid::createUuid().toString();
}
} // namespace

TEST(SharedBlock, OneMakesItOthersSeeIt) {
    const QString name = freshName();
    SharedBlock first(name, kBytes, SharedBlock::Scope::User);
    SharedBlock second(name, kBytes, SharedBlock::Scope::User);
    EXPECT_FALSE(second.attach());
    EXPECT_FALSE(second.errorText().isEmpty());
    ASSERT_EQ(first.create(), SharedBlock::Opened::Created);
    EXPECT_EQ(second.create(), SharedBlock::Opened::AlreadyThere);
    ASSERT_TRUE(second.attach());
    ASSERT_TRUE(first.lock());
    EXPECT_EQ(first.data()[0], 0);
    first.data()[kBytes - 1] = 'x';
    ASSERT_TRUE(first.unlock());
    ASSERT_TRUE(second.lock());
    EXPECT_EQ(second.data()[kBytes - 1], 'x');
    ASSERT_TRUE(second.unlock());
}

TEST(SharedBlock, LockExcludesOthersWhileTheBlockComesAndGoes) {
    const QString name = freshName();
    std::atomic<int> inside{0};
    std::atomic<int> faults{0};
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n)
        threads.emplace_back([&, n] {
            for (int round = 0; round < 200; ++round) {
                SharedBlock block(name, kBytes, SharedBlock::Scope::User);
                if (block.create() != SharedBlock::Opened::Created && !block.attach())
                    continue; // removed in between
                if (!block.lock()) {
                    ++faults;
                    continue;
                }
                if (inside.fetch_add(1) != 0)
                    ++faults;
                inside.fetch_sub(1);
                if ((round + n) % 3 == 0)
                    block.remove();
                block.unlock();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(faults, 0);
    SharedBlock rest(name, kBytes, SharedBlock::Scope::User);
    rest.remove();
}

TEST(SharedBlock, UsersAndSystemHaveTheirOwn) {
    const QString name = freshName();
    SharedBlock own(name, kBytes, SharedBlock::Scope::User);
    SharedBlock all(name, kBytes, SharedBlock::Scope::System);
    EXPECT_EQ(own.create(), SharedBlock::Opened::Created);
    EXPECT_EQ(all.create(), SharedBlock::Opened::Created);
    own.remove();
    all.remove();
}
