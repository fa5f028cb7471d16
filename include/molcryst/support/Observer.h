// Observer: what an application connects to a Subject to hear of its changes.
#ifndef MOLCRYST_SUPPORT_OBSERVER_H
#define MOLCRYST_SUPPORT_OBSERVER_H

#include <set>

namespace molcryst {

class Subject;

/// Receives `update` when a connected Subject notifies a change. An observer
/// that is destroyed disconnects itself from every subject, and a subject that
/// is destroyed forgets its observers, so neither is left dangling.
class Observer {
public:
    /// The kinds of change a subject reports: a set of bit flags, empty by default.
    class UpdateFlags {
    public:
        UpdateFlags() = default;
        void set(int flag) { bits_ |= static_cast<unsigned int>(flag); }
        void clear(int flag) { bits_ &= ~static_cast<unsigned int>(flag); }
        void clear_all() { bits_ = 0; }
        bool test(int flag) const { return (bits_ & static_cast<unsigned int>(flag)) != 0; }
        unsigned int bits() const { return bits_; }
        bool operator==(const UpdateFlags& other) const { return bits_ == other.bits_; }
        bool operator!=(const UpdateFlags& other) const { return bits_ != other.bits_; }

    private:
        unsigned int bits_ = 0;
    };

    Observer() = default;
    /// A copy observes nothing: connections belong to the original.
    Observer(const Observer&) {}
    Observer& operator=(const Observer&) { return *this; }
    virtual ~Observer();

    /// Called by `subject.notify()` with the flags set since its last notification.
    virtual void update(Subject& subject, const UpdateFlags& flags) = 0;

private:
    friend class Subject;
    std::set<Subject*> subjects_;
};

}  // namespace molcryst

#endif
