#include "molcryst/support/THandle.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/ErrorText.h"

using namespace molcryst;
using molcryst::testing::error_text;

namespace {

// Counts live objects so that tests can see exactly when one is destroyed.
struct Tracked {
    static int alive;
    int value;
    explicit Tracked(int v = 0) : value(v) { ++alive; }
    Tracked(const Tracked& o) : value(o.value) { ++alive; }
    virtual ~Tracked() { --alive; }
};
int Tracked::alive = 0;

struct Derived : Tracked {
    explicit Derived(int v = 0) : Tracked(v) {}
    Derived(const Tracked& t) : Tracked(t) {}  // NOLINT: deep copies turn a base into a derived
};
struct Unrelated : Tracked {};

}  // namespace

TEST(THandle, CountsFollowCopiesAssignmentsAndScope) {
    Tracked::alive = 0;
    {
        THandle<Tracked> a(new Tracked(1));
        EXPECT_EQ(a.use_count(), 1);
        THandle<Tracked> b(a);
        EXPECT_EQ(a.use_count(), 2);
        // Self-assignment and assignment from another handle of the same object change nothing.
        b = a;
        const THandle<Tracked>& same = a;
        a = same;
        EXPECT_EQ(a.use_count(), 2);

        THandle<Tracked> c(new Tracked(2));
        b = c;  // releases one reference to the first object
        EXPECT_EQ(a.use_count(), 1);
        EXPECT_EQ(c.use_count(), 2);
        EXPECT_EQ(Tracked::alive, 2);
        a = c;  // the first object's last handle goes
        EXPECT_EQ(Tracked::alive, 1);
        EXPECT_EQ(c.use_count(), 3);

        THandle<Tracked> null;
        THandle<Tracked> null2(static_cast<Tracked*>(nullptr));
        EXPECT_EQ(null.use_count(), 0);
        EXPECT_EQ(null2.use_count_record(), nullptr);
        null = null2;  // null to null is a no-op
        a = null;
        EXPECT_EQ(c.use_count(), 2);
    }
    EXPECT_EQ(Tracked::alive, 0);
}

TEST(THandle, NullDereferenceGoesToTheNullHandleErrorButUnhandDoesNot) {
    THandle<Tracked> null;
    EXPECT_THROW(*null, std::logic_error);
    EXPECT_THROW(static_cast<void>(null->value), std::logic_error);
    EXPECT_EQ(null.unhand(), nullptr);
    EXPECT_NE(error_text<std::logic_error>(HandleCommon::null_handle_error).find("null handle"), std::string::npos);
}

TEST(THandle, OrderIsDescendingAddressWithNullLast) {
    std::vector<THandle<Tracked> > handles;
    for (int i = 0; i < 20; ++i) handles.push_back(THandle<Tracked>(new Tracked(i)));
    handles.push_back(THandle<Tracked>());
    std::set<THandle<Tracked> > ordered(handles.begin(), handles.end());
    std::vector<THandle<Tracked> > walked(ordered.begin(), ordered.end());
    ASSERT_EQ(walked.size(), 21u);
    for (std::size_t i = 1; i + 1 < walked.size(); ++i) EXPECT_GT(walked[i - 1].unhand(), walked[i].unhand());
    EXPECT_EQ(walked.back().unhand(), nullptr);

    // Equality with handles and raw pointers compares the objects.
    EXPECT_TRUE(handles[0] == handles[0].unhand());
    EXPECT_TRUE(handles[0].unhand() == handles[0]);
    EXPECT_TRUE(handles[0] != handles[1]);
}

TEST(THandle, CastsShareTheCountAndFailQuietly) {
    Tracked::alive = 0;
    {
        THandle<Tracked> base;
        {
            THandle<Derived> derived(new Derived(7));
            base = derived;  // derived to base shares the record
            EXPECT_EQ(derived.use_count(), 2);
            THandle<Derived> back = handle_dynamic_cast<Derived>(base);
            EXPECT_EQ(back.unhand(), derived.unhand());
            EXPECT_EQ(derived.use_count(), 3);
            THandle<Derived> fast = handle_static_cast<Derived>(base);
            EXPECT_EQ(derived.use_count(), 4);
        }
        // The object lives on through the base handle alone.
        EXPECT_EQ(Tracked::alive, 1);
        EXPECT_EQ(base.use_count(), 1);
        EXPECT_EQ(base->value, 7);

        THandle<Unrelated> wrong = handle_dynamic_cast<Unrelated>(base);
        EXPECT_EQ(wrong.unhand(), nullptr);
        EXPECT_EQ(base.use_count(), 1);
        EXPECT_EQ(handle_dynamic_cast<Derived>(THandle<Tracked>()).unhand(), nullptr);
        EXPECT_EQ(handle_static_cast<Derived>(THandle<Tracked>()).unhand(), nullptr);
    }
    EXPECT_EQ(Tracked::alive, 0);
}

TEST(THandle, DeepCopiesMakeNewObjectsInOrder) {
    Tracked::alive = 0;
    {
        THandle<Tracked> one(new Tracked(1));
        THandle<Tracked> copy = handle_deepcopy(one);
        EXPECT_NE(copy.unhand(), one.unhand());
        EXPECT_EQ(copy->value, 1);
        EXPECT_EQ(handle_deepcopy(THandle<Tracked>()).unhand(), nullptr);

        THandle<std::vector<THandle<Tracked> > > list(new std::vector<THandle<Tracked> >());
        for (int i = 0; i < 3; ++i) list->push_back(THandle<Tracked>(new Tracked(i)));
        THandle<std::vector<THandle<Tracked> > > plain = deepcopy(list);
        ASSERT_EQ(plain->size(), 3u);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ((*plain)[i]->value, i);
            EXPECT_NE((*plain)[i].unhand(), (*list)[i].unhand());
        }
        THandle<std::vector<THandle<Tracked> > > derived = deepcopy<Tracked, Derived>(list);
        for (const THandle<Tracked>& element : *derived) EXPECT_NE(dynamic_cast<Derived*>(element.unhand()), nullptr);

        EXPECT_THROW(deepcopy(THandle<std::vector<THandle<Tracked> > >()), std::logic_error);
    }
    EXPECT_EQ(Tracked::alive, 0);
}

namespace {
struct Link {
    THandle<Link> next_;
};
}  // namespace

TEST(THandle, AssigningFromInsideTheObjectBeingReleased) {
    // h = h->next_ where h held the last reference to the first link.
    THandle<Link> h(new Link());
    h->next_ = THandle<Link>(new Link());
    Link* second = h->next_.unhand();
    h = h->next_;
    EXPECT_EQ(h.unhand(), second);
    EXPECT_EQ(h.use_count(), 1);
}
