#include "molcryst/support/Subject.h"

#include <gtest/gtest.h>

using namespace molcryst;

namespace {
struct Recorder : Observer {
    int calls = 0;
    unsigned int last_flags = 0;
    Subject* disconnect_on_update = nullptr;
    void update(Subject& s, const UpdateFlags& flags) override {
        ++calls;
        last_flags = flags.bits();
        if (disconnect_on_update != nullptr) s.disconnect(*this);
    }
};
}  // namespace

TEST(Subject, NotifiesConnectedObserversOncePerChange) {
    Subject subject;
    Recorder a, b;
    subject.connect(a);
    subject.connect(b);
    subject.connect(a);
    subject.notify();  // nothing changed
    EXPECT_EQ(a.calls, 0);

    subject.set_changed(4);
    subject.set_changed(1);
    subject.clear_flag(1);
    EXPECT_TRUE(subject.changed());
    subject.notify();
    EXPECT_EQ(a.calls, 1);
    EXPECT_EQ(b.calls, 1);
    EXPECT_EQ(a.last_flags, 4u);
    EXPECT_FALSE(subject.changed());

    subject.disconnect(b);
    a.disconnect_on_update = &subject;
    subject.set_changed();
    subject.notify();
    EXPECT_EQ(a.calls, 2);
    EXPECT_EQ(b.calls, 1);
    EXPECT_EQ(subject.nobservers(), 0u);

    subject.set_changed();
    subject.clear_changed();
    EXPECT_FALSE(subject.changed());
}

TEST(Subject, NeitherSideIsLeftDangling) {
    Recorder lasting;
    {
        Subject transient;
        transient.connect(lasting);
        Subject copy(transient);  // the copy is connected too
        EXPECT_EQ(copy.nobservers(), 1u);
    }
    Subject subject;
    {
        Recorder transient;
        subject.connect(transient);
    }
    EXPECT_EQ(subject.nobservers(), 0u);
    subject.set_changed();
    subject.notify();  // must not reach the destroyed observer
}
